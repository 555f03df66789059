#pragma once
// Shared test set-up: a recording Services double and a fixed default run-time object.
#include "library/librarysettings.h"
#include "platform/services.h"
#include "runtime/kelruntime8.h"

#include <QLocale>
#include <QTest>
#include <QWidget>

namespace kel {

// Lets QCOMPARE show a Variant, also inside the lists of pairs a property bag holds.
inline char *toString(const Variant &v) { return qstrdup(qPrintable(v.debugString())); }

} // namespace kel

namespace kel::test {

// Installs RecordingServices and returns it (owned by the services slot).
inline RecordingServices *recordServices()
{
    auto rec = std::make_unique<RecordingServices>();
    RecordingServices *raw = rec.get();
    setServices(std::move(rec));
    return raw;
}

// A run-time object with English (US) regional settings and a full-colour display, adopted as
// the library's; the controls then behave the same on every machine.
inline std::shared_ptr<KelRuntime8> useRuntime(int colourDepth = 24, qint16 digits = 2,
                                               const QLocale &locale = QLocale(QLocale::English, QLocale::UnitedStates))
{
    auto rt = std::make_shared<KelRuntime8>();
    rt->setLocale(locale);
    rt->setColourDepth(colourDepth);
    rt->setDecimalDigits(digits);
    adoptRuntime(rt);
    return rt;
}

// A shown, active window holding two controls, one under the other, so that Tab and Enter have
// somewhere to go.
template<class Control>
struct TwoFieldForm {
    QWidget window;
    Control *first = new Control(&window);
    Control *second = new Control(&window);
    TwoFieldForm()
    {
        first->setGeometry(0, 0, 300, 20);
        second->setGeometry(0, 40, 300, 20);
        window.resize(320, 100);
        window.show();
        window.activateWindow();
    }
    bool ready() { return QTest::qWaitForWindowActive(&window); }
};

} // namespace kel::test
