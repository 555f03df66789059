#pragma once
// One check box with the change tracking of the entry fields: a boolean Value measured against
// an original and a saved value, mandatory and locked shown through the text colour and the
// input it takes, and Change when the user toggles it.
#include "../../forms/checkbox.h"
#include "../../forms/usercontrol.h"
#include "../../platform/kelexport.h"

namespace kel {

class KEL_EXPORT KelCheck : public UserControl
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(bool Changed READ Changed DESIGNABLE false)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved DESIGNABLE false)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
    Q_PROPERTY(bool FontBold READ FontBold WRITE setFontBold)
    Q_PROPERTY(qint32 hWnd READ hWnd DESIGNABLE false)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked)
    Q_PROPERTY(bool Mandatory READ Mandatory WRITE setMandatory)
    Q_PROPERTY(bool Valid READ Valid DESIGNABLE false)
    Q_PROPERTY(bool Value READ Value WRITE setValue NOTIFY ValueChanged USER true)
    Q_PROPERTY(bool ValueOriginal READ ValueOriginal WRITE setValueOriginal DESIGNABLE false)
    Q_PROPERTY(bool ValueSaved READ ValueSaved WRITE setValueSaved DESIGNABLE false)

public:
    /// A new control, a child of parent; the container sets its properties next.
    explicit KelCheck(QWidget *parent = nullptr);

    /// The check box; its own caption is the field's caption.
    CheckBox *const Check1;

    /// The check box's own text, which serves as the caption.
    QString Caption() const { return Check1->Caption(); }
    /// Announces "Caption" only when the text really changes.
    void setCaption(const QString &caption);
    /// Value differs from ValueOriginal (set by Value, by the host, and on focus entry).
    bool Changed() const { return Value() != m_valueOriginal; }
    /// Value differs from ValueSaved, which only the host sets.
    bool ChangedSaved() const { return Value() != m_valueSaved; }
    /// The stored flag; a disabled field shows grey text and takes no input.
    bool Enabled() const { return m_enabled; }
    /// Sets Enabled.
    void setEnabled(bool enabled);
    /// The check box's bold font.
    bool FontBold() const { return Check1->FontBold(); }
    /// Sets FontBold.
    void setFontBold(bool bold);
    /// A locked field takes no click, no key and no focus, but is drawn enabled.
    bool Locked() const { return m_locked; }
    /// Sets Locked.
    void setLocked(bool locked);
    /// Shown by the text colour only; a check field is never invalid.
    bool Mandatory() const { return m_mandatory; }
    /// Sets Mandatory.
    void setMandatory(bool mandatory);
    /// Always true.
    bool Valid() const { return true; }
    /// True exactly when the box is checked (grey reads as false).
    bool Value() const { return Check1->Value() == 1; }
    /// Sets the box and ValueOriginal; raises no Change.
    void setValue(bool value);
    /// The reference of Changed; setting it announces nothing.
    bool ValueOriginal() const { return m_valueOriginal; }
    /// Sets ValueOriginal.
    void setValueOriginal(bool value) { m_valueOriginal = value; }
    /// The reference of ChangedSaved: the value the host last stored.
    bool ValueSaved() const { return m_valueSaved; }
    /// Sets ValueSaved.
    void setValueSaved(bool value) { m_valueSaved = value; }

    /// Repaints the check box.
    Q_INVOKABLE void Refresh() { Check1->Refresh(); }
    /// Sets the tool tip of the check box and of the host's extender.
    Q_INVOKABLE void TooltipSet(const QString &Tooltip);

signals:
    /// The state changed by the user (never by Value or by loading).
    void Change();
    /// Value moved, clicked or set by code (Qt's notification; Change keeps its own rules).
    void ValueChanged();

protected:
    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onResize() override;
    void onShow() override;
    void onEnterFocus() override { m_valueOriginal = Value(); }
    void onChildClick(Child *) override;
    void onChildKeyPress(Child *, int &keyAscii) override;

private:
    void setState(int state);
    void showTextColour();
    void notifyValue();

    bool m_mandatory = true;
    bool m_enabled = true;
    bool m_locked = false;
    bool m_valueOriginal = false;
    bool m_valueSaved = false;
    qint16 m_eventDepth = 0;
    PropertyWatch m_valueWatch;
};

} // namespace kel
