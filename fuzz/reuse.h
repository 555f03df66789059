#pragma once
// One control per class for the whole run, reset before every input to what a new one shows, so
// a target runs at the speed of its parser rather than of widget construction, and what it finds
// still reproduces from one input in a fresh process. KEL_FUZZ_FRESH=1 builds a new control for
// every input instead, to rule the reuse out when a finding does not reproduce alone.
#include "library/librarysettings.h"
#include "platform/services.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QMetaProperty>
#include <functional>
#include <memory>
#include <vector>

namespace kel::fuzz {

// The application, a fixed run-time object, and quiet services on a fixed clock.
inline void startApplication(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(*argc, *argv);
    auto rt = std::make_shared<KelRuntime8>();
    rt->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    rt->setColourDepth(24);
    adoptRuntime(rt);
    setServices(std::make_unique<RecordingServices>());
}

// The properties the library declares, and the two of QWidget's that the fields follow.
inline std::vector<QMetaProperty> ownProperties(const QMetaObject *mo)
{
    const QMetaObject *base = mo;
    while (base->superClass() && QByteArray(base->superClass()->className()).startsWith("kel::"))
        base = base->superClass();
    std::vector<QMetaProperty> out;
    for (const char *name : {"enabled", "toolTip"})
        out.push_back(mo->property(mo->indexOfProperty(name)));
    for (int i = base->propertyOffset(); i < mo->propertyCount(); ++i)
        if (mo->indexOfProperty(mo->property(i).name()) == i) // not shadowed by a subclass
            out.push_back(mo->property(i));
    return out;
}

// What a host can write, with what the control reads from it.
struct Snapshot {
    std::vector<std::pair<QMetaProperty, QVariant>> values;
    static Snapshot of(const QObject &o)
    {
        Snapshot s;
        for (const QMetaProperty &p : ownProperties(o.metaObject()))
            if (p.isWritable())
                s.values.emplace_back(p, p.read(&o));
        return s;
    }
    bool operator==(const Snapshot &other) const
    {
        if (values.size() != other.values.size())
            return false;
        for (size_t i = 0; i < values.size(); ++i)
            if (values[i].second != other.values[i].second)
                return false;
        return true;
    }
};

template<class Control>
class Reused
{
public:
    using Creator = std::function<std::unique_ptr<Control>()>;
    explicit Reused(Creator create = [] { return std::make_unique<Control>(); }) : m_create(std::move(create)) {}

    // A control that shows nothing of earlier inputs.
    Control &fresh()
    {
        static const bool alwaysNew = qEnvironmentVariableIntValue("KEL_FUZZ_FRESH") != 0;
        if (m_control && !alwaysNew) {
            // Twice, so that a setter that depends on another (Min before Value) sees it set; only
            // what differs, as some values (an Empty date) cannot be written back as they read.
            for (int pass = 0; pass < 2; ++pass)
                for (const auto &[p, v] : m_new.values)
                    if (p.read(m_control.get()) != v)
                        p.write(m_control.get(), v);
            if (Snapshot::of(*m_control) == m_new)
                return *m_control;
        }
        m_control.reset(); // the old one goes first: some state is library-wide
        m_control = m_create();
        m_new = Snapshot::of(*m_control);
        ++m_rebuilt;
        return *m_control;
    }
    // How often a reset fell short and a new control was built.
    int rebuilt() const { return m_rebuilt; }

private:
    Creator m_create;
    std::unique_ptr<Control> m_control;
    Snapshot m_new;
    int m_rebuilt = 0;
};

} // namespace kel::fuzz
