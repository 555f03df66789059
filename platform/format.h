#pragma once
/// \file
/// The classic Format function and the regional number forms.
///
/// Numbers are turned into text through their 15-significant-digit decimal form (the
/// form the classic runtime prints), and every rounding decision is made on those
/// decimal digits, half away from zero: 2.675 shows as 2.68 with two decimals although
/// its binary value lies just below the half.
#include "kelexport.h"

#include <QLocale>
#include <QString>

namespace kel {

class Variant;

/// How a half is rounded.
enum class RoundMode { HalfAwayFromZero, HalfEven };

/// Rounds v to `digits` decimals (0..16), deciding on the shortest decimal text that reads
/// back as v, so 1.005 -> 1.01 and 0.125 -> 0.13 (HalfEven: 0.12). Non-finite values,
/// |v| >= 1e16 and digits outside 0..16 come back unchanged; a zero result is +0.
KEL_EXPORT double RoundDecimal(double v, int digits, RoundMode mode = RoundMode::HalfAwayFromZero);
/// The same rounding as plain text with exactly `digits` decimals: '-' and '.', no
/// grouping ("2.68", "-3", "0.00"); any finite magnitude, digits clamped to 0..340.
KEL_EXPORT QString RoundDecimalString(double v, int digits, RoundMode mode = RoundMode::HalfAwayFromZero);

/// What the classic Str/CStr give for a Double: up to 15 significant digits, no grouping,
/// "-" for negatives, exponent form ("1E+20", "1.5E-05") from 1E+15 up and below 1E-04.
/// The decimal separator is the locale's.
KEL_EXPORT QString GeneralNumber(double v, const QLocale &locale = QLocale());

/// A user-defined numeric format: # 0 . , % E+ E- e+ e-, "quoted" and \\x literals, other
/// characters literal, up to four ;-separated sections (positive;negative;zero;null).
/// The named formats General Number, Currency, Fixed, Standard, Percent, Scientific,
/// Yes/No, True/False and On/Off are understood too. An empty pattern gives
/// GeneralNumber. The output uses the locale's decimal and group separators.
KEL_EXPORT QString FormatNumber(double value, const QString &pattern, const QLocale &locale = QLocale());

/// A user-defined date/time format (d dd ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy
/// yyyy h hh n nn s ss ttttt c, AM/PM am/pm A/P a/p AMPM, "quoted" and \\x literals) or a
/// named one (General/Long/Medium/Short Date, Long/Medium/Short Time). "/" and ":" print
/// as the locale's date and time separators. m and mm right after an h or hh (literals in
/// between allowed) are minutes. An empty pattern gives the general date. firstDayOfWeek
/// is the classic 1 = Sunday .. 7 = Saturday for w and ww. An invalid serial gives "".
QString FormatDate(double serial, const QString &pattern, const QLocale &locale = QLocale(),
                   int firstDayOfWeek = 1);

/// Format on a variant: Null and Empty give "" (or the fourth section of a numeric pattern),
/// numbers, Booleans and text that reads as a number are numbers, Dates are dates; a date
/// pattern shows a number as a day serial and a numeric pattern shows a Date's serial.
/// Text that is not a number comes back as it is.
KEL_EXPORT QString FormatVariant(const Variant &v, const QString &pattern, const QLocale &locale = QLocale());

/// The classic FormatNumber with its tri-states resolved: digits after the locale's decimal
/// separator (0..99), "0" before it for |v| < 1 when includeLeadingDigit, "(1,234.50)" or
/// "-1,234.50" for negatives, groups of three with the locale's separator. A value that
/// rounds to zero prints without sign.
QString FormatNumberRegional(double v, int digitsAfterDecimal, bool includeLeadingDigit,
                             bool parensForNegative, bool groupDigits,
                             const QLocale &locale = QLocale());

/// Whether Format reads the pattern as a date/time pattern rather than a numeric one.
KEL_EXPORT bool isDatePattern(const QString &pattern);

} // namespace kel
