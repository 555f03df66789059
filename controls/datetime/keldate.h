#pragma once
// A date typed in free form, read by the run-time object's date parser and shown in Format;
// the Up and Down keys, "+" and "-" and the spinner step the day, month or year under the caret.
#include "datetimefield.h"

#include <cmath>

namespace kel {

class KEL_EXPORT KelDate : public DateTimeField
{
    Q_OBJECT
    Q_PROPERTY(KelDateDaysFlag DaysFlag READ DaysFlag WRITE setDaysFlag)

public:
    /// How the field pins the day, and whether it holds a date of birth.
    enum KelDateDaysFlag : qint32 { Allow = 0, FirstDay = 1, LastDay = 2, BirthDay = 3 };
    Q_ENUM(KelDateDaysFlag)

    /// A new control, a child of parent; the container sets its properties next.
    explicit KelDate(QWidget *parent = nullptr);

    /// A KelDateDaysFlag; other numbers are ignored. It pins the date at the next commit or step.
    KelDateDaysFlag DaysFlag() const { return m_daysFlag; }
    /// Sets DaysFlag.
    void setDaysFlag(qint32 flag);
    /// An empty format is ignored; otherwise the text is shown again in the new one.
    void setFormat(const QString &format) override;

protected:
    Wording wording() const override;
    QtDateForm dateForm() const override { return QtDateForm::Date; }
    std::optional<double> parse(const QString &text) const override;
    // A time of day is kept exactly when Format shows one, whatever gave the value; otherwise the
    // date is that day. (Whole days count towards zero: before 30 December 1899 the fraction is
    // still the time.)
    double normalised(double serial) const override { return showsTime() ? serial : std::trunc(serial); }
    double entered(double serial) const override { return normalised(serial); }
    double pinned(double serial) const override;
    // Only Backspace and Escape: a paste or a copy takes the character after the caret too.
    bool controlCharacterPasses(int keyAscii) const override { return keyAscii == 8 || keyAscii == 27; }
    Variant persistedValue() const override;
    void step(int direction) override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;

private:
    bool showsTime() const;
    std::optional<double> parseIn(const QString &text, const QString &format, bool birthday) const;

    KelDateDaysFlag m_daysFlag = Allow;
    mutable QString m_showsTimeFor; // the Format m_showsTime was worked out for
    mutable bool m_showsTime = false;
};

} // namespace kel
