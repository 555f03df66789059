#include "runtime/kelruntime8.h"

#include "forms/child.h"
#include "platform/dayserial.h"
#include "platform/format.h"
#include "platform/services.h"

#include <QApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <vector>

using namespace Qt::StringLiterals;

namespace kel {

KelRuntime8::KelRuntime8(QObject *parent)
{
    setParent(parent);
}

int KelRuntime8::ColourDepth()
{
    if (m_depth)
        return *m_depth;
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->depth() : 24;
}

QString KelRuntime8::DecimalSeparator() { return locale().decimalPoint(); }

// QLocale has no "digits after the decimal" setting; two is the common regional default.
qint16 KelRuntime8::DecimalDigits() { return m_digits.value_or(2); }

static FontSpec applicationFont()
{
    const QFont f = QApplication::font();
    return {f.family(), f.pointSizeF() > 0 ? f.pointSizeF() : 9.0};
}

FontSpec KelRuntime8::CaptionFont() { return m_captionFont.value_or(applicationFont()); }
FontSpec KelRuntime8::FieldFont() { return m_fieldFont.value_or(applicationFont()); }

void KelRuntime8::SendKey(int virtualKey)
{
    if (virtualKey != 9)
        throw RuntimeError("SendKey: only the Tab key (9) is supported");
    sendTabKey(); // a real Tab keystroke, so the form moves on exactly as for the user's Tab
}

std::shared_ptr<IRuntimeDates> KelRuntime8::RuntimeDates()
{
    return std::make_shared<KelRuntimeDates>(locale());
}

QString KelRuntime8::ListAppend(QString list, const QString &item)
{
    // A lone empty first item is quoted so that it is not read back as an empty list. One plain
    // pass over the item: most are short, where the searches of QString cost more than they save.
    const QChar *c = item.constData(), *end = c + item.size();
    while (c != end && (c->unicode() > u',' || (*c != u',' && *c != u'"'))) // letters and digits: one test
        ++c;
    const bool quote = c != end || (item.isEmpty() && list.isEmpty());
    if (!list.isEmpty())
        list += u',';
    if (quote) {
        list += u'"';
        for (const QChar c : item) {
            if (c == u'"')
                list += u'"';
            list += c;
        }
        list += u'"';
    } else {
        list += item;
    }
    return list;
}

QString KelRuntime8::ReadField(const QString &text, qint32 &position, int separatorCode)
{
    if (text.isEmpty() || position < 0 || position > text.size()) {
        position = -1;
        return {};
    }
    const QChar sep(separatorCode);
    bool quoted = false;
    qsizetype end = position;
    for (; end < text.size(); ++end) {
        if (text[end] == u'"')
            quoted = !quoted;
        else if (text[end] == sep && !quoted)
            break;
    }
    QString field = text.mid(position, end - position);
    if (field.startsWith(u'"'))
        field.remove(0, 1);
    if (field.endsWith(u'"'))
        field.chop(1);
    field.replace(QStringLiteral("\"\""), QStringLiteral("\""));
    position = qint32(end + 1);
    return field;
}

namespace {

// What a number in the text stands for, in the order the format shows it.
enum class Part { Day, Month, Year, DayOfYear, Skip, Hour, Minute, Second };

struct Slot {
    Part part;
    int width; // digits it takes when a run of digits is split; a year's varies
};

bool isTimePart(Part p) { return p == Part::Hour || p == Part::Minute || p == Part::Second; }

struct Layout {
    std::vector<Slot> fields;
    QSet<QString> literals; // words the format prints as they are
    bool hasWeekdayName = false, hasMonthName = false;
    bool hasDay = false, hasDayOfMonth = false, hasMonth = false, hasYear = false, hasTime = false;

    void add(Part p, int width)
    {
        fields.push_back({p, width});
        hasDay = hasDay || p == Part::Day || p == Part::DayOfYear;
        hasDayOfMonth = hasDayOfMonth || p == Part::Day;
        hasMonth = hasMonth || p == Part::Month;
        hasYear = hasYear || p == Part::Year;
        hasTime = hasTime || isTimePart(p);
    }
    bool hasDate() const { return hasDay || hasMonth || hasYear; }
};

qsizetype runOf(const QString &s, qsizetype i, QChar c)
{
    qsizetype j = i;
    while (j < s.size() && s[j] == c)
        ++j;
    return j - i;
}

// Qt's locale patterns, which the named formats and ddddd, dddddd, c and ttttt print through.
void addQtPattern(const QString &f, Layout &out)
{
    for (qsizetype i = 0; i < f.size();) {
        const QChar ch = f[i];
        if (ch == u'\'') {
            const qsizetype end = f.indexOf(u'\'', i + 1);
            i = end < 0 ? f.size() : end + 1;
            continue;
        }
        const qsizetype r = runOf(f, i, ch);
        switch (ch.unicode()) {
        case u'd':
            if (r <= 2)
                out.add(Part::Day, 2);
            else
                out.hasWeekdayName = true;
            break;
        case u'M':
            out.add(Part::Month, 2);
            out.hasMonthName = out.hasMonthName || r >= 3;
            break;
        case u'y': out.add(Part::Year, 4); break;
        case u'h': case u'H': out.add(Part::Hour, 2); break;
        case u'm': out.add(Part::Minute, 2); break;
        case u's': out.add(Part::Second, 2); break;
        default: break;
        }
        i += r;
    }
}

bool startsWithCI(const QString &s, qsizetype i, QStringView what)
{
    return QStringView(s).mid(i, what.size()).compare(what, Qt::CaseInsensitive) == 0;
}

struct Token {
    QStringView text;
    bool number;
};

bool isAsciiDigit(QChar c) { return c >= u'0' && c <= u'9'; }

// Runs of digits and runs of letters; anything else separates.
std::vector<Token> tokenize(const QString &text)
{
    std::vector<Token> out;
    for (qsizetype i = 0; i < text.size();) {
        const bool digit = isAsciiDigit(text[i]);
        if (!digit && !text[i].isLetter()) {
            ++i;
            continue;
        }
        qsizetype j = i + 1;
        while (j < text.size() && (digit ? isAsciiDigit(text[j]) : text[j].isLetter()))
            ++j;
        out.push_back({QStringView(text).mid(i, j - i), digit});
        i = j;
    }
    return out;
}

// The numbers the format prints, read with the same rules as FormatDate renders them.
Layout analyse(const QString &format, const QLocale &locale)
{
    Layout out;
    const QString key = format.trimmed().toLower();
    if (key == u"general date" || key.isEmpty()) {
        addQtPattern(locale.dateFormat(QLocale::ShortFormat), out);
        addQtPattern(locale.timeFormat(QLocale::LongFormat), out);
        return out;
    }
    if (key == u"long date" || key == u"medium date") {
        addQtPattern(locale.dateFormat(QLocale::LongFormat), out);
        return out;
    }
    if (key == u"short date") {
        addQtPattern(locale.dateFormat(QLocale::ShortFormat), out);
        return out;
    }
    if (key == u"long time" || key == u"medium time" || key == u"short time") {
        addQtPattern(locale.timeFormat(QLocale::LongFormat), out);
        return out;
    }
    bool afterHour = false;
    QString literalText;
    for (qsizetype i = 0; i < format.size();) {
        const QChar ch = format[i];
        const QChar lc = ch.toLower();
        if (ch == u'"') {
            const qsizetype end = format.indexOf(u'"', i + 1);
            literalText += format.mid(i + 1, (end < 0 ? format.size() : end) - i - 1);
            i = end < 0 ? format.size() : end + 1;
            continue;
        }
        if (ch == u'\\') {
            if (i + 1 < format.size())
                literalText += format[i + 1];
            i += 2;
            continue;
        }
        if (startsWithCI(format, i, u"am/pm") || startsWithCI(format, i, u"a/p") || startsWithCI(format, i, u"ampm")) {
            i += startsWithCI(format, i, u"a/p") ? 3 : (startsWithCI(format, i, u"ampm") ? 4 : 5);
            afterHour = false;
            continue;
        }
        qsizetype run = 0; // no letter uses more than six
        while (run < 6 && i + run < format.size() && format[i + run].toLower() == lc)
            ++run;
        qsizetype used = 1;
        bool wasHour = false;
        switch (lc.unicode()) {
        case u'c':
            addQtPattern(locale.dateFormat(QLocale::ShortFormat), out);
            addQtPattern(locale.timeFormat(QLocale::LongFormat), out);
            break;
        case u'd':
            used = std::min<qsizetype>(run, 6);
            if (used <= 2)
                out.add(Part::Day, 2);
            else if (used <= 4)
                out.hasWeekdayName = true;
            else if (used >= 5)
                addQtPattern(locale.dateFormat(used == 5 ? QLocale::ShortFormat : QLocale::LongFormat), out);
            break;
        case u'w':
            used = std::min<qsizetype>(run, 2);
            out.add(Part::Skip, int(used));
            break;
        case u'q':
            out.add(Part::Skip, 1);
            break;
        case u'm':
            used = std::min<qsizetype>(run, 4);
            if (used <= 2 && afterHour)
                out.add(Part::Minute, 2);
            else
                out.add(Part::Month, 2);
            out.hasMonthName = out.hasMonthName || used >= 3;
            break;
        case u'n':
            used = std::min<qsizetype>(run, 2);
            out.add(Part::Minute, 2);
            break;
        case u'y':
            used = run >= 4 ? 4 : (run >= 2 ? 2 : 1);
            if (used == 1)
                out.add(Part::DayOfYear, 3);
            else
                out.add(Part::Year, 4);
            break;
        case u'h':
            used = std::min<qsizetype>(run, 2);
            out.add(Part::Hour, 2);
            wasHour = true;
            break;
        case u's':
            used = std::min<qsizetype>(run, 2);
            out.add(Part::Second, 2);
            break;
        case u't':
            if (run >= 5) {
                used = 5;
                addQtPattern(locale.timeFormat(QLocale::LongFormat), out);
            }
            break;
        default:
            literalText += ch;
            ++i; // a literal keeps an hour pending, as in FormatDate
            continue;
        }
        afterHour = wasHour;
        i += used;
        literalText += u' ';
    }
    for (const Token &t : tokenize(literalText))
        if (!t.number)
            out.literals.insert(t.text.toString().toLower());
    return out;
}

enum class Marker { None, Am, Pm };

struct Names {
    QStringList months[12];
    QStringList weekdays;
    QStringList am, pm;
};

QString bare(QString name)
{
    while (!name.isEmpty() && !name.back().isLetter())
        name.chop(1);
    return name.toLower();
}

void addNames(Names &n, const QLocale &l)
{
    for (int m = 1; m <= 12; ++m)
        for (auto f : {QLocale::LongFormat, QLocale::ShortFormat})
            n.months[m - 1] << bare(l.monthName(m, f)) << bare(l.standaloneMonthName(m, f));
    for (int d = 1; d <= 7; ++d)
        for (auto f : {QLocale::LongFormat, QLocale::ShortFormat})
            n.weekdays << bare(l.dayName(d, f)) << bare(l.standaloneDayName(d, f));
    n.am << bare(l.amText());
    n.pm << bare(l.pmText());
}

const Names &englishNames()
{
    static const Names names = [] {
        Names n;
        addNames(n, QLocale(QLocale::English, QLocale::UnitedStates));
        n.am << u"a"_s << u"am"_s;
        n.pm << u"p"_s << u"pm"_s;
        return n;
    }();
    return names;
}

// The names of the locale beside English (none for English itself): about 76 look-ups, made once
// per locale rather than once per parse. The system locale is apart: its names may come from
// LC_TIME rather than its language. Entries are never changed or dropped, so a reference stays
// good after the lock is released; fields on other threads may parse too.
const Names &localNames(const QLocale &l)
{
    static std::mutex lock;
    static std::map<std::tuple<int, int, int, bool>, Names> cache;
    const std::tuple key{int(l.language()), int(l.script()), int(l.territory()), l == QLocale::system()};
    const std::lock_guard guard(lock);
    auto it = cache.find(key);
    if (it == cache.end()) {
        Names n;
        if (l.language() != QLocale::English)
            addNames(n, l);
        it = cache.emplace(key, std::move(n)).first;
    }
    return it->second;
}

// A name matches in full, or by a prefix of three letters or more of its long form.
bool matchesName(const QString &word, const QStringList &names)
{
    for (const QString &n : names)
        if (!n.isEmpty() && (word == n || (word.size() >= 3 && n.startsWith(word))))
            return true;
    return false;
}

struct Words {
    int month = 0;  // 1..12 when a month name was given
    Marker marker = Marker::None;
    bool ok = true;
};

int monthNamed(const QString &word, const Names &n)
{
    for (int m = 0; m < 12; ++m)
        if (matchesName(word, n.months[m]))
            return m + 1;
    return 0;
}

// Month names stand in the month's place, weekday names, ordinal endings and the format's own
// words are skipped, the half-day marker is noted; any other word means the text is no date.
// The locale's names come before English ones; a word naming both a month and a weekday
// (French "mar.") is what the format shows.
Words readWords(const std::vector<Token> &tokens, const QLocale &locale, const Layout &layout = {})
{
    Words w;
    const Names *local = nullptr;
    for (size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].number)
            continue;
        QString word = tokens[i].text.toString().toLower();
        // "a.m." and "p.m." arrive as two words
        if ((word == u"a" || word == u"p") && i + 1 < tokens.size() && !tokens[i + 1].number
            && tokens[i + 1].text.compare(u"m", Qt::CaseInsensitive) == 0) {
            word += u'm';
            ++i;
        }
        if (layout.literals.contains(word))
            continue;
        if (i > 0 && tokens[i - 1].number
            && (word == u"st" || word == u"nd" || word == u"rd" || word == u"th"))
            continue;
        if (!local)
            local = &localNames(locale);
        bool known = false;
        for (const Names *n : {local, &englishNames()}) {
            const bool am = n->am.contains(word), pm = n->pm.contains(word);
            const int month = monthNamed(word, *n);
            const bool weekday = matchesName(word, n->weekdays);
            if (am || pm) {
                if (w.marker != Marker::None)
                    return {0, Marker::None, false};
                w.marker = am ? Marker::Am : Marker::Pm;
            } else if (month && !(weekday && layout.hasWeekdayName && !layout.hasMonthName)) {
                if (w.month)
                    return {0, Marker::None, false};
                w.month = month;
            } else if (!weekday) {
                continue;
            }
            known = true;
            break;
        }
        if (!known)
            return {0, Marker::None, false};
    }
    return w;
}

std::optional<int> hourOfDay(int hour, Marker marker)
{
    if (marker == Marker::None)
        return hour <= 23 ? std::optional<int>(hour) : std::nullopt;
    if (hour > 12)
        return std::nullopt;
    return hour % 12 + (marker == Marker::Pm ? 12 : 0);
}

struct Values {
    std::optional<int> day, month, year, dayOfYear, hour, minute, second;
    int yearDigits = 0;
};

// Longer than every part together (ddmmyyyyhhnnss): such a run is no date.
constexpr qsizetype kMaxDigits = 14;

void store(Values &v, Part part, QStringView digits)
{
    const int n = digits.toInt();
    switch (part) {
    case Part::Day: v.day = n; break;
    case Part::Month: v.month = n; break;
    case Part::Year: v.year = n; v.yearDigits = int(digits.size()); break;
    case Part::DayOfYear: v.dayOfYear = n; break;
    case Part::Hour: v.hour = n; break;
    case Part::Minute: v.minute = n; break;
    case Part::Second: v.second = n; break;
    case Part::Skip: break;
    }
}

// Splits a run of digits over the fields from `first` on by their widths, a year taking 4, 3
// (years before 1000 print so), 2 or no digits. Within the date (or the time) the split covering
// the most fields wins; a whole date too long for them runs on into the time. Returns the field after
// the last one used.
std::optional<size_t> split(QStringView digits, const std::vector<Slot> &fields, size_t first, Values &v)
{
    // Running sums, so that a format of many fields is not summed again for every count tried.
    std::vector<qsizetype> fixed{0}, years{0};
    for (size_t k = first; k < fields.size(); ++k) {
        const bool year = fields[k].part == Part::Year;
        fixed.push_back(fixed.back() + (year ? 0 : fields[k].width));
        years.push_back(years.back() + (year ? 1 : 0));
    }
    const auto fits = [&](size_t count, int yearWidth) {
        if (fixed[count] + years[count] * yearWidth != digits.size())
            return false;
        qsizetype at = 0;
        for (size_t k = first; k < first + count; ++k) {
            const int w = fields[k].part == Part::Year ? yearWidth : fields[k].width;
            if (w)
                store(v, fields[k].part, digits.mid(at, w));
            at += w;
        }
        return true;
    };
    size_t family = first;
    while (family < fields.size() && isTimePart(fields[family].part) == isTimePart(fields[first].part))
        ++family;
    for (size_t count = family - first; count >= 1; --count)
        for (int yearWidth : {4, 3, 2, 0})
            if (fits(count, yearWidth))
                return first + count;
    if (first != 0) // only the whole date and time typed as one run runs on
        return std::nullopt;
    for (int yearWidth : {4, 3, 2, 0})
        for (size_t count = fields.size(); count > family; --count)
            if (fits(count, yearWidth))
                return first + count;
    return std::nullopt;
}

int windowedYear(int twoDigits, int pivotYear)
{
    int y = pivotYear - pivotYear % 100 + twoDigits;
    if (y > pivotYear + 20)
        y -= 100;
    else if (y <= pivotYear - 80)
        y += 100;
    return y;
}

std::optional<int> timeOfDay(const Values &v, Marker marker)
{
    if (!v.hour) {
        if (v.minute || v.second || marker != Marker::None)
            return std::nullopt;
        return 0;
    }
    const auto h = hourOfDay(*v.hour, marker);
    const int m = v.minute.value_or(0), s = v.second.value_or(0);
    if (!h || m > 59 || s > 59)
        return std::nullopt;
    return *h * 3600 + m * 60 + s;
}

std::optional<double> defaultSerial(const Variant &defaultDate)
{
    bool ok = false;
    const double d = defaultDate.toDouble(&ok);
    if (ok && defaultDate.type() != Variant::Type::Empty && isValidDaySerial(d))
        return std::floor(d);
    return fromQDate(services().Today());
}

} // namespace

Variant KelRuntimeDates::ParseDate(const QString &text, const QString &format, const Variant &defaultDate, bool birthday)
{
    const auto fallback = defaultSerial(defaultDate);
    if (!fallback)
        return Null;
    const QString trimmed = text.trimmed();
    if (trimmed.compare(u"now", Qt::CaseInsensitive) == 0 || trimmed.compare(u"today", Qt::CaseInsensitive) == 0)
        return Date{*fallback};
    const QDate today = toQDate(*fallback);

    Layout layout = analyse(format, m_locale);
    // ISO 8601 text (what dates convert to as text) reads the same under every format.
    static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{1,2}-\\d{1,2}(?:$|[T ](\\d.*)$)"));
    if (const auto m = iso.match(trimmed); m.hasMatch() && (layout.fields.empty() || layout.fields[0].part != Part::Year)) {
        const QString isoText = trimmed.left(m.capturedStart(1) < 0 ? trimmed.size() : m.capturedStart(1) - 1);
        const QString timeText = layout.hasTime ? m.captured(1) : QString();
        return ParseDate(isoText + u' ' + timeText, u"yyyy-mm-dd hh:nn:ss"_s, Date{*fallback}, birthday);
    }
    std::vector<Token> tokens = tokenize(text);
    const Words words = readWords(tokens, m_locale, layout);
    if (!words.ok)
        return Null;
    std::vector<Slot> &fields = layout.fields;
    if (words.month) {
        const auto it = std::find_if(fields.begin(), fields.end(), [](const Slot &s) { return s.part == Part::Month; });
        if (it != fields.end())
            fields.erase(it);
    }
    if (!layout.hasTime) // a time typed after a whole date is checked and dropped
        for (Part p : {Part::Hour, Part::Minute, Part::Second})
            fields.push_back({p, 2});

    std::vector<QStringView> numbers;
    for (const Token &t : tokens)
        if (t.number)
            numbers.push_back(t.text);
    if (numbers.empty())
        return Null;

    Values v;
    size_t at = 0;
    // A lone run of digits is the whole date without separators ("1503", "15032013").
    const bool oneRun = numbers.size() == 1 && numbers[0].size() > 2 && !words.month && !fields.empty()
            && !isTimePart(fields[0].part);
    for (QStringView n : numbers) {
        if (at >= fields.size() || n.size() > kMaxDigits)
            return Null;
        if (!oneRun && n.size() <= fields[at].width) {
            store(v, fields[at].part, n);
            ++at;
            continue;
        }
        if (words.month && n.size() <= 4) { // beside a month name, three or four digits are the year
            while (at < fields.size() && fields[at].part != Part::Year)
                ++at;
            if (at == fields.size())
                return Null;
            store(v, Part::Year, n);
            ++at;
            continue;
        }
        const auto next = split(n, fields, at, v);
        if (!next)
            return Null;
        at = *next;
    }

    const bool timeUsed = layout.hasTime;
    const auto seconds = timeOfDay(v, words.marker);
    if (!seconds)
        return Null;

    // A format without a day shows the month (its first day); one without any date, the default date.
    int year = today.year(), month = today.month(), day = layout.hasDate() ? 1 : today.day();
    if (v.month)
        month = *v.month;
    else if (words.month)
        month = words.month;
    const bool explicitYear = v.year && v.yearDigits > 2;
    if (v.year)
        year = explicitYear ? *v.year : windowedYear(*v.year, today.year());
    if (layout.hasDay) {
        if (v.day)
            day = *v.day;
        else if (v.dayOfYear && !layout.hasDayOfMonth)
            day = 0;
        else
            return Null;
    }
    if (year < 100 || year > 9999 || month < 1 || month > 12)
        return Null;
    QDate date;
    if (day == 0) {
        date = QDate(year, 1, 1).addDays(*v.dayOfYear - 1);
        if (*v.dayOfYear < 1 || date.year() != year)
            return Null;
    } else {
        date = QDate(year, month, day);
    }
    if (!date.isValid())
        return Null;
    if (birthday && date > today) {
        if (explicitYear)
            return Null;
        // a short or missing year means the latest such date not after today
        date = v.year ? date.addYears(-100) : date.addYears(-1);
        if (date.day() != day && day != 0) // 29 February of a year without one
            return Null;
        if (date.year() < 100)
            return Null;
    }
    const auto serial = DateTimeSerial(date.year(), date.month(), date.day(), 0, 0, timeUsed ? *seconds : 0);
    if (!serial)
        return Null;
    return Date{*serial};
}

Date KelRuntimeDates::LastDayOfMonth(Date date)
{
    const double last = kel::LastDayOfMonth(date.serial);
    return std::isnan(last) ? date : Date{last};
}

Variant KelRuntimeDates::ParseTime(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return Null;
    // A day fraction as a bare number ("0.4375"); one or two digits after the point are minutes.
    if (const qsizetype dot = trimmed.indexOf(u'.'); dot >= 0 && trimmed.size() - dot - 1 > 2) {
        double d = 0;
        if (parseClassicNumber(trimmed, u'.', QChar(), &d))
            return d >= 0 && d < 1 ? Variant(Date{d}) : Variant(Null);
    }
    std::vector<Token> tokens = tokenize(text);
    const Words words = readWords(tokens, m_locale);
    if (!words.ok)
        return Null;
    std::vector<QStringView> numbers;
    for (const Token &t : tokens)
        if (t.number)
            numbers.push_back(t.text);
    if (words.month || numbers.size() > 3 || trimmed.contains(u'/') || trimmed.contains(u'-')) {
        // A date in front: the time is the last numbers joined by colons.
        size_t first = numbers.empty() ? 0 : numbers.size() - 1;
        while (first > 0 && numbers.size() - first < 3) {
            const QChar *gapStart = numbers[first - 1].data() + numbers[first - 1].size();
            if (QStringView(gapStart, numbers[first].data()) != u":")
                break;
            --first;
        }
        // A whole date in the regional order is kept; anything less is only what the time
        // field's format shows beside the time, and is dropped.
        if (first >= 3 || (first >= 2 && words.month)) {
            const Variant dated = ParseDate(text, u"ddddd hh:nn:ss"_s, Variant(), false);
            if (!dated.isNull())
                return dated;
        }
        numbers.erase(numbers.begin(), numbers.begin() + qsizetype(first));
    }
    Values v;
    if (numbers.size() == 1) {
        static const std::vector<Slot> fields{{Part::Hour, 2}, {Part::Minute, 2}, {Part::Second, 2}};
        const QStringView n = numbers[0];
        if (n.size() <= 2)
            v.hour = n.toInt();
        else if (n.size() == 3 || n.size() == 5) // the hour has one digit
            v.hour = n.left(1).toInt(), split(n.mid(1), fields, 1, v);
        else if (n.size() == 4 || n.size() == 6)
            split(n, fields, 0, v);
        else
            return Null;
    } else if (numbers.size() >= 2) {
        for (QStringView n : numbers)
            if (n.size() > 2)
                return Null;
        v.hour = numbers[0].toInt();
        v.minute = numbers[1].toInt();
        if (numbers.size() == 3)
            v.second = numbers[2].toInt();
    } else {
        return Null;
    }
    const auto seconds = timeOfDay(v, words.marker);
    if (!seconds)
        return Null;
    return Date{*seconds / 86400.0};
}

double KelRuntimeDates::NumberFromValue(const Variant &value, qint16 decimals)
{
    double v = 0;
    if (const QString *text = value.get<QString>()) {
        const QString dec = m_locale.decimalPoint(), grp = m_locale.groupSeparator();
        // Not a number (letters, a second separator): 0, never a guess.
        if (!text->trimmed().isEmpty()
            && !parseClassicNumber(*text, dec.isEmpty() ? QChar(u'.') : dec[0], grp.isEmpty() ? QChar(u',') : grp[0], &v))
            v = 0;
    } else {
        bool ok = false;
        v = value.toDouble(&ok);
        if (!ok)
            v = 0;
    }
    return RoundNumber(v, decimals);
}

double KelRuntimeDates::RoundNumber(double number, qint16 decimals)
{
    if (!std::isfinite(number))
        return 0;
    int places = qBound<int>(0, decimals, 16);
    // Never keep more than the 15 significant digits the forms can show, so the stored value is
    // the shown one.
    if (number != 0) {
        const int magnitude = int(std::floor(std::log10(std::fabs(number)))) + 1;
        places = qMax(0, qMin(places, 15 - magnitude));
    }
    return RoundDecimal(number, places, RoundMode::HalfAwayFromZero);
}

} // namespace kel
