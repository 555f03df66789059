#pragma once
/// \file
/// What the controls need of the host's run-time object. Hosts hand their own through
/// KelControlHandler::SetRuntime; otherwise the library creates the default KelRuntime8.
#include "../platform/kelexport.h"
#include "../platform/variant.h"

#include <QLocale>
#include <QObject>
#include <memory>
#include <stdexcept>

namespace kel {

/// A service the run-time object cannot give; the call fails with this error.
class KEL_EXPORT RuntimeError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A font by name and size in points.
struct FontSpec {
    /// The font's family.
    QString name;
    /// The font's size in points.
    double size = 0;
};

/// The parsing and rounding services of the run-time object.
class KEL_EXPORT IRuntimeDates
{
public:
    virtual ~IRuntimeDates() = default;
    /// A date, or Null when the text is no date.
    virtual Variant ParseDate(const QString &text, const QString &format, const Variant &defaultDate, bool birthday) = 0;
    /// The last day of the date's month.
    virtual Date LastDayOfMonth(Date date) = 0;
    /// A time, or Null.
    virtual Variant ParseTime(const QString &text) = 0;
    /// A number or the text of a field, as a double rounded to `decimals` places.
    virtual double NumberFromValue(const Variant &value, qint16 decimals) = 0;
    /// `number` rounded to `decimals` places.
    virtual double RoundNumber(double number, qint16 decimals) = 0;
};

/// A QObject so that hosts can pass it through dispatch as an object argument.
class KEL_EXPORT IKelRuntime : public QObject
{
public:
    using QObject::QObject;
    virtual int ColourDepth() = 0;                 ///< bits per pixel of the display
    virtual QString DecimalSeparator() = 0;        ///< its first character is used
    /// The regional number of decimals.
    virtual qint16 DecimalDigits() = 0;
    /// The region the controls show numbers and dates in. RuntimeDates must read back what this
    /// region writes (its decimal and group separators), or shown values would not parse back.
    virtual QLocale Locale() = 0;
    /// The font of captions.
    virtual FontSpec CaptionFont() = 0;
    /// The font of fields.
    virtual FontSpec FieldFont() = 0;
    virtual void SendKey(int virtualKey) = 0;      ///< 9: move the focus on as Tab would
    /// The parsing and rounding services, fetched afresh before each use.
    virtual std::shared_ptr<IRuntimeDates> RuntimeDates() = 0;
    /// `list` with `item` appended as one more list entry. The list comes by value: a caller that
    /// moves its list in lets an implementation grow that same string, so building a list item by
    /// item (`list = ListAppend(std::move(list), item)`) costs amortised constant time an item.
    virtual QString ListAppend(QString list, const QString &item) = 0;
    /// The next field of `text` from `position`; the position advances, negative when none is left.
    virtual QString ReadField(const QString &text, qint32 &position, int separatorCode) = 0;
};

} // namespace kel

Q_DECLARE_METATYPE(std::shared_ptr<QObject>)
