#pragma once
/// \file
/// The classic run-time's variant: Empty, Null, Boolean, Integer, Long, Double, Date, String.
#include "kelexport.h"

#include <QMetaType>
#include <QString>
#include <QtGlobal>
#include <memory>
#include <optional>
#include <variant>

class QObject;
class QVariant;

namespace kel {

/// A day serial: whole days since 30 December 1899, the fraction is the time of day.
struct Date {
    /// Days since 30 December 1899; the fraction is the time of day.
    double serial = 0.0;
    friend bool operator==(Date a, Date b) { return a.serial == b.serial; }
};

/// The Empty value: a variant never assigned.
struct EmptyT { friend bool operator==(EmptyT, EmptyT) { return true; } };
/// The Null value: no valid data.
struct NullT { friend bool operator==(NullT, NullT) { return true; } };
/// Empty, for constructing variants.
inline constexpr EmptyT Empty{};
/// Null, for constructing variants.
inline constexpr NullT Null{};

/// A value of the classic runtime: Empty, Null, Boolean, Integer (16-bit), Long (32-bit),
/// Double, Date, String or an object. Converts to plain QVariants for Qt properties.
class KEL_EXPORT Variant
{
public:
    /// The kind of value held, in the classic VarType order.
    enum class Type { Empty, Null, Boolean, Integer, Long, Double, Date, String, Object };

    /// Empty.
    Variant() = default;
    /// Empty.
    Variant(EmptyT) {}
    /// Null.
    Variant(NullT) : m_v(NullT{}) {}
    /// A Boolean.
    Variant(bool b) : m_v(b) {}
    /// An Integer.
    Variant(qint16 i) : m_v(i) {}
    /// A Long.
    Variant(qint32 l) : m_v(l) {}
    /// A Double.
    Variant(double d) : m_v(d) {}
    /// A Date.
    Variant(Date d) : m_v(d) {}
    /// A String.
    Variant(const QString &s) : m_v(s) {}
    /// A String.
    Variant(const char16_t *s) : m_v(QString::fromUtf16(s)) {}
    /// A String.
    Variant(QLatin1StringView s) : m_v(QString(s)) {}
    /// An object reference (a run-time object passed through dispatch).
    Variant(std::shared_ptr<QObject> o) : m_v(std::move(o)) {}

    /// The kind of value held.
    Type type() const { return static_cast<Type>(m_v.index()); }
    /// True for Empty.
    bool isEmpty() const { return type() == Type::Empty; }
    /// True for Null.
    bool isNull() const { return type() == Type::Null; }
    /// True for a String.
    bool isString() const { return type() == Type::String; }
    /// The object held, or nullptr.
    std::shared_ptr<QObject> toObject() const;

    /// The classic numeric test: a number, a Boolean, Empty, or text that reads as a number.
    bool isNumeric() const;

    /// Conversions as the classic runtime does them; ok (when given) says whether it could.
    double toDouble(bool *ok = nullptr) const;
    /// Nonzero numbers and "True" are true.
    bool toBool(bool *ok = nullptr) const;
    /// Rounded half to even; no number or out of range gives 0 with *ok false.
    qint16 toInt16(bool *ok = nullptr) const;
    /// Rounded half to even; no number or out of range gives 0 with *ok false.
    qint32 toInt32(bool *ok = nullptr) const;
    QString toString() const;           ///< Null and Empty give ""
    /// A date, or a number taken as a day serial; for text *ok is false.
    Date toDate(bool *ok = nullptr) const;

    /// Raw access for exact typed reads.
    template<class T> const T *get() const { return std::get_if<T>(&m_v); }

    /// Strict equality: same type and same value (Empty == Empty, Null == Null).
    friend bool operator==(const Variant &a, const Variant &b) { return a.m_v == b.m_v; }

    /// "Empty", "Null", "Boolean", ... as the classic TypeName.
    QString typeName() const;
    /// The type and the value, for messages and tests.
    QString debugString() const;

private:
    std::variant<EmptyT, NullT, bool, qint16, qint32, double, Date, QString, std::shared_ptr<QObject>> m_v;
};

/// The classic a <> b between variants. A comparison involving Null is Null, which counts as not
/// different; Empty is 0 against a number and "" against text; numbers, Booleans and dates compare
/// by value; text compares exactly; a number never equals text.
KEL_EXPORT bool differs(const Variant &a, const Variant &b);

/// A number held as `type` (Integer, Long or Double) when it fits there; anything else as it is.
/// Lets a value read back through a wider Qt type keep its own classic type.
KEL_EXPORT Variant numberAs(const Variant &v, Variant::Type type);

/// Reads text as a number the way the classic numeric test does: blanks around, a sign before or
/// after, parentheses for negatives, digits with group separators, one decimal separator,
/// an exponent, or &H / &O radix prefixes. Uses the given separators.
KEL_EXPORT bool parseClassicNumber(const QString &text, QChar decimalSep, QChar groupSep, double *out);

/// How a date reads back as a plain QVariant.
enum class QtDateForm {
    DateOrDateTime, ///< QDate for a whole day, QDateTime when it has a time of day
    Date,           ///< the same, for the date field (whose values are whole days): nothing is lost
    Time,           ///< QTime for a time of day (0 <= serial < 1); any other serial as a date
};

/// The plain QVariant a Qt property gives for a value: Empty is an invalid QVariant, Null
/// QVariant::fromValue(nullptr); Booleans, numbers and text as bool, short, int, double and QString;
/// a Date as `form` says (an invalid serial as an invalid QDate or QTime).
KEL_EXPORT QVariant toQVariant(const Variant &v, QtDateForm form = QtDateForm::DateOrDateTime);
/// The value a plain QVariant stands for: invalid is Empty, nullptr Null, QDate/QDateTime/QTime a
/// Date (an invalid one Null); a QVariant holding a Variant or a Date gives it. Nothing for a type
/// that means no value here (a list, a colour, ...).
KEL_EXPORT std::optional<Variant> fromQVariant(const QVariant &q);
/// The day serial a QVariant stands for: a number, QDate/QDateTime/QTime, a Date, ISO 8601 text or
/// a serial as text. Nothing for anything else or a serial outside 1 January 100 .. 31 December 9999.
KEL_EXPORT std::optional<double> daySerialOf(const QVariant &q);

// Makes Variant and Date convertible to and from plain QVariants (numbers, text, booleans,
// QDate/QDateTime/QTime, nullptr for Null), so hosts reach every property through
// setProperty()/property(). Runs once at start-up; calling it again does nothing.
void registerVariantConverters();

} // namespace kel

Q_DECLARE_METATYPE(kel::Variant)
Q_DECLARE_METATYPE(kel::Date)
