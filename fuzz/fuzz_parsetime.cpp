// Typed text read as a time: no crash, no hang, a time of day or Null (a date only when the text
// carries one, and then in range).
#include "platform/dayserial.h"
#include "runtime/kelruntime8.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    static const QLocale locales[] = {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany)};
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    const kel::Variant v = kel::KelRuntimeDates(locales[data[0] % 2]).ParseTime(text);
    if (v.isNull())
        return 0;
    const kel::Date *d = v.get<kel::Date>();
    if (!d || !kel::isValidDaySerial(d->serial))
        std::abort();
    return 0;
}
