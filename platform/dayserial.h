#pragma once
/// \file
/// Day serials: whole days since 30 December 1899, the fraction is the time of day.
/// Before that day the serial is negative but its fraction still counts forward within
/// the day: -1.25 is 29 December 1899 06:00, not 28 December 18:00.
#include "kelexport.h"

#include <QDate>
#include <QDateTime>
#include <optional>

namespace kel {

inline constexpr double kMinDaySerial = -657434.0;  ///< 1 January 100
inline constexpr double kMaxDaySerial = 2958465.0;  ///< 31 December 9999 (its whole day)

/// A serial broken into its calendar parts, time rounded to the nearest second.
struct CivilDateTime {
    int year = 1899;  ///< the calendar date
    int month = 12;   ///< 1..12
    int day = 30;     ///< 1..31
    int hour = 0;    ///< the time of day, 0..23
    int minute = 0;  ///< 0..59
    int second = 0;  ///< 0..59
    /// Same date and time.
    friend bool operator==(const CivilDateTime &, const CivilDateTime &) = default;
};

/// Finite and within 1 January 100 00:00:00 .. 31 December 9999 23:59:59.
KEL_EXPORT bool isValidDaySerial(double serial);

/// Month and day roll over in both directions (month 13 is next January, day 0 the last
/// day of the previous month); years 0..29 mean 2000..2029 and 30..99 mean 1930..1999.
KEL_EXPORT std::optional<double> DateSerial(int year, int month, int day);
/// Hours, minutes and seconds roll over into days; the result may leave 0..1.
KEL_EXPORT std::optional<double> TimeSerial(int hour, int minute, int second);
/// DateSerial and TimeSerial in one, rolling seconds through to years.
KEL_EXPORT std::optional<double> DateTimeSerial(int year, int month, int day, int hour, int minute, int second);

/// The calendar parts of a serial, or nothing for an invalid one.
KEL_EXPORT std::optional<CivilDateTime> splitDaySerial(double serial);

/// Parts of a serial; 0 when the serial is not valid.
KEL_EXPORT int Year(double serial);
/// Month 1..12 of a serial.
KEL_EXPORT int Month(double serial);
/// Day of the month of a serial.
KEL_EXPORT int Day(double serial);
/// Hour 0..23 of a serial.
KEL_EXPORT int Hour(double serial);
/// Minute of a serial.
KEL_EXPORT int Minute(double serial);
/// Second of a serial.
KEL_EXPORT int Second(double serial);
/// Day 1..366 within its year.
KEL_EXPORT int DayOfYear(double serial);
/// 1..7 counted from firstDayOfWeek (1 = Sunday .. 7 = Saturday, 0 = the locale's first day).
KEL_EXPORT int Weekday(double serial, int firstDayOfWeek = 1);

/// The units DateAdd counts in.
enum class DateInterval { Day, Week, Month, Quarter, Year, Hour, Minute, Second };

/// Adds whole intervals (number is truncated toward zero). Months and years keep the day
/// when it exists, else take the month's last day; the time of day is kept. nullopt when
/// the result leaves the valid range or an argument is not finite.
KEL_EXPORT std::optional<double> DateAdd(DateInterval interval, double number, double serial);

/// The last day of the serial's month, at midnight; NaN for an invalid serial.
KEL_EXPORT double LastDayOfMonth(double serial);

KEL_EXPORT QDate toQDate(double serial);          ///< invalid QDate for an invalid serial
KEL_EXPORT QDateTime toQDateTime(double serial);  ///< local time, no zone conversion
/// The serial of a QDate, or nothing for an invalid one or one out of range.
KEL_EXPORT std::optional<double> fromQDate(QDate date);
/// The serial of a QDateTime (its local time), or nothing when invalid or out of range.
KEL_EXPORT std::optional<double> fromQDateTime(const QDateTime &dateTime);

} // namespace kel
