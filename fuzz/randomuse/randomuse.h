#pragma once
// Random use of every control the factory makes: seeded event lists, a runner that checks the
// controls' invariants after each event, and a shrinker that cuts a failing list down.
#include "platform/variant.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <vector>

namespace kel::randomuse {

struct Options {
    // An event (for typed text, each key) taking longer than this fails as "slow"; the watchdog
    // aborts after hangSeconds.
    int slowMs = 10000;
    int hangSeconds = 120;
    // One more invariant, checked after every event: a message when it fails.
    std::function<QString(QObject *control)> extraCheck;
};

struct Event {
    enum Kind {
        Key, Type, Paste, Click, RightClick, DoubleClick, FocusField, FocusOther, SwitchWindow,
        SwitchBack, SetProperty, Dispatch, Method, SaveLoad, Reload, Resize
    };
    Kind kind = Key;
    int key = 0;                 // Qt::Key; for clicks the x,y fraction in per mille (x in key)
    int mods = 0;                // Qt::KeyboardModifiers; for clicks y; for focus the reason
    int extra = 0;               // menu action, dispatch id, resize mode
    QString name;                // child, property, member or method
    QString text;                // typed or pasted text, key text
    QVariant value;              // setProperty value
    std::vector<Variant> args;   // dispatch or method arguments
    bool refocus = false;        // typing: first put the focus back into the field, as a user would
    QString describe() const;
};

struct Failure {
    int index = -1;    // event index, -1 for none
    QString check;     // which invariant
    QString message;
    bool failed() const { return index >= 0; }
};

// Classes of the factory that are controls (widgets), in factory order.
QStringList controlClasses();

// The same seed gives the same list on every run.
std::vector<Event> generate(const QString &className, quint64 seed, int count);

// Runs the events on a fresh shown form; stops at the first failed invariant. `from` only
// numbers the events (for lists that continue an earlier run).
Failure run(const QString &className, const std::vector<Event> &events, const Options &options, int from = 0);

// The shortest sub-list found within the time budget that still fails the same check.
std::vector<Event> shrink(const QString &className, std::vector<Event> events, const Failure &failure,
                          const Options &options, int budgetSeconds);

// Seed, event index, check, message and the shrunk list, ready to print.
QString report(const QString &className, quint64 seed, const Failure &failure, const std::vector<Event> &shrunk);

// For crash reports from signal handlers: where the runner is (seed, class, event).
void setPosition(quint64 seed, const QString &className);
void installCrashReporter();

} // namespace kel::randomuse
