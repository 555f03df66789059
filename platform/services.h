#pragma once
/// \file
/// The platform services the controls use, injectable so tests can capture and fix them.
#include "kelexport.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <memory>

namespace kel {

/// What the controls need of the system: message box, beep, clock. Replaceable (tests do).
class KEL_EXPORT Services
{
public:
    virtual ~Services() = default;
    /// Modal message box; style 64 is the information icon with an OK button. Returns the button.
    virtual int MsgBox(const QString &prompt, int style, const QString &title) = 0;
    /// The system beep.
    virtual void Beep() = 0;
    /// Seconds since midnight, in single precision like the classic timer.
    virtual float Timer() = 0;
    /// Today's date.
    virtual QDate Today() = 0;
    /// The local date and time.
    virtual QDateTime Now() = 0;
};

/// The installed services. Until something is installed, a quiet default answers (no box, no
/// sound, the real clock); forms/ installs the Qt one when the first control is created.
KEL_EXPORT Services &services();
/// Installs s (taking ownership); returns the previous one.
KEL_EXPORT std::unique_ptr<Services> setServices(std::unique_ptr<Services> s);
/// Whether setServices has installed anything.
KEL_EXPORT bool hasInstalledServices();

// The local seconds since midnight from a coarse system clock (a few milliseconds of
// resolution), cheap enough to be read on every call of a hot path.
float secondsSinceMidnight();

// A test double: records message boxes and beeps, and lets a test set the clock and the date.
/// A test double: records message boxes and beeps, and lets a test set the clock and the date.
class KEL_EXPORT RecordingServices : public Services
{
public:
    /// One message box shown.
    struct Box { QString prompt; int style; QString title; };
    int MsgBox(const QString &prompt, int style, const QString &title) override
    {
        boxes.push_back({prompt, style, title});
        return 1;
    }
    /// Counts the beep.
    void Beep() override { ++beeps; }
    float Timer() override { return timer; }
    /// The date of `now`.
    QDate Today() override { return now.date(); }
    /// `now`.
    QDateTime Now() override { return now; }

    /// Every message box, in order.
    std::vector<Box> boxes;
    /// How many beeps.
    int beeps = 0;
    /// What Timer() answers.
    float timer = 0.0f;
    /// What Now() and Today() answer.
    QDateTime now = QDateTime(QDate(2024, 1, 15), QTime(10, 30, 0));
};

} // namespace kel
