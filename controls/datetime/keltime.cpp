#include "controls/datetime/keltime.h"

#include "library/runtimeinterface.h"
#include "platform/dayserial.h"
#include "platform/format.h"
#include "platform/services.h"

#include <QCoreApplication>
#include <algorithm>

namespace kel {

namespace {

const QString DefaultFormat = QStringLiteral("hh:nn am/pm");
const double LastSecond = 86399.0 / 86400.0;

const std::vector<Persisted> &readOrder()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Caption"), QString(), QString()},
        {QStringLiteral("CaptionWidth"), qint16(0), qint16(0)},
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("Format"), DefaultFormat, DefaultFormat},
        {QStringLiteral("InsertMode"), false, false},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("MaxValue"), Date{LastSecond}, Date{LastSecond}},
        {QStringLiteral("MinValue"), Date{0}, Date{0}},
        {QStringLiteral("SelectOnFocus"), false, false},
        {QStringLiteral("UpDown"), true, true},
        // Read untyped: the bag would turn a stored text into the default's integer.
        {QStringLiteral("Value"), Variant(), qint16(0)},
    };
    return table;
}

} // namespace

KelTime::KelTime(QWidget *parent) : DateTimeField(parent)
{
    m_format = DefaultFormat;
    m_minValue = 0;
    m_maxValue = LastSecond;
}

void KelTime::setFormat(const QString &format)
{
    QString f = format;
    if (const qsizetype p = upperInPlace(format).indexOf(u"H:MM"); p >= 0)
        f = format.left(p + 2) + QString::fromUtf16(format[p + 2] == u'm' ? u"nn" : u"NN") + format.mid(p + 4);
    m_format = f;
    propertyChanged(QStringLiteral("Format"));
    formatChanged();
}

void KelTime::setMaxValue(QTime value)
{
    if (value.isValid())
        setMaxValue(QDateTime(toQDate(0), value));
}

void KelTime::setMinValue(QTime value)
{
    if (value.isValid())
        setMinValue(QDateTime(toQDate(0), value));
}

double KelTime::bound(double serial) const
{
    return std::min(std::round(normalised(serial) * 86400) / 86400, LastSecond);
}

DateTimeField::Wording KelTime::wording() const
{
    return {QCoreApplication::translate("kel::KelTime", "Invalid Time"),
            QCoreApplication::translate("kel::KelTime", "This field only accepts times from %1 to %2."),
            QCoreApplication::translate("kel::KelTime", "Please enter a valid time in this field.")};
}

std::optional<double> KelTime::parse(const QString &text) const
{
    try {
        return serialOf(runtime().RuntimeDates()->ParseTime(text));
    } catch (const std::exception &) {
        return std::nullopt; // a run-time object that cannot parse reads no time
    }
}

bool KelTime::accepts(int keyAscii) const
{
    return (keyAscii >= u'0' && keyAscii <= u'9') || (keyAscii < 128 && QStringView(u".:AMPamp").contains(QChar(keyAscii)));
}

Variant KelTime::persistedValue() const
{
    if (const Date *d = m_value.get<Date>())
        return FormatDate(d->serial, QStringLiteral("hh:nn:ss"));
    return QString();
}

void KelTime::step(int direction)
{
    if (Text1->Locked())
        return;
    const QString text = Text1->Text();
    const std::optional<double> parsed = parse(text);
    const bool noValue = !parsed;
    double base = parsed.value_or(0);
    if (noValue) {
        const double now = fromQDateTime(services().Now()).value_or(0);
        base = now - std::floor(now);
    }

    static const QString letters = QStringLiteral("HNS");
    const QString upper = upperInPlace(m_format);
    int part = 2;
    if (text == formatted(base)) {
        // Time texts keep the layout of their format, so the caret indexes the format.
        QChar letter = u'N';
        for (qsizetype i = qMax(Text1->SelStart(), 1) - 1; i < upper.size(); ++i) {
            if (letters.contains(upper[i])) {
                letter = upper[i];
                break;
            }
        }
        part = int(letters.indexOf(letter)) + 1;
    }

    double stepped = base;
    if (!noValue) {
        static const DateInterval units[] = {DateInterval::Hour, DateInterval::Minute, DateInterval::Second};
        stepped = DateAdd(units[part - 1], direction, base).value_or(base);
    }
    const double value = clamped(stepped);

    const int p = int(upper.lastIndexOf(letters[part - 1])) + 1;
    finishStep(value, formatted(value), p == upper.size() ? p + 1 : p, noValue, false);
}

void KelTime::onInitProperties()
{
    initDefaults(DefaultFormat, 0, LastSecond);
}

void KelTime::onReadProperties(PropertyBag &bag)
{
    const bool stored = !bag.ReadProperty(QStringLiteral("Value"), Variant()).isEmpty();
    readPersisted(bag, readOrder());
    if (!stored)
        setValue(qint16(0));
}
void KelTime::onWriteProperties(PropertyBag &bag) { writeProperties(bag, readOrder()); }

} // namespace kel
