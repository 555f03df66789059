// Format patterns of any shape, for numbers and dates.
#include "platform/dayserial.h"
#include "platform/format.h"
#include "platform/variant.h"

#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < sizeof(double))
        return 0;
    double v;
    std::memcpy(&v, data, sizeof v);
    const QString pattern = QString::fromUtf8(reinterpret_cast<const char *>(data + sizeof v), qsizetype(size - sizeof v));
    const QLocale locale(QLocale::English, QLocale::UnitedStates);
    (void)kel::FormatNumber(v, pattern, locale);
    (void)kel::FormatVariant(kel::Variant(v), pattern, locale);
    (void)kel::GeneralNumber(v, locale);
    (void)kel::RoundDecimal(v, int(size % 20), kel::RoundMode::HalfEven);
    if (kel::isValidDaySerial(v))
        (void)kel::FormatDate(v, pattern, locale);
    return 0;
}
