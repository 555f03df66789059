#pragma once
// The classic run-time's variant: Empty, Null, Boolean, Integer, Long, Double, Date, String.
#include "platform/kelexport.h"
#include <QMetaType>
#include <QString>
#include <QtGlobal>
#include <memory>
#include <variant>

class QObject;

namespace kel {

// A day serial: whole days since 30 December 1899, the fraction is the time of day.
struct Date {
    double serial = 0.0;
    friend bool operator==(Date a, Date b) { return a.serial == b.serial; }
};

struct EmptyT { friend bool operator==(EmptyT, EmptyT) { return true; } };
struct NullT { friend bool operator==(NullT, NullT) { return true; } };
inline constexpr EmptyT Empty{};
inline constexpr NullT Null{};

class KEL_EXPORT Variant
{
public:
    enum class Type { Empty, Null, Boolean, Integer, Long, Double, Date, String, Object };

    Variant() = default;
    Variant(EmptyT) {}
    Variant(NullT) : m_v(NullT{}) {}
    Variant(bool b) : m_v(b) {}
    Variant(qint16 i) : m_v(i) {}
    Variant(qint32 l) : m_v(l) {}
    Variant(double d) : m_v(d) {}
    Variant(Date d) : m_v(d) {}
    Variant(const QString &s) : m_v(s) {}
    Variant(const char16_t *s) : m_v(QString::fromUtf16(s)) {}
    Variant(QLatin1StringView s) : m_v(QString(s)) {}
    Variant(std::shared_ptr<QObject> o) : m_v(std::move(o)) {}

    Type type() const { return static_cast<Type>(m_v.index()); }
    bool isEmpty() const { return type() == Type::Empty; }
    bool isNull() const { return type() == Type::Null; }
    bool isString() const { return type() == Type::String; }
    std::shared_ptr<QObject> toObject() const;

    // The classic numeric test: a number, a Boolean, Empty, or text that reads as a number.
    bool isNumeric() const;

    // Conversions as the classic runtime does them; ok (when given) says whether it could.
    double toDouble(bool *ok = nullptr) const;
    bool toBool(bool *ok = nullptr) const;
    qint16 toInt16(bool *ok = nullptr) const;
    qint32 toInt32(bool *ok = nullptr) const;
    QString toString() const;           // Null and Empty give ""
    Date toDate(bool *ok = nullptr) const;

    // Raw access for exact typed reads.
    template<class T> const T *get() const { return std::get_if<T>(&m_v); }

    // Strict equality: same type and same value (Empty == Empty, Null == Null).
    friend bool operator==(const Variant &a, const Variant &b) { return a.m_v == b.m_v; }

    QString typeName() const;
    QString debugString() const;

private:
    std::variant<EmptyT, NullT, bool, qint16, qint32, double, Date, QString, std::shared_ptr<QObject>> m_v;
};

// The classic a <> b between variants. A comparison involving Null is Null, which counts as not
// different; Empty is 0 against a number and "" against text; numbers, Booleans and dates compare
// by value; text compares exactly; a number never equals text.
KEL_EXPORT bool differs(const Variant &a, const Variant &b);

// Reads text as a number the way the classic numeric test does: blanks around, a sign before or
// after, parentheses for negatives, digits with group separators, one decimal separator,
// an exponent, or &H / &O radix prefixes. Uses the given separators.
KEL_EXPORT bool parseClassicNumber(const QString &text, QChar decimalSep, QChar groupSep, double *out);

// Makes Variant and Date convertible to and from plain QVariants (numbers, text, booleans,
// QDate/QDateTime/QTime, nullptr for Null), so hosts reach every property through
// setProperty()/property(). Runs once at start-up; calling it again does nothing.
void registerVariantConverters();

} // namespace kel

Q_DECLARE_METATYPE(kel::Variant)
Q_DECLARE_METATYPE(kel::Date)
