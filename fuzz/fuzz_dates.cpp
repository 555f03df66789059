// Calendar arithmetic on any numbers stays in range or fails cleanly.
#include "platform/dayserial.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 3 * sizeof(int) + 2 * sizeof(double) + 1)
        return 0;
    int y, m, d;
    double n, serial;
    std::memcpy(&y, data, sizeof y);
    std::memcpy(&m, data + 4, sizeof m);
    std::memcpy(&d, data + 8, sizeof d);
    std::memcpy(&n, data + 12, sizeof n);
    std::memcpy(&serial, data + 20, sizeof serial);
    const auto check = [](std::optional<double> r) {
        if (r && (!std::isfinite(*r) || !kel::isValidDaySerial(*r)))
            std::abort();
    };
    check(kel::DateSerial(y, m, d));
    (void)kel::TimeSerial(y, m, d);
    const auto interval = static_cast<kel::DateInterval>(data[28] % 8);
    check(kel::DateAdd(interval, n, serial));
    if (kel::isValidDaySerial(serial)) {
        (void)kel::splitDaySerial(serial);
        (void)kel::Weekday(serial);
        (void)kel::LastDayOfMonth(serial);
    }
    return 0;
}
