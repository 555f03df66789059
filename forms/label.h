#pragma once
#include "child.h"
#include "../platform/kelexport.h"

#include <QLabel>

namespace kel {

class KEL_EXPORT Label : public Child
{
    Q_OBJECT
public:
    Label(UserControl *owner, const QString &objectName);

    QString Caption() const { return m_label->text(); }
    void setCaption(const QString &caption) { m_label->setText(caption); }
    // The caption names `field` for screen readers.
    void setBuddy(Child *field) { m_label->setBuddy(field->widget()); }
    // Free for the host's use (the caption as last saved, say).
    QString Tag;
    // Set by a host's data binding; nothing in the library sets it.
    bool DataChanged = false;

protected:
    int colourRoles() const override { return WindowRoles | SystemColoursByRole; }

private:
    QLabel *m_label;
};

} // namespace kel
