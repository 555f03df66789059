#pragma once
// A Double in one text box: grouped with fixed decimals and red parentheses for negatives while
// the field rests, plain while it is edited, typed through a key filter that admits only what can
// make a number, stepped by an optional spinner or the Up and Down keys, kept in MinValue..MaxValue.
#include "../../common/spinfield.h"
#include "../../platform/kelexport.h"

#include <cmath>

namespace kel {

class KEL_EXPORT KelNumber : public SpinField
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed DESIGNABLE false)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved DESIGNABLE false)
    Q_PROPERTY(int Decimals READ Decimals WRITE setDecimals)
    Q_PROPERTY(bool FontBold READ FontBold WRITE setFontBold)
    Q_PROPERTY(bool GroupDigits READ GroupDigits WRITE setGroupDigits)
    Q_PROPERTY(double MaxValue READ MaxValue WRITE setMaxValue)
    Q_PROPERTY(double MinValue READ MinValue WRITE setMinValue)
    Q_PROPERTY(double UpDownChange READ UpDownChange WRITE setUpDownChange)
    // A plain double; writes take whatever setValue takes.
    Q_PROPERTY(QVariant Value READ plainValue WRITE setPlainValue NOTIFY ValueChanged USER true)
    Q_PROPERTY(double ValueOriginal READ ValueOriginal WRITE setValueOriginal DESIGNABLE false)
    Q_PROPERTY(double ValueSaved READ ValueSaved WRITE setValueSaved DESIGNABLE false)

public:
    /// A field holding 0 with the regional decimals; the container sets its properties next.
    explicit KelNumber(QWidget *parent = nullptr);

    // Reading the value commits what the user typed first, so these are not const.
    /// Whether Value differs from ValueOriginal.
    bool Changed() { return currentValue() != m_valueOriginal; }
    /// Whether Value differs from ValueSaved.
    bool ChangedSaved() { return currentValue() != m_valueSaved; }
    /// Whether the caption label reports changed data; CaptionToSave receives the caption when it
    /// differs from the label's tag, else "".
    Q_INVOKABLE bool ChangedCaption(QString &CaptionToSave) const;
    /// The decimals shown and kept; -1 for the regional number.
    qint16 Decimals() const { return m_decimals; }
    /// Sets Decimals (-1..16, others ignored) and rounds the value to it.
    void setDecimals(qint16 decimals);
    /// The decimals actually in use (Decimals, or the regional number for -1).
    qint16 DecimalsInUse() const { return m_decimalsInUse; }
    /// Whether caption and field are bold.
    bool FontBold() const { return Label1->FontBold(); }
    /// Sets FontBold.
    void setFontBold(bool bold);
    /// Whether the resting display groups thousands.
    bool GroupDigits() const { return m_groupDigits; }
    /// Sets GroupDigits.
    void setGroupDigits(bool group);
    /// The largest value the field keeps.
    double MaxValue() const { return m_maxValue; }
    /// Sets MaxValue (rounded to the decimals); MinValue follows when it was above.
    void setMaxValue(double value);
    /// The smallest value the field keeps.
    double MinValue() const { return m_minValue; }
    /// Sets MinValue (rounded to the decimals); MaxValue follows when it was below.
    void setMinValue(double value);
    /// The step of the spinner and of the Up and Down keys.
    double UpDownChange() const { return m_upDownChange; }
    /// Sets the step.
    void setUpDownChange(double step);
    /// False when the field is mandatory and 0, or out of range; with ShowMessage a message box says why.
    Q_INVOKABLE bool Valid(bool ShowMessage = false);
    /// Always a Double.
    Variant Value() { return currentValue(); }
    /// Ignores anything that is not numeric; never clamps and raises nothing.
    void setValue(const Variant &value);
    /// Value for Qt's property system: a double.
    QVariant plainValue() { return currentValue(); }
    /// Sets Value from a plain QVariant (a number, text, a Variant); other types are ignored.
    void setPlainValue(const QVariant &value);
    /// The reference for Changed; moved by setValue and on entry.
    double ValueOriginal() const { return m_valueOriginal; }
    /// Sets the reference for Changed.
    void setValueOriginal(double value) { if (std::isfinite(value)) m_valueOriginal = value; }
    /// The reference for ChangedSaved.
    double ValueSaved() const { return m_valueSaved; }
    /// Sets the reference for ChangedSaved (after the host stored the record).
    void setValueSaved(double value) { if (std::isfinite(value)) m_valueSaved = value; }

signals:
    /// Only a step of the spinner or of the Up/Down keys that moved the value.
    void Change();
    /// Value moved, by code, a step or a committed entry (Qt's notification; Change keeps its own rules).
    void ValueChanged();

protected:
    void step(int direction) override { stepValue(direction * m_upDownChange); }
    bool arrowsStep() const override { return m_upDown; }
    void keyDown(int &keyCode) override;
    QVariant accessibleValue() const override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onEnterFocus() override;
    void onExitFocus() override;
    void onChildKeyPress(Child *, int &keyAscii) override { keyPress(keyAscii); }
    void onChildGotFocus(Child *) override { gotFocus(); }
    void onChildMouseDown(Child *, int, int, double, double) override { m_textDirty = true; }

private:
    double currentValue();
    QString displayText(double v, bool group) const;
    QString editText(double v) const;
    double parseField() const;
    double clamped(double v) const;
    void commitText();
    void stepValue(double delta);
    void showSignColour();
    void showValue(bool group);
    void notifyValue();

    void keyPress(int &keyAscii);
    void gotFocus();

    qint16 m_decimals = -1;
    qint16 m_decimalsInUse = 0;
    QChar m_decimalChar;
    bool m_groupDigits = true;
    double m_minValue = -9999999999.0;
    double m_maxValue = 9999999999.0;
    double m_upDownChange = 1;
    double m_value = 0;
    // What code gave, unrounded, so that a later Decimals rounds it as if it came first.
    double m_minGiven = -9999999999.0;
    double m_maxGiven = 9999999999.0;
    Variant m_valueGiven = 0.0;
    double m_valueOriginal = 0;
    double m_valueSaved = 0;
    bool m_keypadDecimal = false;
    // While a bag is read, Value comes after Decimals and shows the text once; what Decimals
    // would have shown is held until then (with the grouping of that moment).
    bool m_readingBag = false;
    bool m_holdDisplay = false;
    bool m_displayHeld = false;
    bool m_heldGroup = true;
    PropertyWatch m_valueWatch;
};

} // namespace kel
