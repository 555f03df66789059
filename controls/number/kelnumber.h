#pragma once
// A Double in one text box: grouped with fixed decimals and red parentheses for negatives while
// the field rests, plain while it is edited, typed through a key filter that admits only what can
// make a number, stepped by an optional spinner or the Up and Down keys, kept in MinValue..MaxValue.
#include "common/spinfield.h"
#include "platform/kelexport.h"

namespace kel {

class KEL_EXPORT KelNumber : public SpinField
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved)
    Q_PROPERTY(qint16 Decimals READ Decimals WRITE setDecimals)
    Q_PROPERTY(bool FontBold READ FontBold WRITE setFontBold)
    Q_PROPERTY(bool GroupDigits READ GroupDigits WRITE setGroupDigits)
    Q_PROPERTY(double MaxValue READ MaxValue WRITE setMaxValue)
    Q_PROPERTY(double MinValue READ MinValue WRITE setMinValue)
    Q_PROPERTY(double UpDownChange READ UpDownChange WRITE setUpDownChange)
    Q_PROPERTY(kel::Variant Value READ Value WRITE setValue USER true)
    Q_PROPERTY(double ValueOriginal READ ValueOriginal WRITE setValueOriginal)
    Q_PROPERTY(double ValueSaved READ ValueSaved WRITE setValueSaved)

public:
    explicit KelNumber(QWidget *parent = nullptr);

    // Reading the value commits what the user typed first, so these are not const.
    bool Changed() { return currentValue() != m_valueOriginal; }
    bool ChangedSaved() { return currentValue() != m_valueSaved; }
    Q_INVOKABLE bool ChangedCaption(QString &CaptionToSave) const;
    qint16 Decimals() const { return m_decimals; }
    void setDecimals(qint16 decimals);
    qint16 DecimalsInUse() const { return m_decimalsInUse; }
    bool FontBold() const { return Label1->FontBold(); }
    void setFontBold(bool bold);
    bool GroupDigits() const { return m_groupDigits; }
    void setGroupDigits(bool group);
    double MaxValue() const { return m_maxValue; }
    void setMaxValue(double value);
    double MinValue() const { return m_minValue; }
    void setMinValue(double value);
    double UpDownChange() const { return m_upDownChange; }
    void setUpDownChange(double step);
    Q_INVOKABLE bool Valid(bool ShowMessage = false);
    // Always a Double.
    Variant Value() { return currentValue(); }
    // Ignores anything that is not numeric; never clamps and raises nothing.
    void setValue(const Variant &value);
    double ValueOriginal() const { return m_valueOriginal; }
    void setValueOriginal(double value) { m_valueOriginal = value; }
    double ValueSaved() const { return m_valueSaved; }
    void setValueSaved(double value) { m_valueSaved = value; }

signals:
    // Only a step of the spinner or of the Up/Down keys that moved the value.
    void Change();

protected:
    void step(int direction) override { stepValue(direction * m_upDownChange); }
    bool arrowsStep() const override { return m_upDown; }
    void keyDown(int &keyCode) override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onEnterFocus() override;
    void onExitFocus() override;

private:
    double currentValue();
    QString displayText(double v, bool group) const;
    QString editText(double v) const;
    double parseField() const;
    double clamped(double v) const;
    void commitText();
    void stepValue(double delta);
    void showSignColour();

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
    double m_valueOriginal = 0;
    double m_valueSaved = 0;
    bool m_keypadDecimal = false;
};

} // namespace kel
