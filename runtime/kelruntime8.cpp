#include "runtime/kelruntime8.h"

#include "forms/child.h"
#include "platform/format.h"

#include <QApplication>
#include <QScreen>
#include <cmath>

namespace kel {

KelRuntime8::KelRuntime8(QObject *parent)
{
    setParent(parent);
}

int KelRuntime8::ColourDepth()
{
    if (m_depth)
        return *m_depth;
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->depth() : 24;
}

QString KelRuntime8::DecimalSeparator() { return locale().decimalPoint(); }

// QLocale has no "digits after the decimal" setting; two is the common regional default.
qint16 KelRuntime8::DecimalDigits() { return m_digits.value_or(2); }

static FontSpec applicationFont()
{
    const QFont f = QApplication::font();
    return {f.family(), f.pointSizeF() > 0 ? f.pointSizeF() : 9.0};
}

FontSpec KelRuntime8::CaptionFont() { return m_captionFont.value_or(applicationFont()); }
FontSpec KelRuntime8::FieldFont() { return m_fieldFont.value_or(applicationFont()); }

void KelRuntime8::SendKey(int virtualKey)
{
    if (virtualKey != 9)
        throw RuntimeError("SendKey: only the Tab key (9) is supported");
    sendTabKey(); // a real Tab keystroke, so the form moves on exactly as for the user's Tab
}

std::shared_ptr<IRuntimeDates> KelRuntime8::RuntimeDates()
{
    return std::make_shared<KelRuntimeDates>(locale());
}

QString KelRuntime8::ListAppend(const QString &list, const QString &item)
{
    QString quoted = item;
    // A lone empty first item is quoted so that it is not read back as an empty list.
    if (item.contains(u',') || item.contains(u'"') || (item.isEmpty() && list.isEmpty()))
        quoted = u'"' + QString(item).replace(QStringLiteral("\""), QStringLiteral("\"\"")) + u'"';
    return list.isEmpty() ? quoted : list + u',' + quoted;
}

QString KelRuntime8::ReadField(const QString &text, qint32 &position, int separatorCode)
{
    if (text.isEmpty() || position < 0 || position > text.size()) {
        position = -1;
        return {};
    }
    const QChar sep(separatorCode);
    bool quoted = false;
    qsizetype end = position;
    for (; end < text.size(); ++end) {
        if (text[end] == u'"')
            quoted = !quoted;
        else if (text[end] == sep && !quoted)
            break;
    }
    QString field = text.mid(position, end - position);
    if (field.startsWith(u'"'))
        field.remove(0, 1);
    if (field.endsWith(u'"'))
        field.chop(1);
    field.replace(QStringLiteral("\"\""), QStringLiteral("\""));
    position = qint32(end + 1);
    return field;
}

Variant KelRuntimeDates::ParseDate(const QString &, const QString &, const Variant &, bool)
{
    throw RuntimeError("ParseDate: not implemented yet");
}

Date KelRuntimeDates::LastDayOfMonth(Date)
{
    throw RuntimeError("LastDayOfMonth: not implemented yet");
}

Variant KelRuntimeDates::ParseTime(const QString &)
{
    throw RuntimeError("ParseTime: not implemented yet");
}

double KelRuntimeDates::NumberFromValue(const Variant &value, qint16 decimals)
{
    double v = 0;
    if (const QString *text = value.get<QString>()) {
        const QString dec = m_locale.decimalPoint(), grp = m_locale.groupSeparator();
        // Not a number (letters, a second separator): 0, never a guess.
        if (!text->trimmed().isEmpty()
            && !parseClassicNumber(*text, dec.isEmpty() ? QChar(u'.') : dec[0], grp.isEmpty() ? QChar(u',') : grp[0], &v))
            v = 0;
    } else {
        bool ok = false;
        v = value.toDouble(&ok);
        if (!ok)
            v = 0;
    }
    return RoundNumber(v, decimals);
}

double KelRuntimeDates::RoundNumber(double number, qint16 decimals)
{
    if (!std::isfinite(number))
        return 0;
    int places = qBound<int>(0, decimals, 16);
    // Never keep more than the 15 significant digits the forms can show, so the stored value is
    // the shown one.
    if (number != 0) {
        const int magnitude = int(std::floor(std::log10(std::fabs(number)))) + 1;
        places = qMax(0, qMin(places, 15 - magnitude));
    }
    return RoundDecimal(number, places, RoundMode::HalfAwayFromZero);
}

} // namespace kel
