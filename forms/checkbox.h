#pragma once
// The check box: state 0 (unchecked), 1 (checked) or 2 (grey). Click is raised whenever the
// state changes, by the user or by code, as the classic check box does.
#include "child.h"

class QCheckBox;

namespace kel {

class KEL_EXPORT CheckBox : public Child
{
    Q_OBJECT
public:
    CheckBox(UserControl *owner, const QString &objectName);

    int Value() const;
    // Values other than 0, 1 and 2 are ignored.
    void setValue(int value);
    QString Caption() const;
    void setCaption(const QString &caption);
    // Without input the box keeps its enabled look but takes no click, no key and no focus
    // (the look of a check box in a container that takes no input).
    bool AcceptsInput() const { return m_acceptsInput; }
    void setAcceptsInput(bool accepts);
    // The height the box needs for its font, in twips.
    double PreferredHeight() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QCheckBox *m_box;
    bool m_acceptsInput = true;
    bool m_settingByCode = false;
    bool m_restoring = false;
    int m_state = 0; // the last state taken
    Qt::FocusPolicy m_focusPolicy;
};

} // namespace kel
