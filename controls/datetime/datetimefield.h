#pragma once
// What the date and the time field share: a day serial (or Null) typed as free text, read back
// through the run-time object's parser, shown in Format, kept in MinValue..MaxValue on commit and
// on stepping, checked by Valid with a message in the field's own words.
#include "../../common/spinfield.h"
#include "../../platform/kelexport.h"
#include "../../platform/variant.h"

#include <QDateTime>
#include <QLocale>
#include <optional>

namespace kel {

class KEL_EXPORT DateTimeField : public SpinField
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed DESIGNABLE false)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved DESIGNABLE false)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
    Q_PROPERTY(QString Format READ Format WRITE setFormat)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked)
    // Plain values: a QDate (date field) or QTime (time field); Empty reads as an invalid QVariant,
    // Null as a nullptr. Bounds also take a day serial and ISO text, so Designer edits them as dates
    // or times and uic code passes what it writes.
    Q_PROPERTY(QVariant MaxValue READ plainMaxValue WRITE setPlainMaxValue)
    Q_PROPERTY(QVariant MinValue READ plainMinValue WRITE setPlainMinValue)
    Q_PROPERTY(QVariant Value READ plainValue WRITE setPlainValue NOTIFY ValueChanged USER true)
    Q_PROPERTY(QVariant ValueOriginal READ plainValueOriginal WRITE setPlainValueOriginal DESIGNABLE false)
    Q_PROPERTY(QVariant ValueSaved READ plainValueSaved WRITE setPlainValueSaved DESIGNABLE false)

public:
    /// The value differs from ValueOriginal (typed text is committed first); a Null reference
    /// counts as changed exactly when the value is not Null.
    bool Changed() { return changedFrom(m_valueOriginal); }
    /// The same against ValueSaved.
    bool ChangedSaved() { return changedFrom(m_valueSaved); }
    /// Also enables the spinner, which works only on an enabled, unlocked field.
    void setEnabled(bool enabled);
    /// The display format, in the letters of the classic Format function.
    QString Format() const { return m_format; }
    /// Sets Format.
    virtual void setFormat(const QString &format) = 0;
    /// A locked field keeps its value and text: no typing, no stepping, always Valid.
    void setLocked(bool locked);
    /// Upper bound, applied when the text is committed or stepped; a lower MinValue follows it.
    Date MaxValue() const { return {m_maxValue}; }
    /// Sets MaxValue.
    void setMaxValue(Date value);
    /// The same as a date-time or a date; an invalid one is ignored.
    void setMaxValue(const QDateTime &value);
    /// The same as a date.
    void setMaxValue(QDate value);
    /// MaxValue as a date-time.
    QDateTime maxDateTime() const;
    /// Lower bound; a higher MaxValue follows it.
    Date MinValue() const { return {m_minValue}; }
    /// Sets MinValue.
    void setMinValue(Date value);
    /// The same as a date-time; an invalid one is ignored.
    void setMinValue(const QDateTime &value);
    /// The same as a date.
    void setMinValue(QDate value);
    /// MinValue as a date-time.
    QDateTime minDateTime() const;
    /// False when the field holds no valid value or one out of range; with ShowMessage a message
    /// box says why and the focus returns to the field. Changes nothing.
    Q_INVOKABLE bool Valid(bool ShowMessage = false);
    /// Empty before the first assignment, then Null or a Date; typed text is committed first.
    Variant Value();
    /// Text, a Date or a day serial; what is no value gives Null. Not clamped; raises nothing.
    void setValue(const Variant &value);
    /// The same as a date-time, a date or a time, as generated form code passes it; an invalid one
    /// gives Null.
    void setValue(const QDateTime &value);
    /// The same as a date.
    void setValue(QDate value);
    /// The same as a time of day.
    void setValue(QTime value);
    /// What Changed compares against: the value set from code or last stepped to.
    Variant ValueOriginal() const { return m_valueOriginal; }
    /// Sets ValueOriginal.
    void setValueOriginal(const Variant &value) { m_valueOriginal = value; }
    /// What ChangedSaved compares against; the host sets it after storing the record.
    Variant ValueSaved() const { return m_valueSaved; }
    /// Sets ValueSaved.
    void setValueSaved(const Variant &value) { m_valueSaved = value; }

    /// Value, ValueOriginal, ValueSaved and the bounds as Qt's property system gives and takes
    /// them: plain QVariants (see toQVariant and fromQVariant). A bound that is no date is ignored.
    QVariant plainValue();
    /// Sets Value from a plain QVariant.
    void setPlainValue(const QVariant &value);
    /// ValueOriginal as a plain QVariant.
    QVariant plainValueOriginal() const { return toQVariant(m_valueOriginal, dateForm()); }
    /// Sets ValueOriginal from a plain QVariant.
    void setPlainValueOriginal(const QVariant &value);
    /// ValueSaved as a plain QVariant.
    QVariant plainValueSaved() const { return toQVariant(m_valueSaved, dateForm()); }
    /// Sets ValueSaved from a plain QVariant.
    void setPlainValueSaved(const QVariant &value);
    /// MaxValue as a plain QVariant.
    QVariant plainMaxValue() const { return toQVariant(Date{m_maxValue}, dateForm()); }
    /// Sets MaxValue from a plain QVariant.
    void setPlainMaxValue(const QVariant &value);
    /// MinValue as a plain QVariant.
    QVariant plainMinValue() const { return toQVariant(Date{m_minValue}, dateForm()); }
    /// Sets MinValue from a plain QVariant.
    void setPlainMinValue(const QVariant &value);
signals:
    /// Only a step (spinner, Up/Down, "+"/"-") that moved the value, or the first step on an empty field.
    void Change();
    /// Value moved, by code, a step or a committed entry (Qt's notification; Change keeps its own rules).
    void ValueChanged();

protected:
    explicit DateTimeField(QWidget *parent = nullptr);

    struct Wording {
        QString title, range, noValue; // range has %1 and %2 for the bounds
    };
    virtual Wording wording() const = 0;
    // What a date reads back as through Qt's property system.
    virtual QtDateForm dateForm() const = 0;
    // Text to a serial through the run-time object; nullopt when it is no value.
    virtual std::optional<double> parse(const QString &text) const = 0;
    // A serial given from code, reduced to what the field holds.
    virtual double normalised(double serial) const = 0;
    // Text typed, or a value shown again in a new Format, before the clamp (which gives a bound
    // exactly as it is kept): the date field's rule for a time of day; the time field keeps it.
    virtual double entered(double serial) const { return serial; }
    // A bound as the field keeps it: in whole seconds, as a host reads it back as a date-time.
    virtual double bound(double serial) const;
    // The day pinning of the date field; the time field keeps the value.
    virtual double pinned(double serial) const { return serial; }
    // Characters the box takes besides "+" and "-" (which step) and control characters.
    virtual bool accepts(int /*keyAscii*/) const { return true; }
    // A control character other than Enter that goes to the box as it is, never typing over.
    virtual bool controlCharacterPasses(int /*keyAscii*/) const { return true; }
    // A Null value of an optional field is valid whatever the box shows.
    virtual bool nullAlwaysValidWhenOptional() const { return false; }
    // The value as the property bag stores it.
    virtual Variant persistedValue() const = 0;

    // The caption keeps its own font and may be wider than the control.
    LayoutRules layoutRules() const override;

    QString formatted(double serial) const;
    double clamped(double v) const;
    std::optional<double> serialOf(const Variant &v) const;
    static double today();
    void commitText();
    // Format was set: show the value in it.
    void formatChanged();
    // Emits ValueChanged when the value held moved since it was last announced.
    void notifyValue();
    // Shows a stepped value, puts the caret, and reports the move.
    void finishStep(double value, const QString &shown, int caret, bool noValue, bool focus);
    // Writes the read table in the saving order ("Value", in its persisted form, before "UpDown").
    void writeProperties(PropertyBag &bag, const std::vector<Persisted> &readOrder);
    // A control newly placed on a form.
    void initDefaults(const QString &format, double min, double max);

    void onExitFocus() override;
    void onChildKeyPress(Child *, int &keyAscii) override;
    void onChildGotFocus(Child *) override { gotFocus(); }
    void onChildLostFocus(Child *) override { Text1->setSelStart(0); }
    void onChildMouseDown(Child *, int button, int, double, double) override;

    QString m_format;
    double m_minValue = 0;
    double m_maxValue = 0;
    Variant m_value;
    Variant m_valueOriginal;
    Variant m_valueSaved;

private:
    struct LastFormatted {
        quint64 serial = 0; // the bits, so that -0 and 0 stay apart
        QString format;
        QLocale region;
        QString text; // null: nothing kept
    };
    mutable LastFormatted m_lastFormatted;
    PropertyWatch m_valueWatch;
    bool changedFrom(const Variant &reference);
    void gotFocus();
    void showSpinnerState();
};

// A character that separates the parts of a date or time text: anything but an ASCII letter or digit.
bool isPartSeparator(QChar c);
// Upper case one character at a time, so that positions found in it hold in `text` ("ß" stays).
QString upperInPlace(const QString &text);

} // namespace kel
