#include "platform/services.h"

namespace kel {

namespace {

class QuietServices : public Services
{
public:
    int MsgBox(const QString &, int, const QString &) override { return 1; }
    void Beep() override {}
    float Timer() override { return float(QTime(0, 0).msecsTo(QTime::currentTime())) / 1000.0f; }
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

} // namespace kel
