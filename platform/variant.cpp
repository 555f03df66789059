#include "platform/variant.h"

#include "platform/dayserial.h"

#include <QLocale>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

namespace kel {

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == QChar(0xA0) || c == QChar(0x202F); }

bool parseRadix(QStringView s, double *out)
{
    if (s.size() < 3 || s[0] != u'&')
        return false;
    const QChar kind = s[1].toUpper();
    const int base = kind == u'H' ? 16 : kind == u'O' ? 8 : 0;
    if (!base)
        return false;
    bool ok = false;
    const qulonglong v = s.mid(2).toULongLong(&ok, base);
    if (!ok || v > 0xFFFFFFFFull)
        return false;
    // Classic radix literals of up to 16 bits are Integer, longer ones Long, both signed.
    const double r = v <= 0xFFFF && s.size() <= 2 + (base == 16 ? 4 : 6)
            ? double(qint16(quint16(v))) : double(qint32(quint32(v)));
    *out = r;
    return true;
}

} // namespace

bool parseClassicNumber(const QString &text, QChar dec, QChar grp, double *out)
{
    QStringView s(text);
    while (!s.isEmpty() && isBlank(s.front()))
        s = s.mid(1);
    while (!s.isEmpty() && isBlank(s.back()))
        s.chop(1);
    if (s.isEmpty())
        return false;
    if (parseRadix(s, out))
        return true;

    // One sign before or after, and parentheses, in either nesting ("-(5)", "(-5)", "(5)-"):
    // any of them makes the number negative; a sign already present is never toggled off.
    const auto isMinus = [](QChar c) { return c == u'-' || c == QChar(0x2212); };
    const auto isSign = [&](QChar c) { return isMinus(c) || c == u'+'; };
    bool negative = false, signed_ = false;
    for (int pass = 0; pass < 2 && !s.isEmpty(); ++pass) {
        if (!signed_ && isSign(s.front())) {
            negative = negative || isMinus(s.front());
            signed_ = true;
            s = s.mid(1);
        } else if (!signed_ && isSign(s.back())) {
            negative = negative || isMinus(s.back());
            signed_ = true;
            s.chop(1);
        }
        while (!s.isEmpty() && isBlank(s.front()))
            s = s.mid(1);
        while (!s.isEmpty() && isBlank(s.back()))
            s.chop(1);
        if (s.size() >= 2 && s.front() == u'(' && s.back() == u')') {
            negative = true;
            s = s.mid(1, s.size() - 2);
        }
    }
    while (!s.isEmpty() && isBlank(s.front()))
        s = s.mid(1);

    QString plain;
    plain.reserve(s.size());
    bool digits = false, seenDec = false, seenExp = false;
    for (qsizetype i = 0; i < s.size(); ++i) {
        const QChar c = s[i];
        if (c.isDigit() && c.unicode() < 128) {
            plain += c;
            digits = true;
        } else if (c == dec && !seenDec && !seenExp) {
            plain += u'.';
            seenDec = true;
        } else if (c == grp && !seenDec && !seenExp && digits) {
            continue; // grouping is accepted anywhere in the integer part, as the classic test does
        } else if ((c == u'e' || c == u'E' || c == u'd' || c == u'D') && digits && !seenExp) {
            plain += u'e';
            seenExp = true;
            if (i + 1 < s.size() && (s[i + 1] == u'+' || s[i + 1] == u'-'))
                plain += s[++i];
            if (i + 1 >= s.size())
                return false;
        } else {
            return false;
        }
    }
    if (!digits)
        return false;
    bool ok = false;
    double v = plain.toDouble(&ok);
    if (!ok && std::isinf(v))
        v = std::numeric_limits<double>::max(); // overflow: the largest number, for clamping to bounds
    else if (!ok || !std::isfinite(v))
        return false;
    *out = negative ? -v : v;
    return true;
}

static bool stringToDouble(const QString &s, double *out)
{
    const QLocale loc;
    const QString d = loc.decimalPoint(), g = loc.groupSeparator();
    return parseClassicNumber(s, d.isEmpty() ? QChar(u'.') : d[0], g.isEmpty() ? QChar(u',') : g[0], out);
}

bool Variant::isNumeric() const
{
    switch (type()) {
    case Type::Empty: case Type::Boolean: case Type::Integer: case Type::Long:
        return true;
    case Type::Double:
        return std::isfinite(*get<double>()); // NaN and infinities are no value a field can hold
    case Type::String: {
        double d;
        return stringToDouble(*get<QString>(), &d);
    }
    default:
        return false;
    }
}

double Variant::toDouble(bool *ok) const
{
    bool good = true;
    double r = 0;
    switch (type()) {
    case Type::Empty: break;
    case Type::Null: case Type::Object: good = false; break;
    case Type::Boolean: r = *get<bool>() ? -1.0 : 0.0; break;
    case Type::Integer: r = *get<qint16>(); break;
    case Type::Long: r = *get<qint32>(); break;
    case Type::Double: r = *get<double>(); break;
    case Type::Date: r = get<Date>()->serial; break;
    case Type::String: good = stringToDouble(*get<QString>(), &r); if (!good) r = 0; break;
    }
    if (ok)
        *ok = good;
    return r;
}

bool Variant::toBool(bool *ok) const
{
    if (const QString *s = get<QString>()) {
        const QString t = s->trimmed();
        if (t.compare(u"true", Qt::CaseInsensitive) == 0) { if (ok) *ok = true; return true; }
        if (t.compare(u"false", Qt::CaseInsensitive) == 0) { if (ok) *ok = true; return false; }
    }
    bool good = false;
    const double d = toDouble(&good);
    if (ok)
        *ok = good;
    return good && d != 0;
}

// Classic conversions to integers round half to even and fail on overflow.
template<class I>
static I toInt(const Variant &v, bool *ok)
{
    bool good = false;
    double d = v.toDouble(&good);
    d = std::nearbyint(d);
    if (!good || !(d >= std::numeric_limits<I>::min() && d <= std::numeric_limits<I>::max())) { // NaN too
        if (ok) *ok = false;
        return 0;
    }
    if (ok) *ok = true;
    return static_cast<I>(d);
}

qint16 Variant::toInt16(bool *ok) const { return toInt<qint16>(*this, ok); }
qint32 Variant::toInt32(bool *ok) const { return toInt<qint32>(*this, ok); }

Date Variant::toDate(bool *ok) const
{
    bool good = false;
    const double d = toDouble(&good);
    if (ok)
        *ok = good && type() != Type::String;
    return Date{d};
}

QString Variant::toString() const
{
    switch (type()) {
    case Type::Empty: case Type::Null: case Type::Object: return {};
    case Type::Boolean: return *get<bool>() ? QStringLiteral("True") : QStringLiteral("False");
    case Type::Integer: return QString::number(*get<qint16>());
    case Type::Long: return QString::number(*get<qint32>());
    case Type::Double: {
        // The general number form: up to 15 significant digits, regional decimal separator.
        QString s = QString::number(*get<double>(), 'g', 15).replace(u'e', u'E');
        const QString dec = QLocale().decimalPoint();
        if (dec != u".")
            s.replace(u'.', dec);
        return s;
    }
    case Type::Date: return QString::number(get<Date>()->serial, 'g', 15);
    case Type::String: return *get<QString>();
    }
    return {};
}

std::shared_ptr<QObject> Variant::toObject() const
{
    const auto *o = get<std::shared_ptr<QObject>>();
    return o ? *o : nullptr;
}

bool differs(const Variant &a, const Variant &b)
{
    using T = Variant::Type;
    if (a.isNull() || b.isNull())
        return false;
    if (a.type() == T::Object || b.type() == T::Object)
        return a.toObject() != b.toObject();
    const bool aText = a.isString(), bText = b.isString();
    if (aText || bText) {
        if (aText && bText)
            return *a.get<QString>() != *b.get<QString>();
        const Variant &other = aText ? b : a;
        const QString &text = *(aText ? a : b).get<QString>();
        return other.isEmpty() ? !text.isEmpty() : true;
    }
    return a.toDouble() != b.toDouble();
}

QString Variant::typeName() const
{
    static const char *const names[] = {"Empty", "Null", "Boolean", "Integer", "Long", "Double", "Date", "String", "Object"};
    return QString::fromLatin1(names[m_v.index()]);
}

QString Variant::debugString() const
{
    if (isEmpty() || isNull())
        return typeName();
    return typeName() + u'(' + toString() + u')';
}

Variant numberAs(const Variant &v, Variant::Type type)
{
    using T = Variant::Type;
    if (v.type() != T::Integer && v.type() != T::Long && v.type() != T::Double)
        return v;
    bool ok = false;
    switch (type) {
    case T::Integer: if (const qint16 i = v.toInt16(&ok); ok && i == v.toDouble()) return i; break;
    case T::Long: if (const qint32 l = v.toInt32(&ok); ok && l == v.toDouble()) return l; break;
    case T::Double: return v.toDouble();
    default: break;
    }
    return v;
}

} // namespace kel

// ---------------------------------------------------------------------------------------
// QVariant conversions

#include "platform/dayserial.h"

#include <QDateTime>
#include <QTime>
#include <QVariant>

namespace kel {

namespace {

// Whole days print as a date alone, anything else with its time of day.
QString isoText(double serial)
{
    if (!isValidDaySerial(serial))
        return {};
    if (serial == std::trunc(serial))
        return toQDate(serial).toString(Qt::ISODate);
    return toQDateTime(serial).toString(Qt::ISODate);
}

std::optional<double> fromQTime(QTime t)
{
    if (!t.isValid())
        return std::nullopt;
    return t.msecsSinceStartOfDay() / 86400000.0;
}

// The time of day of a serial, to the second. One that rounds up to the next day's midnight is
// still this day's: it stays at the day's last moment rather than losing the day it carried.
std::optional<QTime> timeOfDay(double serial)
{
    const QDateTime t = toQDateTime(serial);
    if (!t.isValid())
        return std::nullopt;
    if (t.time() == QTime(0, 0) && std::fabs(serial - std::trunc(serial)) > 0.5)
        return QTime(23, 59, 59, 999);
    return t.time();
}

// Text as a date: a day serial, or an ISO 8601 date, date-time or time.
std::optional<double> serialFromText(const QString &text)
{
    const QString t = text.trimmed();
    double d = 0;
    if (parseClassicNumber(t, u'.', QChar(), &d))
        return isValidDaySerial(d) ? std::optional<double>(d) : std::nullopt;
    if (const QDate date = QDate::fromString(t, Qt::ISODate); date.isValid())
        return fromQDate(date);
    if (const QDateTime dt = QDateTime::fromString(t, Qt::ISODate); dt.isValid())
        return fromQDateTime(dt);
    return fromQTime(QTime::fromString(t, Qt::ISODate));
}

// The serial a variant holds as a date: numbers and dates, and text in a form serialFromText reads.
std::optional<double> serialOf(const Variant &v)
{
    if (v.isEmpty() || v.isNull())
        return std::nullopt;
    if (const QString *s = v.get<QString>())
        return serialFromText(*s);
    bool ok = false;
    const double d = v.toDouble(&ok);
    return ok && isValidDaySerial(d) ? std::optional<double>(d) : std::nullopt;
}

template<class From, class To, class F>
void add(F convert)
{
    QMetaType::registerConverterFunction(
            [convert](const void *from, void *to) -> bool {
                std::optional<To> r = convert(*static_cast<const From *>(from));
                if (!r)
                    return false;
                *static_cast<To *>(to) = std::move(*r);
                return true;
            },
            QMetaType::fromType<From>(), QMetaType::fromType<To>());
}

template<class N>
void addNumber()
{
    add<N, Variant>([](N n) -> std::optional<Variant> {
        if constexpr (std::is_same_v<N, bool>)
            return Variant(n);
        else if constexpr (std::is_integral_v<N>)
            return std::in_range<qint32>(n) ? Variant(qint32(n)) : Variant(double(n));
        else
            return Variant(double(n));
    });
    add<Variant, N>([](const Variant &v) -> std::optional<N> {
        if constexpr (std::is_same_v<N, bool>) {
            bool ok = false;
            const bool b = v.toBool(&ok);
            return ok ? std::optional<N>(b) : std::nullopt;
        } else {
            bool ok = false;
            double d = v.toDouble(&ok);
            if (!ok && v.isString())
                if (const auto s = serialOf(v)) // ISO dates read as their serial
                    d = *s, ok = true;
            if (!ok)
                return std::nullopt;
            if constexpr (std::is_integral_v<N>) {
                d = std::nearbyint(d);
                if (!(d >= double(std::numeric_limits<N>::min()) && d <= double(std::numeric_limits<N>::max())))
                    return std::nullopt;
            }
            return N(d);
        }
    });
    if constexpr (!std::is_same_v<N, bool>) {
        add<N, Date>([](N n) -> std::optional<Date> {
            return isValidDaySerial(double(n)) ? std::optional<Date>(Date{double(n)}) : std::nullopt;
        });
        add<Date, N>([](Date d) -> std::optional<N> {
            if constexpr (std::is_integral_v<N>) {
                const double r = std::nearbyint(d.serial);
                if (!(r >= double(std::numeric_limits<N>::min()) && r <= double(std::numeric_limits<N>::max())))
                    return std::nullopt;
                return N(r);
            } else {
                return N(d.serial);
            }
        });
    }
}

void registerAll()
{
    addNumber<bool>();
    addNumber<short>();
    addNumber<ushort>();
    addNumber<int>();
    addNumber<uint>();
    addNumber<qlonglong>();
    addNumber<qulonglong>();
    addNumber<long>();
    addNumber<float>();
    addNumber<double>();

    const auto date = [](std::optional<double> s) -> std::optional<Date> {
        return s ? std::optional<Date>(Date{*s}) : std::nullopt;
    };
    // An invalid QDate/QDateTime/QTime is no date: Null as a Variant, a failed conversion as a Date.
    const auto dateVariant = [](std::optional<double> s) -> std::optional<Variant> {
        return s ? Variant(Date{*s}) : Variant(Null);
    };

    add<QString, Variant>([](const QString &s) -> std::optional<Variant> { return Variant(s); });
    add<Variant, QString>([](const Variant &v) -> std::optional<QString> {
        if (const Date *d = v.get<Date>())
            return isoText(d->serial);
        return v.toString();
    });
    add<std::nullptr_t, Variant>([](std::nullptr_t) -> std::optional<Variant> { return Variant(Null); });

    add<QDate, Variant>([=](QDate d) { return dateVariant(fromQDate(d)); });
    add<QDateTime, Variant>([=](const QDateTime &d) { return dateVariant(fromQDateTime(d)); });
    add<QTime, Variant>([=](QTime t) { return dateVariant(fromQTime(t)); });
    add<Variant, QDate>([](const Variant &v) -> std::optional<QDate> {
        const auto s = serialOf(v);
        return s ? std::optional<QDate>(toQDate(*s)) : std::nullopt;
    });
    add<Variant, QDateTime>([](const Variant &v) -> std::optional<QDateTime> {
        const auto s = serialOf(v);
        return s ? std::optional<QDateTime>(toQDateTime(*s)) : std::nullopt;
    });
    add<Variant, QTime>([](const Variant &v) -> std::optional<QTime> {
        const auto s = serialOf(v);
        return s ? timeOfDay(*s) : std::nullopt;
    });

    add<Date, Variant>([](Date d) -> std::optional<Variant> { return Variant(d); });
    add<Variant, Date>([=](const Variant &v) { return date(serialOf(v)); });
    add<QDate, Date>([=](QDate d) { return date(fromQDate(d)); });
    add<QDateTime, Date>([=](const QDateTime &d) { return date(fromQDateTime(d)); });
    add<QTime, Date>([=](QTime t) { return date(fromQTime(t)); });
    add<QString, Date>([=](const QString &s) { return date(serialFromText(s)); });
    add<Date, QDate>([](Date d) -> std::optional<QDate> {
        const QDate r = toQDate(d.serial);
        return r.isValid() ? std::optional<QDate>(r) : std::nullopt;
    });
    add<Date, QDateTime>([](Date d) -> std::optional<QDateTime> {
        const QDateTime r = toQDateTime(d.serial);
        return r.isValid() ? std::optional<QDateTime>(r) : std::nullopt;
    });
    add<Date, QTime>([](Date d) -> std::optional<QTime> {
        return timeOfDay(d.serial);
    });
    add<Date, QString>([](Date d) -> std::optional<QString> {
        const QString r = isoText(d.serial);
        return r.isEmpty() ? std::nullopt : std::optional<QString>(r);
    });
}

} // namespace

QVariant toQVariant(const Variant &v, QtDateForm form)
{
    switch (v.type()) {
    case Variant::Type::Empty: return {};
    case Variant::Type::Null: return QVariant::fromValue(nullptr);
    case Variant::Type::Boolean: return *v.get<bool>();
    case Variant::Type::Integer: return *v.get<qint16>();
    case Variant::Type::Long: return int(*v.get<qint32>());
    case Variant::Type::Double: return *v.get<double>();
    case Variant::Type::String: return *v.get<QString>();
    case Variant::Type::Object: return QVariant::fromValue(v.toObject());
    case Variant::Type::Date: break;
    }
    const double serial = v.get<Date>()->serial;
    if (!isValidDaySerial(serial))
        return form == QtDateForm::Time ? QVariant(QTime()) : QVariant(QDate());
    // What would lose a day or a time of day reads as a date or a date-time.
    if (form == QtDateForm::Time && serial >= 0 && serial < 1)
        return toQDateTime(serial).time();
    if (serial == std::floor(serial))
        return toQDate(serial);
    return toQDateTime(serial);
}

std::optional<Variant> fromQVariant(const QVariant &q)
{
    const QMetaType t = q.metaType();
    const auto date = [](std::optional<double> s) { return s ? Variant(Date{*s}) : Variant(Null); };
    switch (t.id()) {
    case QMetaType::UnknownType: return Variant();
    case QMetaType::Nullptr: return Variant(Null);
    case QMetaType::Bool: return q.toBool();
    case QMetaType::Short: return q.value<qint16>();
    case QMetaType::Char: case QMetaType::SChar: case QMetaType::UChar: case QMetaType::UShort:
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::Long:
    case QMetaType::LongLong: {
        const qlonglong n = q.toLongLong();
        return std::in_range<qint32>(n) ? Variant(qint32(n)) : Variant(double(n));
    }
    case QMetaType::ULong: case QMetaType::ULongLong: {
        const qulonglong n = q.toULongLong();
        return std::in_range<qint32>(n) ? Variant(qint32(n)) : Variant(double(n));
    }
    case QMetaType::Float: case QMetaType::Double: return q.toDouble();
    case QMetaType::QString: return q.toString();
    case QMetaType::QDate: return date(fromQDate(q.toDate()));
    case QMetaType::QDateTime: return date(fromQDateTime(q.toDateTime()));
    case QMetaType::QTime: return date(fromQTime(q.toTime()));
    default: break;
    }
    if (t == QMetaType::fromType<Variant>())
        return q.value<Variant>();
    if (t == QMetaType::fromType<Date>())
        return Variant(q.value<Date>());
    if (t == QMetaType::fromType<std::shared_ptr<QObject>>())
        return Variant(q.value<std::shared_ptr<QObject>>());
    return std::nullopt;
}

std::optional<double> daySerialOf(const QVariant &q)
{
    if (q.metaType() == QMetaType::fromType<bool>())
        return std::nullopt;
    const std::optional<Variant> v = fromQVariant(q);
    if (!v || v->type() == Variant::Type::Boolean)
        return std::nullopt;
    return serialOf(*v);
}

void registerVariantConverters()
{
    static const bool once = (registerAll(), true);
    Q_UNUSED(once);
}

// Hosts may call setProperty() before anything of ours has run.
Q_CONSTRUCTOR_FUNCTION(registerVariantConverters)

} // namespace kel
