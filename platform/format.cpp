#include "platform/format.h"

#include "platform/dayserial.h"
#include "platform/variant.h"

#include <QStringList>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

using namespace Qt::StringLiterals;

namespace kel {

namespace {

// ---------------------------------------------------------------------------------------
// Decimal digits of a double

// value = 0.d1d2...dn * 10^point: the first `point` digits are the integer part.
struct Decimal {
    std::string digits; // significant digits, no leading or trailing zeros; empty for zero
    int point = 0;
    bool zero() const { return digits.empty(); }
};

// precision < 0: the shortest text that reads back as the same double.
Decimal toDecimal(double v, int significant)
{
    Decimal d;
    v = std::fabs(v);
    if (v == 0 || !std::isfinite(v))
        return d;
    char buf[64];
    const auto res = significant < 0
        ? std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific)
        : std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, significant - 1);
    const std::string_view text(buf, size_t(res.ptr - buf));
    const size_t e = text.find('e');
    for (char c : text.substr(0, e))
        if (c >= '0' && c <= '9')
            d.digits += c;
    int exponent = 0;
    std::from_chars(text.data() + e + (text[e + 1] == '+' ? 2 : 1), text.data() + text.size(), exponent);
    d.point = exponent + 1;
    while (!d.digits.empty() && d.digits.back() == '0')
        d.digits.pop_back();
    return d;
}

Decimal classicDigits(double v) { return toDecimal(v, 15); }

double magnitude(const Decimal &d)
{
    if (d.zero())
        return 0.0;
    const std::string text = "0." + d.digits + "e" + std::to_string(d.point);
    double r = 0;
    std::from_chars(text.data(), text.data() + text.size(), r);
    return r;
}

// Keeps `frac` decimals.
void roundTo(Decimal &d, int frac, RoundMode mode)
{
    if (d.zero())
        return;
    const long keep = long(d.point) + frac;
    if (keep >= long(d.digits.size()))
        return;
    bool up = false;
    if (keep >= 0) {
        const char first = d.digits[size_t(keep)];
        const bool beyondHalf = size_t(keep) + 1 < d.digits.size(); // no trailing zeros
        if (first != '5')
            up = first > '5';
        else if (beyondHalf || mode == RoundMode::HalfAwayFromZero)
            up = true;
        else
            up = keep > 0 && (d.digits[size_t(keep) - 1] - '0') % 2 == 1;
    }
    d.digits.resize(size_t(std::max(keep, 0L)));
    if (up) {
        long i = long(d.digits.size()) - 1;
        while (i >= 0 && d.digits[size_t(i)] == '9')
            d.digits[size_t(i--)] = '0';
        if (i < 0) {
            d.digits.insert(d.digits.begin(), '1');
            ++d.point;
        } else {
            ++d.digits[size_t(i)];
        }
    }
    while (!d.digits.empty() && d.digits.back() == '0')
        d.digits.pop_back();
    if (d.digits.empty())
        d.point = 0;
}

std::string zeros(long n) { return n > 0 ? std::string(size_t(n), '0') : std::string(); }

std::string integerDigits(const Decimal &d)
{
    if (d.point <= 0)
        return {};
    const auto n = long(d.digits.size());
    return d.digits.substr(0, size_t(std::min<long>(d.point, n))) + zeros(d.point - n);
}

std::string fractionDigits(const Decimal &d)
{
    if (d.zero())
        return {};
    if (d.point < 0)
        return zeros(-d.point) + d.digits;
    return size_t(d.point) < d.digits.size() ? d.digits.substr(size_t(d.point)) : std::string();
}

QString latin(const std::string &s) { return QString::fromLatin1(s.data(), qsizetype(s.size())); }

QString withGroups(const std::string &digits, const QString &separator)
{
    QString out;
    const auto n = long(digits.size());
    for (long i = 0; i < n; ++i) {
        out += QLatin1Char(digits[size_t(i)]);
        const long right = n - 1 - i;
        if (right > 0 && right % 3 == 0)
            out += separator;
    }
    return out;
}

QString nonFinite(double v)
{
    if (std::isnan(v))
        return u"NaN"_s;
    return v < 0 ? u"-Infinity"_s : u"Infinity"_s;
}

// ---------------------------------------------------------------------------------------
// Pattern sections

// Splits on ';' outside quotes and escapes.
QStringList splitSections(const QString &pattern)
{
    QStringList out;
    QString cur;
    bool quoted = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'"') {
            quoted = !quoted;
        } else if (c == u'\\' && !quoted && i + 1 < pattern.size()) {
            cur += c;
            cur += pattern[++i];
            continue;
        } else if (c == u';' && !quoted) {
            out << cur;
            cur.clear();
            continue;
        }
        cur += c;
    }
    out << cur;
    return out;
}

struct NumToken {
    enum Kind { Literal, IntDigit, FracDigit, Point, Exponent } kind;
    QString text;            // Literal
    bool upper = false;      // Exponent: E or e
    bool plus = false;       // Exponent: E+ shows '+', E- only '-'
    int exponentDigits = 0;  // Exponent: zero-padded width
};

struct NumSection {
    QList<NumToken> tokens;
    int intCount = 0, fracCount = 0; // digit placeholders either side of the point
    int minInt = 0, minFrac = 0;     // digits that always print (from the first/up to the last 0)
    int scale = 0;                   // thousands divided out by commas before the point
    bool grouping = false, percent = false, exponent = false, point = false;
    bool numeric() const { return intCount + fracCount > 0 || point; }
};

NumSection parseNumSection(const QString &s)
{
    NumSection sec;
    int firstIntZero = -1;
    auto literal = [&](const QString &t) { sec.tokens.append(NumToken{NumToken::Literal, t}); };
    auto lastIsIntDigit = [&] { return !sec.tokens.isEmpty() && sec.tokens.last().kind == NumToken::IntDigit; };
    const qsizetype n = s.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = s[i];
        if (c == u'"') {
            const qsizetype end = s.indexOf(u'"', i + 1);
            literal(s.mid(i + 1, (end < 0 ? n : end) - i - 1));
            i = end < 0 ? n : end;
        } else if (c == u'\\') {
            if (i + 1 < n)
                literal(QString(s[++i]));
        } else if (c == u'#' || c == u'0') {
            if (sec.exponent)
                continue; // no digits are left for placeholders after the exponent
            if (!sec.point) {
                if (c == u'0' && firstIntZero < 0)
                    firstIntZero = sec.intCount;
                ++sec.intCount;
                sec.tokens.append(NumToken{NumToken::IntDigit, {}});
            } else {
                ++sec.fracCount;
                if (c == u'0')
                    sec.minFrac = sec.fracCount;
                sec.tokens.append(NumToken{NumToken::FracDigit, {}});
            }
        } else if (c == u'.' && !sec.point && !sec.exponent) {
            sec.point = true;
            sec.tokens.append(NumToken{NumToken::Point, {}});
        } else if (c == u',' && !sec.point && !sec.exponent && lastIsIntDigit()) {
            qsizetype j = i;
            while (j < n && s[j] == u',')
                ++j;
            const QChar next = j < n ? s[j] : QChar();
            if (next == u'#' || next == u'0') {
                sec.grouping = true;
                i = j - 1;
            } else if (j == n || next == u'.') {
                sec.scale += int(j - i); // "#," shows thousands
                i = j - 1;
            } else {
                literal(u","_s);
            }
        } else if ((c == u'E' || c == u'e') && i + 1 < n && (s[i + 1] == u'+' || s[i + 1] == u'-')
                   && !sec.exponent && (sec.intCount + sec.fracCount) > 0) {
            NumToken t{NumToken::Exponent, {}};
            t.upper = c == u'E';
            t.plus = s[i + 1] == u'+';
            qsizetype j = i + 2;
            for (; j < n && (s[j] == u'0' || s[j] == u'#'); ++j)
                t.exponentDigits += s[j] == u'0' ? 1 : 0;
            sec.tokens.append(t);
            sec.exponent = true;
            i = j - 1;
        } else {
            if (c == u'%')
                sec.percent = true;
            literal(QString(c));
        }
    }
    sec.minInt = firstIntZero < 0 ? 0 : sec.intCount - firstIntZero;
    return sec;
}

QString formatSection(const NumSection &sec, double absValue, bool withSign, const QLocale &locale)
{
    Decimal d = classicDigits(absValue);
    if (!d.zero()) {
        if (sec.percent)
            d.point += 2;
        d.point -= 3 * sec.scale;
    }
    int exponent = 0;
    if (sec.exponent && !d.zero()) {
        exponent = d.point - sec.intCount;
        d.point = sec.intCount;
    }
    roundTo(d, sec.fracCount, RoundMode::HalfAwayFromZero);
    if (sec.exponent && !d.zero() && d.point > sec.intCount) { // 9.99 -> 10.0 carried a digit
        exponent += d.point - sec.intCount;
        d.point = sec.intCount;
    }

    std::string intPart = integerDigits(d);
    if (long(intPart.size()) < sec.minInt)
        intPart = zeros(sec.minInt - long(intPart.size())) + intPart;
    std::string frac = fractionDigits(d);
    if (long(frac.size()) < sec.minFrac)
        frac += zeros(sec.minFrac - long(frac.size()));

    const QString group = locale.groupSeparator();
    QStringList units; // integer digits, each with the group separator that follows it
    const auto len = long(intPart.size());
    for (long k = 0; k < len; ++k) {
        QString u{QLatin1Char(intPart[size_t(k)])};
        const long right = len - 1 - k;
        if (sec.grouping && right > 0 && right % 3 == 0)
            u += group;
        units << u;
    }

    QString out;
    if (withSign && sec.numeric())
        out += u'-'; // some locales' sign is U+2212; the classic text always reads back with '-'

    // Digits are right-aligned on the integer placeholders; the first takes the overflow.
    const long excess = len - sec.intCount;
    int intIndex = 0, fracIndex = 0;
    for (const NumToken &t : sec.tokens) {
        switch (t.kind) {
        case NumToken::Literal:
            out += t.text;
            break;
        case NumToken::IntDigit: {
            const long i = intIndex++;
            if (i == 0 && excess > 0) {
                for (long u = 0; u <= excess; ++u)
                    out += units[u];
            } else if (i + excess >= 0 && i + excess < len) {
                out += units[i + excess];
            }
            break;
        }
        case NumToken::FracDigit:
            if (size_t(fracIndex) < frac.size())
                out += QLatin1Char(frac[size_t(fracIndex)]);
            ++fracIndex;
            break;
        case NumToken::Point:
            if (sec.intCount == 0)
                out += units.join(QString());
            out += locale.decimalPoint();
            break;
        case NumToken::Exponent:
            out += t.upper ? u'E' : u'e';
            if (exponent < 0)
                out += u'-';
            else if (t.plus)
                out += u'+';
            out += QString::number(std::abs(exponent)).rightJustified(std::max(t.exponentDigits, 1), u'0');
            break;
        }
    }
    return out;
}

QString boolText(bool b, const char *yes, const char *no) { return QString::fromLatin1(b ? yes : no); }

// The named numeric formats; a null QString when the name is not one.
QString namedNumber(double v, const QString &name, const QLocale &locale)
{
    const QString key = name.trimmed().toLower();
    if (key == u"general number")
        return GeneralNumber(v, locale);
    if (key == u"fixed")
        return FormatNumberRegional(v, 2, true, false, false, locale);
    if (key == u"standard")
        return FormatNumberRegional(v, 2, true, false, true, locale);
    if (key == u"percent")
        return FormatNumber(v, u"0.00%"_s, locale);
    if (key == u"scientific")
        return FormatNumber(v, u"0.00E+00"_s, locale);
    if (key == u"currency") {
        Decimal d = classicDigits(v);
        roundTo(d, 2, RoundMode::HalfAwayFromZero);
        const double rounded = v < 0 ? -magnitude(d) : magnitude(d);
        return locale.toCurrencyString(rounded, locale.currencySymbol(), 2);
    }
    if (key == u"yes/no")
        return boolText(v != 0, "Yes", "No");
    if (key == u"true/false")
        return boolText(v != 0, "True", "False");
    if (key == u"on/off")
        return boolText(v != 0, "On", "Off");
    return {};
}

// ---------------------------------------------------------------------------------------
// Dates

QString dateSeparator(const QLocale &locale)
{
    for (QChar c : locale.dateFormat(QLocale::ShortFormat))
        if (c == u'/' || c == u'.' || c == u'-')
            return QString(c);
    return u"/"_s;
}

QString timeSeparator(const QLocale &locale)
{
    for (QChar c : locale.timeFormat(QLocale::ShortFormat))
        if (c == u':' || c == u'.')
            return QString(c);
    return u":"_s;
}

QString two(int v) { return QString::number(v).rightJustified(2, u'0'); }

int qtDayOfWeek(const CivilDateTime &c) { return QDate(c.year, c.month, c.day).dayOfWeek(); }

// Counted no further than any letter uses (six), so that a long run is not counted again at each step.
qsizetype runLength(const QString &s, qsizetype i, QChar lower)
{
    const qsizetype end = std::min(s.size(), i + 6);
    qsizetype j = i;
    while (j < end && s[j].toLower() == lower)
        ++j;
    return j - i;
}

// Renders one of Qt's locale patterns (d M y h H m s AP t, 'quoted') for our date parts;
// years print in full, as the classic short date does.
QString renderQtPattern(const QString &fmt, const CivilDateTime &c, const QLocale &locale)
{
    const bool twelve = fmt.contains(u"AP", Qt::CaseInsensitive) || fmt.contains(u'a', Qt::CaseInsensitive);
    QString out;
    for (qsizetype i = 0; i < fmt.size();) {
        const QChar ch = fmt[i];
        qsizetype r = 1;
        while (i + r < fmt.size() && fmt[i + r] == ch)
            ++r;
        if (ch == u'\'') {
            const qsizetype end = fmt.indexOf(u'\'', i + 1);
            out += fmt.mid(i + 1, (end < 0 ? fmt.size() : end) - i - 1);
            i = end < 0 ? fmt.size() : end + 1;
            continue;
        }
        if (ch == u'd')
            out += r >= 3 ? locale.dayName(qtDayOfWeek(c), r == 3 ? QLocale::ShortFormat : QLocale::LongFormat)
                          : (r == 2 ? two(c.day) : QString::number(c.day));
        else if (ch == u'M')
            out += r >= 3 ? locale.monthName(c.month, r == 3 ? QLocale::ShortFormat : QLocale::LongFormat)
                          : (r == 2 ? two(c.month) : QString::number(c.month));
        else if (ch == u'y')
            out += QString::number(c.year);
        else if (ch == u'h' || ch == u'H') {
            int h = c.hour;
            if (ch == u'h' && twelve)
                h = h % 12 == 0 ? 12 : h % 12;
            out += r >= 2 ? two(h) : QString::number(h);
        } else if (ch == u'm')
            out += r >= 2 ? two(c.minute) : QString::number(c.minute);
        else if (ch == u's')
            out += r >= 2 ? two(c.second) : QString::number(c.second);
        else if (ch == u'A' || ch == u'a') {
            const bool pm = c.hour >= 12;
            QString t = pm ? locale.pmText() : locale.amText();
            out += ch == u'a' ? t.toLower() : t;
            if (i + 1 < fmt.size() && (fmt[i + 1] == u'P' || fmt[i + 1] == u'p'))
                ++r;
        } else if (ch == u't' || ch == u'z') {
            // no zone and no milliseconds in a day serial
        } else
            out += QString(r, ch);
        i += r;
    }
    return out.trimmed();
}

QString shortDate(const CivilDateTime &c, const QLocale &l) { return renderQtPattern(l.dateFormat(QLocale::ShortFormat), c, l); }
QString longDate(const CivilDateTime &c, const QLocale &l) { return renderQtPattern(l.dateFormat(QLocale::LongFormat), c, l); }
QString longTime(const CivilDateTime &c, const QLocale &l) { return renderQtPattern(l.timeFormat(QLocale::LongFormat), c, l); }

// The date alone at midnight, the time alone on day 0, else both.
QString generalDate(const CivilDateTime &c, const QLocale &l)
{
    const bool noDate = c.year == 1899 && c.month == 12 && c.day == 30;
    const bool noTime = c.hour == 0 && c.minute == 0 && c.second == 0;
    if (noDate)
        return longTime(c, l);
    if (noTime)
        return shortDate(c, l);
    return shortDate(c, l) + u' ' + longTime(c, l);
}

bool matchesAt(const QString &s, qsizetype i, QStringView what)
{
    return QStringView(s).mid(i, what.size()).compare(what, Qt::CaseInsensitive) == 0;
}

int weekOfYear(double serial, const CivilDateTime &c, int firstDayOfWeek)
{
    const auto jan1 = DateSerial(c.year, 1, 1);
    if (!jan1)
        return 0;
    const int offset = Weekday(*jan1, firstDayOfWeek) - 1;
    return (DayOfYear(serial) - 1 + offset) / 7 + 1;
}

QString renderDatePattern(double serial, const CivilDateTime &c, const QString &p, const QLocale &locale,
                          int firstDayOfWeek)
{
    // AM/PM anywhere switches the hours to the 12-hour clock.
    bool twelve = false;
    for (qsizetype i = 0; i < p.size(); ++i) {
        if (p[i] == u'"') {
            const qsizetype end = p.indexOf(u'"', i + 1);
            i = end < 0 ? p.size() : end;
        } else if (p[i] == u'\\') {
            ++i;
        } else if (matchesAt(p, i, u"am/pm") || matchesAt(p, i, u"a/p") || matchesAt(p, i, u"ampm")) {
            twelve = true;
        }
    }
    const bool pm = c.hour >= 12;
    const int hour = twelve ? (c.hour % 12 == 0 ? 12 : c.hour % 12) : c.hour;

    QString out;
    bool afterHour = false; // an m here means minutes
    for (qsizetype i = 0; i < p.size();) {
        const QChar ch = p[i];
        const QChar lc = ch.toLower();
        if (ch == u'"') {
            const qsizetype end = p.indexOf(u'"', i + 1);
            out += p.mid(i + 1, (end < 0 ? p.size() : end) - i - 1);
            i = end < 0 ? p.size() : end + 1;
            continue;
        }
        if (ch == u'\\') {
            if (i + 1 < p.size())
                out += p[i + 1];
            i += 2;
            continue;
        }
        if (ch == u':') { out += timeSeparator(locale); ++i; continue; }
        if (ch == u'/') { out += dateSeparator(locale); ++i; continue; }
        if (matchesAt(p, i, u"am/pm")) {
            const QString t = pm ? u"PM"_s : u"AM"_s;
            out += ch.isUpper() ? t : t.toLower();
            i += 5; afterHour = false; continue;
        }
        if (matchesAt(p, i, u"a/p")) {
            const QString t = pm ? u"P"_s : u"A"_s;
            out += ch.isUpper() ? t : t.toLower();
            i += 3; afterHour = false; continue;
        }
        if (matchesAt(p, i, u"ampm")) {
            out += pm ? locale.pmText() : locale.amText();
            i += 4; afterHour = false; continue;
        }
        const qsizetype run = runLength(p, i, lc);
        qsizetype used = 1;
        bool wasHour = false;
        switch (lc.unicode()) {
        case u'c':
            out += generalDate(c, locale);
            break;
        case u'd':
            used = std::min<qsizetype>(run, 6);
            switch (used) {
            case 1: out += QString::number(c.day); break;
            case 2: out += two(c.day); break;
            case 3: out += locale.dayName(qtDayOfWeek(c), QLocale::ShortFormat); break;
            case 4: out += locale.dayName(qtDayOfWeek(c), QLocale::LongFormat); break;
            case 5: out += shortDate(c, locale); break;
            default: out += longDate(c, locale); break;
            }
            break;
        case u'w':
            used = std::min<qsizetype>(run, 2);
            out += QString::number(used == 2 ? weekOfYear(serial, c, firstDayOfWeek) : Weekday(serial, firstDayOfWeek));
            break;
        case u'm':
            used = std::min<qsizetype>(run, 4);
            if (used >= 3)
                out += locale.monthName(c.month, used == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            else if (afterHour)
                out += used == 2 ? two(c.minute) : QString::number(c.minute);
            else
                out += used == 2 ? two(c.month) : QString::number(c.month);
            break;
        case u'n':
            used = std::min<qsizetype>(run, 2);
            out += used == 2 ? two(c.minute) : QString::number(c.minute);
            break;
        case u'q':
            out += QString::number((c.month - 1) / 3 + 1);
            break;
        case u'y':
            used = run >= 4 ? 4 : (run >= 2 ? 2 : 1);
            if (used == 4)
                out += QString::number(c.year);
            else if (used == 2)
                out += two(c.year % 100);
            else
                out += QString::number(DayOfYear(serial));
            break;
        case u'h':
            used = std::min<qsizetype>(run, 2);
            out += used == 2 ? two(hour) : QString::number(hour);
            wasHour = true;
            break;
        case u's':
            used = std::min<qsizetype>(run, 2);
            out += used == 2 ? two(c.second) : QString::number(c.second);
            break;
        case u't':
            if (run >= 5) {
                used = 5;
                out += longTime(c, locale);
            } else {
                out += ch;
            }
            break;
        default:
            out += ch; // any other character is literal and keeps an hour pending
            ++i;
            continue;
        }
        afterHour = wasHour;
        i += used;
    }
    return out;
}

QString namedDate(const CivilDateTime &c, const QString &name, const QLocale &locale)
{
    const QString key = name.trimmed().toLower();
    if (key == u"general date")
        return generalDate(c, locale);
    if (key == u"long date")
        return longDate(c, locale);
    if (key == u"short date")
        return shortDate(c, locale);
    if (key == u"long time")
        return longTime(c, locale);
    return {};
}

bool isNamedNumber(const QString &key)
{
    static const char *const names[] = {"general number", "currency", "fixed", "standard", "percent",
                                        "scientific", "yes/no", "true/false", "on/off"};
    return std::any_of(std::begin(names), std::end(names), [&](const char *n) { return key == QLatin1StringView(n); });
}

bool isNamedDate(const QString &key)
{
    static const char *const names[] = {"general date", "long date", "medium date", "short date",
                                        "long time", "medium time", "short time"};
    return std::any_of(std::begin(names), std::end(names), [&](const char *n) { return key == QLatin1StringView(n); });
}

QString formatNull(const QString &pattern, const QLocale &locale)
{
    const QStringList sections = splitSections(pattern);
    if (sections.size() < 4 || sections[3].isEmpty())
        return {};
    return formatSection(parseNumSection(sections[3]), 0.0, false, locale);
}

QString formatNumberOrDate(double v, const QString &pattern, const QLocale &locale)
{
    return isDatePattern(pattern) ? FormatDate(v, pattern, locale) : FormatNumber(v, pattern, locale);
}

} // namespace

// -----------------------------------------------------------------------------------------

double RoundDecimal(double v, int digits, RoundMode mode)
{
    if (!std::isfinite(v) || std::fabs(v) >= 1e16 || digits < 0 || digits > 16)
        return v;
    Decimal d = toDecimal(v, -1);
    roundTo(d, digits, mode);
    if (d.zero())
        return 0.0;
    return v < 0 ? -magnitude(d) : magnitude(d);
}

QString RoundDecimalString(double v, int digits, RoundMode mode)
{
    if (!std::isfinite(v))
        return nonFinite(v);
    digits = std::clamp(digits, 0, 340);
    Decimal d = toDecimal(v, -1);
    roundTo(d, digits, mode);
    std::string intPart = integerDigits(d);
    std::string frac = fractionDigits(d);
    frac += zeros(digits - long(frac.size()));
    std::string text = (intPart.empty() ? std::string("0") : intPart) + (digits > 0 ? "." + frac : std::string());
    if (v < 0 && !d.zero())
        text.insert(text.begin(), '-');
    return latin(text);
}

QString GeneralNumber(double v, const QLocale &locale)
{
    if (!std::isfinite(v))
        return nonFinite(v);
    const Decimal d = classicDigits(v);
    if (d.zero())
        return u"0"_s;
    const QString dec = locale.decimalPoint();
    const int x = d.point - 1; // power of ten of the first digit
    QString out = v < 0 ? u"-"_s : QString();
    if (x < -4 || x >= 15) {
        out += QLatin1Char(d.digits[0]);
        if (d.digits.size() > 1)
            out += dec + latin(d.digits.substr(1));
        out += x < 0 ? u"E-"_s : u"E+"_s;
        out += QString::number(std::abs(x)).rightJustified(2, u'0');
        return out;
    }
    const std::string intPart = integerDigits(d);
    const std::string frac = fractionDigits(d);
    out += intPart.empty() ? u"0"_s : latin(intPart);
    if (!frac.empty())
        out += dec + latin(frac);
    return out;
}

QString FormatNumber(double value, const QString &pattern, const QLocale &locale)
{
    if (!std::isfinite(value))
        return nonFinite(value);
    if (pattern.isEmpty())
        return GeneralNumber(value, locale);
    if (isNamedNumber(pattern.trimmed().toLower()))
        return namedNumber(value, pattern, locale);

    const QStringList sections = splitSections(pattern);
    const bool negative = value < 0;
    qsizetype index = 0;
    bool withSign = negative;
    if (negative && sections.size() >= 2 && !sections[1].isEmpty()) {
        index = 1;
        withSign = false; // the negative section writes its own sign, if any
    } else if (value == 0 && sections.size() >= 3 && !sections[2].isEmpty()) {
        index = 2;
    }
    if (sections[index].isEmpty())
        return withSign ? u"-"_s + GeneralNumber(-value, locale) : GeneralNumber(value, locale);
    return formatSection(parseNumSection(sections[index]), std::fabs(value), withSign, locale);
}

QString FormatDate(double serial, const QString &pattern, const QLocale &locale, int firstDayOfWeek)
{
    const auto c = splitDaySerial(serial);
    if (!c)
        return {};
    const QString key = pattern.trimmed().toLower();
    if (pattern.isEmpty())
        return generalDate(*c, locale);
    if (isNamedDate(key)) {
        if (key == u"medium date")
            return renderDatePattern(serial, *c, u"dd-mmm-yy"_s, locale, firstDayOfWeek);
        if (key == u"medium time")
            return renderDatePattern(serial, *c, u"hh:nn AMPM"_s, locale, firstDayOfWeek);
        if (key == u"short time")
            return renderDatePattern(serial, *c, u"hh:nn"_s, locale, firstDayOfWeek);
        return namedDate(*c, key, locale);
    }
    return renderDatePattern(serial, *c, pattern, locale, firstDayOfWeek);
}

QString FormatNumberRegional(double v, int digitsAfterDecimal, bool includeLeadingDigit,
                             bool parensForNegative, bool groupDigits, const QLocale &locale)
{
    if (!std::isfinite(v))
        return nonFinite(v);
    const int digits = std::clamp(digitsAfterDecimal, 0, 99);
    Decimal d = classicDigits(v);
    roundTo(d, digits, RoundMode::HalfAwayFromZero);
    const std::string intPart = integerDigits(d);
    std::string frac = fractionDigits(d);
    frac += zeros(digits - long(frac.size()));

    QString text;
    if (intPart.empty())
        text = includeLeadingDigit ? u"0"_s : QString();
    else
        text = groupDigits ? withGroups(intPart, locale.groupSeparator()) : latin(intPart);
    if (digits > 0)
        text += locale.decimalPoint() + latin(frac);
    if (v < 0 && !d.zero())
        text = parensForNegative ? u'(' + text + u')' : u'-' + text;
    return text;
}

bool isDatePattern(const QString &pattern)
{
    const QString key = pattern.trimmed().toLower();
    if (isNamedDate(key))
        return true;
    if (isNamedNumber(key))
        return false;
    bool dateLetter = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i].toLower();
        if (c == u'"') {
            const qsizetype end = pattern.indexOf(u'"', i + 1);
            i = end < 0 ? pattern.size() : end;
        } else if (c == u'\\') {
            ++i;
        } else if (c == u'0' || c == u'#') {
            return false;
        } else if (QStringView(u"dmyhnswqc").contains(c) || matchesAt(pattern, i, u"a/p")
                   || matchesAt(pattern, i, u"ttttt")) {
            dateLetter = true;
        }
    }
    return dateLetter;
}

QString FormatVariant(const Variant &v, const QString &pattern, const QLocale &locale)
{
    using T = Variant::Type;
    const T type = v.type();
    if (type == T::Boolean && pattern.isEmpty())
        return *v.get<bool>() ? u"True"_s : u"False"_s;
    if (type == T::Boolean)
        return formatNumberOrDate(*v.get<bool>() ? -1.0 : 0.0, pattern, locale);
    if (type == T::Integer)
        return formatNumberOrDate(*v.get<qint16>(), pattern, locale);
    if (type == T::Long)
        return formatNumberOrDate(*v.get<qint32>(), pattern, locale);
    if (type == T::Double)
        return formatNumberOrDate(*v.get<double>(), pattern, locale);
    if (type == T::Date) {
        const double serial = v.get<Date>()->serial;
        return pattern.isEmpty() || isDatePattern(pattern) ? FormatDate(serial, pattern, locale)
                                                          : FormatNumber(serial, pattern, locale);
    }
    if (type == T::String) {
        const QString &text = *v.get<QString>();
        if (pattern.isEmpty())
            return text;
        const QString dec = locale.decimalPoint(), grp = locale.groupSeparator();
        double number = 0;
        if (parseClassicNumber(text, dec.isEmpty() ? u'.' : dec[0], grp.isEmpty() ? u',' : grp[0], &number))
            return formatNumberOrDate(number, pattern, locale);
        return text;
    }
    return formatNull(pattern, locale); // Empty, Null, and objects without a value
}

} // namespace kel
