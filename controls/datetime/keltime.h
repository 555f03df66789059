#pragma once
// A time of day typed in free form, read by the run-time object's time parser and shown in
// Format; the Up and Down keys, "+" and "-" and the spinner step the hour, minute or second
// under the caret. Never wraps past midnight.
#include "datetimefield.h"

#include <cmath>

namespace kel {

class KEL_EXPORT KelTime : public DateTimeField
{
    Q_OBJECT

public:
    /// A new control, a child of parent; the container sets its properties next.
    explicit KelTime(QWidget *parent = nullptr);

    /// Minutes written with the month letter right after an hour ("hh:mm") are read as minutes
    /// ("hh:nn"); stored even when empty. The text is shown again in the new format.
    void setFormat(const QString &format) override;
    /// Sets MaxValue from a Date or a QDateTime as well.
    using DateTimeField::setMaxValue;
    /// Sets MinValue from a Date or a QDateTime as well.
    using DateTimeField::setMinValue;
    /// A bound as a time of day; an invalid one is ignored.
    void setMaxValue(QTime value);
    /// Sets MinValue.
    void setMinValue(QTime value);
    /// MaxValue as a QTime, the Qt property's type.
    QTime maxTime() const { return maxDateTime().time(); }
    /// MinValue as a QTime, the Qt property's type.
    QTime minTime() const { return minDateTime().time(); }

protected:
    Wording wording() const override;
    QtDateForm dateForm() const override { return QtDateForm::Time; }
    std::optional<double> parse(const QString &text) const override;
    // Only the time of day counts: bounds and values given as date-times lose their date.
    double normalised(double serial) const override
    {
        // A tiny negative serial leaves 1.0 after the subtraction: that is midnight, not 24:00.
        const double t = serial - std::floor(serial);
        return t < 1.0 ? t : 0.0;
    }
    // Whole seconds: a bound a split second before midnight would read back as midnight.
    double bound(double serial) const override;
    bool accepts(int keyAscii) const override;
    bool nullAlwaysValidWhenOptional() const override { return true; }
    Variant persistedValue() const override;
    void step(int direction) override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
};

} // namespace kel
