#pragma once
#include "../platform/services.h"

namespace kel {

// Message box and beep on Qt Widgets, the real clock.
class QtServices : public Services
{
public:
    int MsgBox(const QString &prompt, int style, const QString &title) override;
    void Beep() override;
    float Timer() override;
    QDate Today() override;
    QDateTime Now() override;
};

void installQtServicesIfNone();

} // namespace kel
