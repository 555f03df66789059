#include "common/fieldcontrol.h"

#include "common/baskelcontrols.h"
#include "common/fieldaccessible.h"
#include "forms/captionalign.h"
#include "forms/units.h"
#include "library/dispatch.h"

#include <QPlainTextEdit>

namespace kel {

FieldControl::FieldControl(QWidget *parent)
    : UserControl(parent), Label1(new Label(this, QStringLiteral("Label1")))
{
    Label1->Move(0, 0, 1440, 195);
    installFieldAccessibility();
    // A form built in code or from a .ui file sets everything before the event loop runs again.
    QMetaObject::invokeMethod(this, &FieldControl::endLoad, Qt::QueuedConnection);
}

QSize FieldControl::sizeHint() const
{
    const double strip = layoutRules().strip;
    // A field for about a dozen characters, as a stock line edit offers; three lines for a field
    // that may grow.
    const double twips = sizePolicy().verticalPolicy() == QSizePolicy::Fixed ? 300 : 900;
    return {twipsToPixelsX(Label1->Width() + strip) + activeField()->widget()->fontMetrics().averageCharWidth() * 14 + 8,
            twipsToPixelsY(twips)};
}

QSize FieldControl::minimumSizeHint() const
{
    return {twipsToPixelsX(Label1->Width() + 100 + layoutRules().strip), twipsToPixelsY(300)};
}

void FieldControl::endLoad()
{
    if (!m_fresh)
        return;
    m_fresh = false;
    onLoaded();
}

void FieldControl::setCaption(const QString &caption)
{
    if (caption == Label1->Caption())
        return;
    Label1->setCaption(caption);
    propertyChanged(QStringLiteral("Caption"));
    notifyAccessible(activeField()->widget(), QAccessible::NameChanged);
}

void FieldControl::setCaptionWidth(qint16 width)
{
    if (width < 0)
        return;
    Label1->setWidth(layoutRules().captionWithinWidth ? qMin<double>(width, ScaleWidth()) : width);
    propertyChanged(QStringLiteral("CaptionWidth"));
    layout();
}

void FieldControl::setEnabled(bool enabled)
{
    propertyChanged(QStringLiteral("Enabled"));
    if (enabledPutReachesControl())
        UserControl::setEnabled(enabled);
    Label1->setEnabled(enabled);
    for (Child *f : fields())
        f->setEnabled(enabled);
    colourForState(Locked() || !Enabled());
}

void FieldControl::setInsertMode(bool insert)
{
    m_insertMode = insert;
    propertyChanged(QStringLiteral("InsertMode"));
}

void FieldControl::setLocked(bool locked)
{
    for (Child *f : fields())
        f->setLocked(locked);
    propertyChanged(QStringLiteral("Locked"));
    colourForState(locked || !Enabled());
}

void FieldControl::setMandatory(bool mandatory)
{
    m_mandatory = mandatory;
    propertyChanged(QStringLiteral("Mandatory"));
    Label1->setForeColor(mandatory ? 0x8000000D : 0x80000008);
    notifyAccessible(activeField()->widget(), QAccessible::DescriptionChanged);
}

void FieldControl::setSelectOnFocus(bool select)
{
    m_selectOnFocus = select;
    propertyChanged(QStringLiteral("SelectOnFocus"));
}

void FieldControl::TooltipSet(const QString &Tooltip)
{
    for (Child *f : fields())
        f->setToolTipText(Tooltip);
    setExtenderToolTipText(Tooltip);
}

void FieldControl::setFontBoldAll(bool bold)
{
    Label1->setFontBold(bold);
    for (Child *f : fields())
        f->setFontBold(bold);
}

void FieldControl::layout()
{
    if (m_loadingDepth != 0)
        return;
    ++m_loadingDepth;
    const LayoutRules rules = layoutRules();
    if (rules.height == HeightRule::AtLeast300 ? Height() < 300 : Height() != 300)
        setHeight(300);
    if (rules.width == WidthRule::CaptionShrinks) {
        if (ScaleWidth() < Label1->Width()) {
            if (ScaleWidth() < 100)
                setWidth(100);
            Label1->setWidth(ScaleWidth());
        }
    } else {
        if (ScaleWidth() < 100 + rules.strip)
            setWidth(100 + rules.strip);
        if (ScaleWidth() - rules.strip < Label1->Width())
            Label1->setWidth(ScaleWidth() - rules.strip);
    }
    Label1->setHeight(rules.fullHeightCaption ? ScaleHeight() : 195);
    Label1->setBuddy(activeField());
    // In a layout a multi-line field takes the height it is given.
    const bool tall = qobject_cast<QPlainTextEdit *>(activeField()->widget()) != nullptr;
    setSizePolicy(QSizePolicy::Preferred, tall ? QSizePolicy::Expanding : QSizePolicy::Fixed);
    const double fieldWidth = ScaleWidth() - Label1->Width() - rules.strip;
    activeField()->Move(Label1->Width(), 0, fieldWidth, ScaleHeight());
    if (rules.strip > 0)
        layoutStrip(ScaleWidth() - rules.strip, rules.strip);
    alignCaptionText(Label1, activeField());
    --m_loadingDepth;
}

void FieldControl::colourFocused()
{
    const LibrarySettings &s = librarySettings();
    Child *f = activeField();
    f->setBackColor(f->Locked() ? s.FieldBackFocusLocked : s.FieldBackFocus);
}

void FieldControl::colourExited()
{
    const LibrarySettings &s = librarySettings();
    const quint32 colour = Locked() ? s.FieldBackLocked : s.FieldBackNormal;
    for (Child *f : fields())
        f->setBackColor(colour);
}

void FieldControl::colourForState(bool lockedOrDisabled)
{
    const LibrarySettings &s = librarySettings();
    Child *active = activeField();
    const quint32 current = active->BackColor();
    if (lockedOrDisabled && current == s.FieldBackFocus) {
        active->setBackColor(s.FieldBackFocusLocked);
    } else if (!lockedOrDisabled && current == s.FieldBackFocusLocked) {
        active->setBackColor(s.FieldBackFocus);
    } else {
        for (Child *f : fields())
            f->setBackColor(lockedOrDisabled ? s.FieldBackLocked : s.FieldBackNormal);
    }
}

void FieldControl::selectOnEntry(EditChild *field)
{
    if (!m_selectOnFocus)
        return;
    if (field->arrivedByTab()) {
        field->setSelStart(0);
        field->setSelLength(int(field->Text().size()));
    } else {
        field->setSelLength(0);
    }
}

void FieldControl::readPersisted(PropertyBag &bag, const std::vector<Persisted> &order)
{
    if (!librarySettings().Runtime)
        InitControls();
    ++m_loadingDepth;
    readThroughSetters(this, bag, order);
    --m_loadingDepth;
    if (m_loadingDepth == 0)
        endLoad();
}

void FieldControl::writePersisted(PropertyBag &bag, const std::vector<Persisted> &order)
{
    writeFromGetters(this, bag, order);
}

void readThroughSetters(QObject *control, PropertyBag &bag, const std::vector<Persisted> &order)
{
    for (const Persisted &p : order)
        dispatchPut(control, p.name, bag.ReadProperty(p.name, p.readDefault));
}

void writeFromGetters(QObject *control, PropertyBag &bag, const std::vector<Persisted> &order)
{
    // Each entry with the type it is read with, which may be narrower than the property's.
    for (const Persisted &p : order) {
        const Variant v = dispatchGet(control, p.writeFrom.isEmpty() ? p.name : p.writeFrom);
        bag.WriteProperty(p.name, numberAs(v, p.writeDefault.type()), p.writeDefault);
    }
}

void takeFieldFont(Child *field)
{
    if (const auto &rt = librarySettings().Runtime) {
        try {
            const FontSpec font = rt->FieldFont();
            field->setFontName(font.name);
            field->setFontSize(font.size);
        } catch (const std::exception &) {
            // the defaults stay
        }
    }
}

void FieldControl::onShow()
{
    endLoad();
    if (const auto &rt = librarySettings().Runtime) {
        try {
            const FontSpec field = rt->FieldFont();
            const FontSpec caption = layoutRules().captionTakesFieldFont ? field : rt->CaptionFont();
            // The setters leave a font that is already right alone: a form shows hundreds of fields.
            const auto apply = [](Child *c, const FontSpec &font) {
                c->setFontName(font.name);
                c->setFontSize(font.size);
            };
            apply(Label1, caption);
            for (Child *f : fields())
                apply(f, field);
        } catch (const std::exception &) {
            // a run-time object without fonts leaves the defaults
        }
    }
    for (Child *f : fields())
        f->setToolTipText(ExtenderToolTipText());
    // The fonts may have changed the lines.
    alignCaptionText(Label1, activeField());
}

} // namespace kel
