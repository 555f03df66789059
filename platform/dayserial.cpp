#include "platform/dayserial.h"

#include <QLocale>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace kel {

namespace {

using namespace std::chrono;
using i64 = std::int64_t;

constexpr sys_days kEpoch = sys_days{year{1899} / December / 30};
constexpr i64 kMinDay = -657434;
constexpr i64 kMaxDay = 2958465;
constexpr i64 kSecondsPerDay = 86400;
// Days in 400 Gregorian years: lets far-off years be folded into chrono's year range.
constexpr i64 kDaysPer400Years = 146097;

i64 floorDiv(i64 a, i64 b)
{
    i64 q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

i64 floorMod(i64 a, i64 b) { return a - floorDiv(a, b) * b; }

// Negative days keep their time of day as a positive fraction.
double encode(i64 day, double secondsOfDay)
{
    const double t = secondsOfDay / double(kSecondsPerDay);
    return day >= 0 ? double(day) + t : double(day) - t;
}

double encodeFraction(i64 day, double fraction)
{
    return day >= 0 ? double(day) + fraction : double(day) - fraction;
}

bool dayInRange(i64 day) { return day >= kMinDay && day <= kMaxDay; }

// Day number of the first of a (rolled) month; months may be any count from year 0.
i64 firstOfMonth(i64 totalMonths)
{
    i64 y = floorDiv(totalMonths, 12);
    const auto m = unsigned(floorMod(totalMonths, 12) + 1);
    i64 cycles = 0;
    if (y > 20000 || y < -20000) {
        cycles = floorDiv(y - 2000, 400);
        y -= cycles * 400;
    }
    const sys_days first{year{int(y)} / month{m} / 1};
    return (first - kEpoch).count() + cycles * kDaysPer400Years;
}

std::optional<i64> dayFromCivil(i64 y, i64 m, i64 d)
{
    const i64 day = firstOfMonth(y * 12 + (m - 1)) + (d - 1);
    if (!dayInRange(day))
        return std::nullopt;
    return day;
}

year_month_day civil(i64 day) { return year_month_day{kEpoch + days{day}}; }

struct Parts {
    i64 day;      // days from the epoch, after rounding the time
    int seconds;  // seconds of that day
};

// Breaks a serial into day and whole seconds, rounding to the nearest second as the
// classic runtime does (a time that rounds up to 24:00 moves to the next day).
std::optional<Parts> parts(double serial)
{
    if (!std::isfinite(serial) || serial <= double(kMinDay - 1) || serial >= double(kMaxDay + 1))
        return std::nullopt;
    const double whole = std::trunc(serial);
    i64 day = i64(whole);
    i64 secs = std::llround(std::fabs(serial - whole) * double(kSecondsPerDay));
    if (secs >= kSecondsPerDay) {
        ++day;
        secs -= kSecondsPerDay;
    }
    if (!dayInRange(day))
        return std::nullopt;
    return Parts{day, int(secs)};
}

// Unrounded day and fraction, for arithmetic that must keep the time exactly.
struct Linear {
    i64 day;
    double fraction;
};

std::optional<Linear> linear(double serial)
{
    if (!isValidDaySerial(serial))
        return std::nullopt;
    const double whole = std::trunc(serial);
    return Linear{i64(whole), std::fabs(serial - whole)};
}

} // namespace

bool isValidDaySerial(double serial)
{
    return std::isfinite(serial) && serial > double(kMinDay - 1) && serial < double(kMaxDay + 1);
}

std::optional<double> DateTimeSerial(int y, int mo, int d, int h, int mi, int s)
{
    // The date alone may be out of range and still be pulled back by the time.
    const i64 base = firstOfMonth(i64(y) * 12 + (i64(mo) - 1)) + (i64(d) - 1);
    const i64 total = i64(h) * 3600 + i64(mi) * 60 + i64(s);
    const i64 finalDay = base + floorDiv(total, kSecondsPerDay);
    if (!dayInRange(finalDay))
        return std::nullopt;
    return encode(finalDay, double(floorMod(total, kSecondsPerDay)));
}

std::optional<double> DateSerial(int y, int month, int day)
{
    if (y >= 0 && y <= 29)
        y += 2000;
    else if (y >= 30 && y <= 99)
        y += 1900;
    return DateTimeSerial(y, month, day, 0, 0, 0);
}

std::optional<double> TimeSerial(int hour, int minute, int second)
{
    const i64 total = i64(hour) * 3600 + i64(minute) * 60 + i64(second);
    const i64 day = floorDiv(total, kSecondsPerDay);
    if (!dayInRange(day))
        return std::nullopt;
    return encode(day, double(floorMod(total, kSecondsPerDay)));
}

std::optional<CivilDateTime> splitDaySerial(double serial)
{
    const auto p = parts(serial);
    if (!p)
        return std::nullopt;
    const year_month_day ymd = civil(p->day);
    return CivilDateTime{int(ymd.year()), int(unsigned(ymd.month())), int(unsigned(ymd.day())),
                         p->seconds / 3600, p->seconds / 60 % 60, p->seconds % 60};
}

int Year(double serial) { const auto c = splitDaySerial(serial); return c ? c->year : 0; }
int Month(double serial) { const auto c = splitDaySerial(serial); return c ? c->month : 0; }
int Day(double serial) { const auto c = splitDaySerial(serial); return c ? c->day : 0; }
int Hour(double serial) { const auto c = splitDaySerial(serial); return c ? c->hour : 0; }
int Minute(double serial) { const auto c = splitDaySerial(serial); return c ? c->minute : 0; }
int Second(double serial) { const auto c = splitDaySerial(serial); return c ? c->second : 0; }

int DayOfYear(double serial)
{
    const auto p = parts(serial);
    if (!p)
        return 0;
    const sys_days d = kEpoch + days{p->day};
    const year_month_day ymd{d};
    return int((d - sys_days{ymd.year() / January / 1}).count()) + 1;
}

int Weekday(double serial, int firstDayOfWeek)
{
    const auto p = parts(serial);
    if (!p || firstDayOfWeek < 0 || firstDayOfWeek > 7)
        return 0;
    if (firstDayOfWeek == 0) // Qt counts Monday = 1 .. Sunday = 7
        firstDayOfWeek = int(QLocale().firstDayOfWeek()) % 7 + 1;
    const int sundayBased = int(weekday{kEpoch + days{p->day}}.c_encoding()); // 0 = Sunday
    return (sundayBased - (firstDayOfWeek - 1) + 7) % 7 + 1;
}

std::optional<double> DateAdd(DateInterval interval, double number, double serial)
{
    const auto lin = linear(serial);
    // Beyond this every interval leaves the valid range anyway.
    if (!lin || !std::isfinite(number) || std::fabs(number) > 1e13)
        return std::nullopt;
    const i64 n = i64(std::trunc(number));

    auto addDays = [&](i64 count) -> std::optional<double> {
        const i64 day = lin->day + count;
        if (!dayInRange(day))
            return std::nullopt;
        return encodeFraction(day, lin->fraction);
    };
    auto addMonths = [&](i64 count) -> std::optional<double> {
        if (std::llabs(count) > 200000)
            return std::nullopt;
        const year_month_day ymd = civil(lin->day);
        const i64 totalMonths = i64(int(ymd.year())) * 12 + (unsigned(ymd.month()) - 1) + count;
        const i64 y = floorDiv(totalMonths, 12);
        if (y < 100 || y > 9999)
            return std::nullopt;
        const auto m = month{unsigned(floorMod(totalMonths, 12) + 1)};
        const year_month_day_last last{year{int(y)} / m / std::chrono::last};
        const unsigned dd = std::min(unsigned(ymd.day()), unsigned(last.day()));
        const i64 day = (sys_days{year{int(y)} / m / dd} - kEpoch).count();
        if (!dayInRange(day))
            return std::nullopt;
        return encodeFraction(day, lin->fraction);
    };
    auto addSeconds = [&](i64 count) -> std::optional<double> {
        double secs = lin->fraction * double(kSecondsPerDay);
        // Serials built from whole seconds come back a hair off; keep them whole.
        if (std::fabs(secs - std::round(secs)) < 1e-4)
            secs = std::round(secs);
        const double whole = std::floor(secs);
        const i64 t = lin->day * kSecondsPerDay + i64(whole) + count;
        const i64 day = floorDiv(t, kSecondsPerDay);
        if (!dayInRange(day))
            return std::nullopt;
        return encode(day, double(floorMod(t, kSecondsPerDay)) + (secs - whole));
    };

    switch (interval) {
    case DateInterval::Day: return addDays(n);
    case DateInterval::Week: return addDays(n * 7);
    case DateInterval::Month: return addMonths(n);
    case DateInterval::Quarter: return addMonths(n * 3);
    case DateInterval::Year: return addMonths(n * 12);
    case DateInterval::Hour: return addSeconds(n * 3600);
    case DateInterval::Minute: return addSeconds(n * 60);
    case DateInterval::Second: return addSeconds(n);
    }
    return std::nullopt;
}

double LastDayOfMonth(double serial)
{
    const auto p = parts(serial);
    if (!p)
        return std::nan("");
    const year_month_day ymd = civil(p->day);
    const sys_days last{year_month_day_last{ymd.year() / ymd.month() / std::chrono::last}};
    return double((last - kEpoch).count());
}

QDate toQDate(double serial)
{
    const auto c = splitDaySerial(serial);
    return c ? QDate(c->year, c->month, c->day) : QDate();
}

QDateTime toQDateTime(double serial)
{
    const auto c = splitDaySerial(serial);
    if (!c)
        return {};
    return QDateTime(QDate(c->year, c->month, c->day), QTime(c->hour, c->minute, c->second));
}

std::optional<double> fromQDate(QDate date)
{
    if (!date.isValid())
        return std::nullopt;
    return DateTimeSerial(date.year(), date.month(), date.day(), 0, 0, 0);
}

std::optional<double> fromQDateTime(const QDateTime &dateTime)
{
    if (!dateTime.isValid())
        return std::nullopt;
    const QDate d = dateTime.date();
    const QTime t = dateTime.time();
    const auto day = dayFromCivil(d.year(), d.month(), d.day());
    if (!day)
        return std::nullopt;
    return encode(*day, t.msecsSinceStartOfDay() / 1000.0);
}

} // namespace kel
