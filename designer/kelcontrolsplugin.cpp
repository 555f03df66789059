#include "kelcontrolsplugin.h"

#include "persisted.h"

#include "common/fieldcontrol.h"
#include "controls/kelcontrols8.h"
#include "controls/progress/kelprogressbar.h"
#include "forms/units.h"
#include "library/typemodel.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace kel {

namespace {

struct Description {
    const char16_t *className;
    const char16_t *glyph;      // drawn in the field of the widget box icon
    const char16_t *toolTip;
    const char16_t *whatsThis;
};

// The one table a new control family adds a row to; a class without one still gets an entry.
constexpr Description kDescriptions[] = {
    {u"KelText", u"ab", u"Free text, single- or multi-line",
     u"A caption and a text box: free text in one line or several, typed in insert or overwrite mode, "
     u"Enter moving on as Tab, a mandatory check, and change tracking against an original and a saved text."},
    {u"KelNumber", u"12", u"A number with decimals, digit grouping and a spinner",
     u"A caption and a number box: a Double shown grouped with fixed decimals and negatives in red, "
     u"typed through a filter that admits only what makes a number, stepped by an optional spinner or the "
     u"Up and Down keys, and kept between MinValue and MaxValue."},
    {u"KelDate", u"31", u"A date, stepped part by part",
     u"A caption and a date box: dates typed in the regional order, the day, month or year under the caret "
     u"stepped by the spinner or the Up and Down keys, an empty date allowed, kept between MinValue and MaxValue."},
    {u"KelTime", u"12:", u"A time of day, stepped part by part",
     u"A caption and a time box: times typed freely, the hour, minute or second under the caret stepped by the "
     u"spinner or the Up and Down keys, an empty time allowed, kept between MinValue and MaxValue."},
    {u"KelCombo", u"\u25be", u"A list with tags, completion while typing and an optional limit to the list",
     u"A caption and a combo box: a list with a tag per item, completion while typing, an optional limit "
     u"to the items of the list, and change tracking of the text."},
    {u"KelCheck", u"\u2713", u"A check box with change tracking",
     u"A check box whose Value is tracked against an original and a saved value like the other fields."},
    {u"KelProgressBar", u"", u"A progress bar that can show the time remaining",
     u"A painted progress bar between Min and Max that can estimate and show the time remaining from Start."},
};

const Description *description(const QString &className)
{
    for (const Description &d : kDescriptions)
        if (className == QStringView(d.className))
            return &d;
    return nullptr;
}

constexpr double kDefaultWidthTwips = 3000;
constexpr double kDefaultHeightTwips = 300;

// On a form being designed a control shows a caption: its name where first-time set-up gives it none.
void showNameAsCaption(UserControl *control)
{
    if (auto *field = qobject_cast<FieldControl *>(control); field && field->Caption().isEmpty())
        field->setCaption(field->objectName());
}

} // namespace

KelWidgetInterface::KelWidgetInterface(const QString &className, QObject *parent)
    : QObject(parent), m_className(className)
{
}

QString KelWidgetInterface::name() const { return u"kel::"_s + m_className; }
QString KelWidgetInterface::group() const { return u"KelControls8"_s; }
QString KelWidgetInterface::includeFile() const { return u"<KelControls8/kelcontrols8.h>"_s; }

QString KelWidgetInterface::toolTip() const
{
    const Description *d = description(m_className);
    return d ? QString::fromUtf16(d->toolTip) : m_className;
}

QString KelWidgetInterface::whatsThis() const
{
    const Description *d = description(m_className);
    return d ? QString::fromUtf16(d->whatsThis) : m_className;
}

QIcon KelWidgetInterface::icon() const
{
    // A caption stub and a field, with the family's glyph in the field.
    QPixmap pm(22, 22);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(QRect(1, 9, 5, 3), QColor(0x60, 0x60, 0x60));
    p.setPen(QColor(0x40, 0x40, 0x80));
    p.setBrush(QColor(0xC0, 0xFF, 0xC0));
    p.drawRect(QRectF(7.5, 4.5, 14, 13));
    const Description *d = description(m_className);
    const QString glyph = d ? QString::fromUtf16(d->glyph) : m_className.mid(3, 1);
    if (glyph.isEmpty()) {
        p.fillRect(QRectF(9, 7, 7, 8), QColor(0x30, 0x60, 0xC0));
    } else {
        QFont f = p.font();
        f.setPixelSize(glyph.size() > 2 ? 7 : 9);
        f.setBold(true);
        p.setFont(f);
        p.setPen(Qt::black);
        p.drawText(QRectF(7, 4, 15, 14), Qt::AlignCenter, glyph);
    }
    return QIcon(pm);
}

void KelWidgetInterface::initialize(QDesignerFormEditorInterface *core)
{
    // QUiLoader initialises without a form editor; only Designer drops new controls.
    m_inDesigner = core != nullptr;
    m_initialized = true;
}

QWidget *KelWidgetInterface::createWidget(QWidget *parent)
{
    QWidget *w = qobject_cast<QWidget *>(createObject(m_className, parent));
    auto *control = qobject_cast<UserControl *>(w);
    if (!control || !m_inDesigner)
        return w;
    control->setAmbientUserMode(false);
    control->InitProperties();
    // A bar that was never given a value is an empty box; on the form it shows what it will look like.
    if (auto *bar = qobject_cast<KelProgressBar *>(control)) {
        bar->Start(); // no time remaining yet
        bar->setValue(bar->Min() + (bar->Max() - bar->Min()) / 2);
    }
    return w;
}

QString KelWidgetInterface::domXml() const
{
    // The new control's size after its own layout rules, and every persisted property at its
    // first-time value, so that a saved .ui names them all and loads like a property bag.
    std::unique_ptr<QObject> object(createObject(m_className));
    auto *control = qobject_cast<UserControl *>(object.get());
    QString objectName = m_className;
    objectName[0] = objectName[0].toLower();
    // Named first: a newly placed control's caption is its name.
    object->setObjectName(objectName);

    QString text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartElement(u"ui"_s);
    xml.writeAttribute(u"language"_s, u"c++"_s);
    xml.writeAttribute(u"displayname"_s, m_className);
    xml.writeStartElement(u"widget"_s);
    xml.writeAttribute(u"class"_s, name());
    xml.writeAttribute(u"name"_s, objectName);
    if (control) {
        control->InitProperties();
        showNameAsCaption(control);
        control->setHeight(kDefaultHeightTwips);
        control->setWidth(kDefaultWidthTwips);
        xml.writeStartElement(u"property"_s);
        xml.writeAttribute(u"name"_s, u"geometry"_s);
        xml.writeStartElement(u"rect"_s);
        xml.writeTextElement(u"x"_s, u"0"_s);
        xml.writeTextElement(u"y"_s, u"0"_s);
        xml.writeTextElement(u"width"_s, QString::number(control->width()));
        xml.writeTextElement(u"height"_s, QString::number(control->height()));
        xml.writeEndElement();
        xml.writeEndElement();
        for (const PersistedProperty &p : persistedProperties(m_className)) {
            const QVariant value = plainValue(control->property(p.property.toUtf8().constData()));
            if (!value.isValid())
                continue;
            writeUiProperty(xml, p.property, value);
        }
    }
    xml.writeEndElement();
    xml.writeEndElement();
    return text;
}

KelControlsPlugin::KelControlsPlugin(QObject *parent) : QObject(parent)
{
    registerKelControls8();
    QStringList names = ClassFactory::classNames();
    // The widget box keeps this order: the described controls as listed above, then any other.
    const auto rank = [](const QString &name) {
        const Description *d = description(name);
        return d ? d - std::begin(kDescriptions) : std::size(kDescriptions);
    };
    std::stable_sort(names.begin(), names.end(), [&](const QString &a, const QString &b) { return rank(a) < rank(b); });
    for (const QString &name : names) {
        const typemodel::ClassInfo *cls = typemodel::findClass(name);
        if (cls && cls->isControl)
            m_widgets << new KelWidgetInterface(name, this);
    }
}

} // namespace kel
