#include "platform/services.h"

#include <ctime>

namespace kel {

namespace {

class QuietServices : public Services
{
public:
    int MsgBox(const QString &, int, const QString &) override { return 1; }
    void Beep() override {}
    float Timer() override { return secondsSinceMidnight(); }
    QDate Today() override { return QDate::currentDate(); }
    QDateTime Now() override { return QDateTime::currentDateTime(); }
};

std::unique_ptr<Services> &slot()
{
    static std::unique_ptr<Services> s;
    return s;
}

} // namespace

Services &services()
{
    static QuietServices quiet;
    return slot() ? *slot() : static_cast<Services &>(quiet);
}

std::unique_ptr<Services> setServices(std::unique_ptr<Services> s)
{
    std::swap(slot(), s);
    return s;
}

bool hasInstalledServices() { return slot() != nullptr; }

float secondsSinceMidnight()
{
    timespec ts{};
    clock_gettime(CLOCK_REALTIME_COARSE, &ts);
    // The local offset is asked again at every quarter hour, where daylight saving turns.
    static qint64 validUntil = -1;
    static qint64 offset = 0;
    if (ts.tv_sec >= validUntil) {
        offset = QDateTime::fromSecsSinceEpoch(ts.tv_sec).offsetFromUtc();
        validUntil = ts.tv_sec - ts.tv_sec % 900 + 900;
    }
    const qint64 local = ts.tv_sec + offset;
    const qint64 day = ((local % 86400) + 86400) % 86400;
    return float(double(day) + ts.tv_nsec / 1e9);
}

} // namespace kel
