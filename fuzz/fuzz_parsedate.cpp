// Typed text read as a date under any format: no crash, no hang, and every date lies between
// 1 January 100 and 31 December 9999.
#include "platform/dayserial.h"
#include "platform/format.h"
#include "runtime/kelruntime8.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 3)
        return 0;
    static const QLocale locales[] = {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany),
                                      QLocale(QLocale::French, QLocale::France)};
    const QLocale &locale = locales[data[0] % 3];
    const bool birthday = data[0] & 0x80;
    // The default date anywhere in range, or Empty (today).
    const kel::Variant defaultDate = data[1] == 0 ? kel::Variant()
            : kel::Variant(kel::Date{kel::kMinDaySerial + std::fmod(data[1] * 37813.0, kel::kMaxDaySerial - kel::kMinDaySerial)});
    const size_t formatLength = std::min<size_t>(data[2], size - 3);
    const auto *bytes = reinterpret_cast<const char *>(data + 3);
    const QString format = QString::fromUtf8(bytes, qsizetype(formatLength));
    const QString text = QString::fromUtf8(bytes + formatLength, qsizetype(size - 3 - formatLength));

    kel::KelRuntimeDates dates(locale);
    const auto check = [](const kel::Variant &v) {
        if (v.isNull())
            return;
        const kel::Date *d = v.get<kel::Date>();
        if (!d || !kel::isValidDaySerial(d->serial))
            std::abort();
    };
    const kel::Variant v = dates.ParseDate(text, format, defaultDate, birthday);
    check(v);
    // What the field then shows must read back.
    if (const kel::Date *d = v.get<kel::Date>()) {
        const QString shown = kel::FormatDate(d->serial, format, locale);
        check(dates.ParseDate(shown, format, defaultDate, birthday));
        const kel::Date last = dates.LastDayOfMonth(*d);
        if (!kel::isValidDaySerial(last.serial))
            std::abort();
    }
    return 0;
}
