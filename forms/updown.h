#pragma once
// The up-down spinner: two arrow buttons, one above the other. Its Value rests at 1 between
// clicks; a click on the upper button sets 2, on the lower one 0, and raises Change. The owner
// reads the value and puts it back to 1. It never takes the focus. A button held down repeats;
// screen readers get increase and decrease actions.
#include "child.h"
#include "../platform/kelexport.h"

namespace kel {

class SpinnerWidget;

class KEL_EXPORT UpDown : public Child
{
    Q_OBJECT
public:
    UpDown(UserControl *owner, const QString &objectName);

    int Value() const { return m_value; }
    void setValue(int value);

private:
    friend class SpinnerWidget;
    void pressed(bool upper);

    int m_value = 1;
};

} // namespace kel
