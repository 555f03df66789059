// Text read as a number: the classic numeric test and the run-time conversion of a field's text.
#include "platform/format.h"
#include "runtime/kelruntime8.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    const int decimals = data[0] % 18 - 1; // -1 .. 16, as the field allows
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    double v = 0;
    const bool numeric = kel::parseClassicNumber(text, u'.', u',', &v);
    if (numeric && !std::isfinite(v))
        std::abort();
    kel::KelRuntimeDates dates(QLocale(QLocale::English, QLocale::UnitedStates));
    const double n = dates.NumberFromValue(kel::Variant(text), qint16(decimals));
    if (!std::isfinite(n) || (!numeric && n != 0))
        std::abort(); // junk converts to 0, never to a guess
    // What the display form shows must read back as the value it shows (a double of more than
    // 15 significant digits is shown, and so read back, at 15).
    if (decimals >= 0 && std::fabs(n) < 1e15) {
        const QLocale us(QLocale::English, QLocale::UnitedStates);
        const QString shown = kel::FormatNumberRegional(n, decimals, true, true, true, us);
        const double back = dates.NumberFromValue(kel::Variant(shown), qint16(decimals));
        if (kel::FormatNumberRegional(back, decimals, true, true, true, us) != shown)
            std::abort();
    }
    return 0;
}
