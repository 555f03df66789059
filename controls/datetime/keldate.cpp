#include "controls/datetime/keldate.h"

#include "library/runtimeinterface.h"
#include "platform/dayserial.h"
#include "platform/format.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace kel {

namespace {

const QString DefaultFormat = QStringLiteral("dd/mm/yyyy");
const QString SavedFormat = QStringLiteral("ddmmyyyy");

const std::vector<Persisted> &readOrder()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Caption"), QString(), QString()},
        {QStringLiteral("CaptionWidth"), qint16(0), qint16(0)},
        {QStringLiteral("DaysFlag"), qint16(0), qint16(0)},
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("Format"), DefaultFormat, DefaultFormat},
        {QStringLiteral("InsertMode"), false, false},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("MaxValue"), Date{kMaxDaySerial}, Date{kMaxDaySerial}},
        {QStringLiteral("MinValue"), Date{kMinDaySerial}, Date{kMinDaySerial}},
        {QStringLiteral("SelectOnFocus"), false, false},
        {QStringLiteral("UpDown"), true, true},
        // A date of today is not stored: the form shows the day it is opened on.
        {QStringLiteral("Value"), QStringLiteral("Now"), QStringLiteral("Now")},
    };
    return table;
}

} // namespace

KelDate::KelDate(QWidget *parent) : DateTimeField(parent)
{
    m_format = DefaultFormat;
    m_minValue = kMinDaySerial;
    m_maxValue = kMaxDaySerial;
}

void KelDate::setDaysFlag(qint32 flag)
{
    if (flag < Allow || flag > BirthDay)
        return;
    m_daysFlag = KelDateDaysFlag(flag);
    propertyChanged(QStringLiteral("DaysFlag"));
    // At run time it takes effect at the next commit or step. While a form loads, a value already
    // there is pinned now, so that DaysFlag before or after Value gives one field; locked or not,
    // as Value pins whatever the lock. Typed text stays as typed (its commit pins it).
    const Date *d = m_value.get<Date>();
    if (!d || !loading())
        return;
    const double was = d->serial, now = pinned(was);
    if (now == was)
        return;
    if (const Date *o = m_valueOriginal.get<Date>(); o && o->serial == was)
        m_valueOriginal = Date{now};
    m_value = Date{now};
    if (!m_textDirty)
        showText(formatted(now));
    notifyValue();
}

void KelDate::setFormat(const QString &format)
{
    if (format.isEmpty())
        return;
    m_format = format;
    propertyChanged(QStringLiteral("Format"));
    formatChanged();
}

DateTimeField::Wording KelDate::wording() const
{
    return {QCoreApplication::translate("kel::KelDate", "Invalid Date"),
            QCoreApplication::translate("kel::KelDate", "This field only accepts dates from %1 to %2."),
            QCoreApplication::translate("kel::KelDate", "Please enter a valid date in this field.")};
}

std::optional<double> KelDate::parse(const QString &text) const { return parseIn(text, m_format, m_daysFlag == BirthDay); }

std::optional<double> KelDate::parseIn(const QString &text, const QString &format, bool birthday) const
{
    try {
        return serialOf(runtime().RuntimeDates()->ParseDate(text, format, Date{today()}, birthday));
    } catch (const std::exception &) {
        return std::nullopt; // a run-time object that cannot parse reads no date
    }
}

bool KelDate::showsTime() const
{
    // Asked for every value; only Format changes the answer.
    if (m_showsTimeFor != m_format) {
        // Two mornings that differ in hour, minute and second: AM/PM alone shows no time of day.
        constexpr double day = 45000, early = 3661.0 / 86400, later = 7322.0 / 86400;
        m_showsTime = formatted(day + early) != formatted(day + later);
        m_showsTimeFor = m_format;
    }
    return m_showsTime;
}

double KelDate::pinned(double serial) const
{
    if (m_daysFlag == FirstDay)
        return DateSerial(Year(serial), Month(serial), 1).value_or(serial);
    if (m_daysFlag == LastDay) {
        try {
            return runtime().RuntimeDates()->LastDayOfMonth(Date{serial}).serial;
        } catch (const std::exception &) {
            return LastDayOfMonth(serial);
        }
    }
    return serial;
}

Variant KelDate::persistedValue() const
{
    if (const Date *d = m_value.get<Date>())
    {
        if (d->serial == today())
            return QStringLiteral("Now");
        // Always eight digits: a year before 1000 would otherwise not read back.
        const QChar zero = u'0';
        return QStringLiteral("%1%2%3").arg(Day(d->serial), 2, 10, zero).arg(Month(d->serial), 2, 10, zero)
                .arg(Year(d->serial), 4, 10, zero);
    }
    return QString();
}

void KelDate::step(int direction)
{
    if (Text1->Locked())
        return;
    const QString text = Text1->Text();
    const std::optional<double> parsed = parse(text);
    const bool noValue = !parsed;
    double base = parsed ? *parsed : today();
    const bool dayPinned = m_daysFlag == FirstDay || m_daysFlag == LastDay;
    int part = 1;
    if (m_daysFlag == FirstDay) {
        base = DateSerial(Year(base), Month(base), 1).value_or(base);
        part = 2;
    } else if (m_daysFlag == LastDay) {
        base = DateSerial(Year(base), Month(base) + 1, 1).value_or(base + 1) - 1;
        part = 2;
    }

    static const QString letters = QStringLiteral("DMY");
    const QString upper = upperInPlace(m_format);
    const auto separatorsIn = [](QStringView s) { return int(std::count_if(s.begin(), s.end(), isPartSeparator)); };
    int count = 0;
    if (text != formatted(base)) {
        // Not the shown form of a date: the default part, its place in the format.
        const qsizetype at = upper.lastIndexOf(letters[part - 1]);
        count = at < 0 ? 0 : separatorsIn(QStringView(m_format).left(at + 1));
    } else {
        count = separatorsIn(QStringView(text).left(Text1->SelStart()));
        qsizetype from = 0;
        if (count > 0) {
            from = m_format.size() - 1;
            for (qsizetype i = 0, seen = 0; i < m_format.size(); ++i) {
                if (isPartSeparator(m_format[i]) && ++seen == count) {
                    from = i;
                    break;
                }
            }
        }
        for (qsizetype i = qMax<qsizetype>(from, 0); i < upper.size(); ++i) {
            if (const qsizetype p = letters.indexOf(upper[i]); p >= 0) {
                part = int(p) + 1;
                break;
            }
        }
    }
    if (part == 1 && dayPinned)
        part = 2;

    double stepped = base;
    if (!noValue) {
        static const DateInterval units[] = {DateInterval::Day, DateInterval::Month, DateInterval::Year};
        stepped = DateAdd(units[part - 1], direction, base).value_or(base);
    }
    const double value = pinned(clamped(stepped));

    // The caret goes to the end of the stepped part: before the separator that follows it.
    const QString shown = formatted(value);
    int caret = int(shown.size());
    for (int i = 0, target = count + 1; i < shown.size(); ++i) {
        if (isPartSeparator(shown[i]) && --target == 0) {
            caret = i;
            break;
        }
    }
    finishStep(value, shown, caret, noValue, true);
}

void KelDate::onInitProperties()
{
    initDefaults(DefaultFormat, kMinDaySerial, kMaxDaySerial);
    m_daysFlag = Allow;
}

void KelDate::onReadProperties(PropertyBag &bag)
{
    readPersisted(bag, readOrder());
    // The saved form is read as what it is, whatever order the field's own format puts the
    // parts in: under mm/dd/yyyy, 06042013 is still 6 April. A birthday field may hold a date after
    // today (stepped or clamped to its bounds), which its parser refuses as typed text.
    const QString stored = bag.ReadProperty(QStringLiteral("Value"), QString()).toString();
    static const QRegularExpression savedForm(QStringLiteral("^[0-9]{8}$"));
    if (savedForm.match(stored).hasMatch()) {
        if (const std::optional<double> v = parseIn(stored, SavedFormat, false))
            setValue(Date{*v});
    }
}
void KelDate::onWriteProperties(PropertyBag &bag) { writeProperties(bag, readOrder()); }

} // namespace kel
