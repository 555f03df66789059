#pragma once
/// \file
/// The default run-time object: regional settings from QLocale, colour depth from the screen,
/// fonts from the application font. Every setting can be overridden by hosts and tests.
#include "../library/runtimeinterface.h"
#include "../platform/kelexport.h"

#include <QLocale>
#include <optional>

namespace kel {

/// The run-time object the library makes when the host hands none; hosts and tests may
/// also create one, adjust it and hand it over with KelControlHandler::SetRuntime.
class KEL_EXPORT KelRuntime8 : public IKelRuntime
{
public:
    /// Answers from the system until a setting is overridden.
    explicit KelRuntime8(QObject *parent = nullptr);

    /// The screen's depth, or the overridden one.
    int ColourDepth() override;
    /// The locale's decimal point.
    QString DecimalSeparator() override;
    /// 2 unless overridden.
    qint16 DecimalDigits() override;
    /// The regional settings in use, as locale() gives them.
    QLocale Locale() override { return locale(); }
    /// The application font unless overridden.
    FontSpec CaptionFont() override;
    /// The application font unless overridden.
    FontSpec FieldFont() override;
    /// 9 moves the focus on from the focus widget as Tab does.
    void SendKey(int virtualKey) override;
    /// Services on this object's locale.
    std::shared_ptr<IRuntimeDates> RuntimeDates() override;
    /// Appends `item` to a comma-separated list, quoting as needed.
    QString ListAppend(QString list, const QString &item) override;
    /// Reads the next field (separated by `separatorCode`, quotes allowed) from `position`.
    QString ReadField(const QString &text, qint32 &position, int separatorCode) override;

    /// Overrides (unset: the system's own).
    void setLocale(const QLocale &locale) { m_locale = locale; }
    /// The regional settings in use.
    QLocale locale() const { return m_locale.value_or(QLocale()); }
    /// Overrides the display's colour depth.
    void setColourDepth(int bits) { m_depth = bits; }
    /// Overrides the regional decimals.
    void setDecimalDigits(qint16 digits) { m_digits = digits; }
    /// Overrides the caption font.
    void setCaptionFont(const FontSpec &f) { m_captionFont = f; }
    /// Overrides the field font.
    void setFieldFont(const FontSpec &f) { m_fieldFont = f; }

private:
    std::optional<QLocale> m_locale;
    std::optional<int> m_depth;
    std::optional<qint16> m_digits;
    std::optional<FontSpec> m_captionFont, m_fieldFont;
};

/// The number services of the default run-time object, on the given locale's separators.
class KEL_EXPORT KelRuntimeDates : public IRuntimeDates
{
public:
    /// Services reading numbers with the separators of `locale`.
    explicit KelRuntimeDates(const QLocale &locale) : m_locale(locale) {}
    Variant ParseDate(const QString &text, const QString &format, const Variant &defaultDate, bool birthday) override;
    /// The last day of the date's month.
    Date LastDayOfMonth(Date date) override;
    Variant ParseTime(const QString &text) override;
    double NumberFromValue(const Variant &value, qint16 decimals) override;
    /// Rounds half away from zero.
    double RoundNumber(double number, qint16 decimals) override;

private:
    QLocale m_locale;
};

} // namespace kel
