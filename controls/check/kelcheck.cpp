#include "controls/check/kelcheck.h"

#include "common/baskelcontrols.h"
#include "common/fieldcontrol.h"
#include "forms/units.h"
#include "library/librarysettings.h"

namespace kel {

namespace {

constexpr quint32 GreyText = 0x80000011;
constexpr quint32 Highlight = 0x8000000D;
constexpr quint32 WindowText = 0x80000008;

// Caption and FontBold go straight to the check box on reading, so they are not in the table.
const std::vector<Persisted> &persisted()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("Value"), true, true},
    };
    return table;
}

} // namespace

KelCheck::KelCheck(QWidget *parent)
    : UserControl(parent), Check1(new CheckBox(this, QStringLiteral("Check1")))
{
    setFocusProxy(Check1->widget());
    onResize();
}

void KelCheck::onChildClick(Child *)
{
    if (m_eventDepth == 0)
        emit Change();
    notifyValue();
}

void KelCheck::onChildKeyPress(Child *, int &keyAscii)
{
    if (keyAscii != 13)
        return;
    keyAscii = 0;
    if (const auto &rt = librarySettings().Runtime)
        rt->SendKey(9);
    else
        sendTabKey();
}

void KelCheck::setState(int state)
{
    ++m_eventDepth;
    Check1->setValue(state);
    --m_eventDepth;
    notifyValue();
}

void KelCheck::notifyValue()
{
    if (m_valueWatch.moved(Value()))
        emit ValueChanged();
}

void KelCheck::setCaption(const QString &caption)
{
    if (caption == Check1->Caption())
        return;
    Check1->setCaption(caption);
    propertyChanged(QStringLiteral("Caption"));
}

void KelCheck::setEnabled(bool enabled)
{
    m_enabled = enabled;
    propertyChanged(QStringLiteral("Enabled"));
    // A disabled widget greys its children, which is right for disabled but not for locked:
    // locked only takes the input away.
    UserControl::setEnabled(enabled);
    Check1->setEnabled(enabled);
    Check1->setAcceptsInput(enabled && !m_locked);
    showTextColour();
}

void KelCheck::setFontBold(bool bold)
{
    Check1->setFontBold(bold);
    propertyChanged(QStringLiteral("FontBold"));
}

void KelCheck::setLocked(bool locked)
{
    m_locked = locked;
    propertyChanged(QStringLiteral("Locked"));
    Check1->setAcceptsInput(m_enabled && !locked);
}

void KelCheck::setMandatory(bool mandatory)
{
    m_mandatory = mandatory;
    propertyChanged(QStringLiteral("Mandatory"));
    showTextColour();
}

void KelCheck::showTextColour()
{
    Check1->setForeColor(!m_enabled ? GreyText : m_mandatory ? Highlight : WindowText);
}

void KelCheck::setValue(bool value)
{
    setState(value ? 1 : 0);
    m_valueOriginal = value;
}

void KelCheck::TooltipSet(const QString &Tooltip)
{
    Check1->setToolTipText(Tooltip);
    setExtenderToolTipText(Tooltip);
}

void KelCheck::onInitProperties()
{
    m_enabled = true;
    setState(0);
    Check1->setCaption(objectName());
    Check1->setFontBold(false);
}

void KelCheck::onReadProperties(PropertyBag &bag)
{
    if (!librarySettings().Runtime)
        InitControls();
    Check1->setCaption(bag.ReadProperty(QStringLiteral("Caption"), QString()).toString());
    bool ok = false;
    const bool bold = bag.ReadProperty(QStringLiteral("FontBold"), false).toBool(&ok);
    if (ok)
        Check1->setFontBold(bold);
    readThroughSetters(this, bag, persisted());
}

void KelCheck::onWriteProperties(PropertyBag &bag)
{
    bag.WriteProperty(QStringLiteral("Caption"), Caption(), QString());
    bag.WriteProperty(QStringLiteral("FontBold"), FontBold(), false);
    writeFromGetters(this, bag, persisted());
}

void KelCheck::onResize()
{
    if (Height() != 300)
        setHeight(300); // comes back here once
    const double boxHeight = qMin(Check1->PreferredHeight(), Height());
    Check1->Move(0, (Height() - boxHeight) / 2, ScaleWidth(), boxHeight);
}

void KelCheck::onShow()
{
    takeFieldFont(Check1);
    Check1->setToolTipText(ExtenderToolTipText());
    onResize();
}

} // namespace kel
