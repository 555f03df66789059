#pragma once
// The default run-time object: regional settings from QLocale, colour depth from the screen,
// fonts from the application font. Every setting can be overridden by hosts and tests.
#include "platform/kelexport.h"
#include "library/runtimeinterface.h"

#include <QLocale>
#include <optional>

namespace kel {

class KEL_EXPORT KelRuntime8 : public IKelRuntime
{
public:
    explicit KelRuntime8(QObject *parent = nullptr);

    int ColourDepth() override;
    QString DecimalSeparator() override;
    qint16 DecimalDigits() override;
    QLocale Locale() override { return locale(); }
    FontSpec CaptionFont() override;
    FontSpec FieldFont() override;
    void SendKey(int virtualKey) override;
    std::shared_ptr<IRuntimeDates> RuntimeDates() override;
    QString ListAppend(const QString &list, const QString &item) override;
    QString ReadField(const QString &text, qint32 &position, int separatorCode) override;

    // Overrides (unset: the system's own).
    void setLocale(const QLocale &locale) { m_locale = locale; }
    QLocale locale() const { return m_locale.value_or(QLocale()); }
    void setColourDepth(int bits) { m_depth = bits; }
    void setDecimalDigits(qint16 digits) { m_digits = digits; }
    void setCaptionFont(const FontSpec &f) { m_captionFont = f; }
    void setFieldFont(const FontSpec &f) { m_fieldFont = f; }

private:
    std::optional<QLocale> m_locale;
    std::optional<int> m_depth;
    std::optional<qint16> m_digits;
    std::optional<FontSpec> m_captionFont, m_fieldFont;
};

// The number services of the default run-time object, on the given locale's separators.
class KEL_EXPORT KelRuntimeDates : public IRuntimeDates
{
public:
    explicit KelRuntimeDates(const QLocale &locale) : m_locale(locale) {}
    Variant ParseDate(const QString &text, const QString &format, const Variant &defaultDate, bool birthday) override;
    Date LastDayOfMonth(Date date) override;
    Variant ParseTime(const QString &text) override;
    double NumberFromValue(const Variant &value, qint16 decimals) override;
    double RoundNumber(double number, qint16 decimals) override;

private:
    QLocale m_locale;
};

} // namespace kel
