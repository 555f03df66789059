#pragma once
// The benchmark programs' shared set-up and ending: the CPU time of every benchmark (steadier than wall time on
// a busy machine; the median over repetitions, else the mean), and one line per comparison, ours divided by
// the Qt peer's. Under callgrind (scripts/perf) the measured loops also mark what is to be counted.
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>
#include <utility>
#include <valgrind/callgrind.h>
#include <vector>

namespace kel::bench {

// A shown window holding one field, and the field's text box for the keys.
template<class Field>
struct FieldForm {
    QWidget window;
    Field *field = new Field(&window);
    QLineEdit *text1 = field->template findChild<QLineEdit *>(QStringLiteral("Text1"));
    FieldForm()
    {
        field->setGeometry(0, 0, 300, 20);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

// Instruction counting: scripts/perf starts callgrind with collection off and runs one benchmark at a time.
// Collected are the bodies of the measured loop, less the paused stretches, after KEL_PERF_WARMUPS iterations
// (default 1) that fill the caches every first use fills (fonts, styles, lazily built statics). A form's second
// iteration still costs about 1% more than its third.
// Instrumentation starts off too (--instr-atstart=no) and comes on for good at the first collected stretch:
// start-up, set-up and the warm-ups run several times faster uninstrumented, and the count is the same.
namespace perf {
inline long warmUps()
{
    const int n = qEnvironmentVariableIntValue("KEL_PERF_WARMUPS");
    return n > 0 ? n : 1;
}
inline long measuredIterations = -warmUps();
inline bool collecting = false;
inline bool instrumented = false;

inline void collect(bool on)
{
    if (on == collecting)
        return;
    collecting = on;
    if (on && !instrumented) {
        instrumented = true;
        CALLGRIND_START_INSTRUMENTATION;
    }
    CALLGRIND_TOGGLE_COLLECT;
}
} // namespace perf

class MeasuredLoop
{
public:
    explicit MeasuredLoop(benchmark::State &state) : m_state(state) {}
    class Iterator
    {
    public:
        explicit Iterator(benchmark::State::StateIterator it) : m_it(it) {}
        auto operator*() const { return *m_it; }
        Iterator &operator++()
        {
            ++m_it;
            return *this;
        }
        bool operator!=(const Iterator &end)
        {
            perf::collect(false);
            if (!(m_it != end.m_it))
                return false;
            perf::collect(++perf::measuredIterations > 0);
            return true;
        }

    private:
        benchmark::State::StateIterator m_it;
    };
    Iterator begin() { return Iterator(m_state.begin()); }
    Iterator end() { return Iterator(m_state.end()); }

private:
    benchmark::State &m_state;
};

// A loop's count: `natively`, or a tenth of it under callgrind, where each pass costs what a
// hundred do natively (the ratio does not depend on the count; scripts/perf stays quick).
inline int loopCount(int natively) { return RUNNING_ON_VALGRIND ? natively / 10 : natively; }

// for (auto _ : measured(state)) in place of for (auto _ : state).
inline MeasuredLoop measured(benchmark::State &state) { return MeasuredLoop(state); }

// In place of state.PauseTiming() and state.ResumeTiming().
inline void pause(benchmark::State &state)
{
    perf::collect(false);
    state.PauseTiming();
}

inline void resume(benchmark::State &state)
{
    state.ResumeTiming();
    perf::collect(perf::measuredIterations > 0);
}

// Each character of `keys` as its key's press and release (Latin-1 keys are their upper-case code).
inline void typeKeys(QWidget *w, QStringView keys)
{
    for (const QChar c : keys) {
        const auto key = c == u' ' ? Qt::Key_Space : Qt::Key(c.toUpper().unicode());
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &release);
    }
}

// `times` presses and releases of `key` (Up, Down: keys that type nothing) in the focused `w` in
// every iteration, after `reset` (not measured).
template<class Reset>
void pressing(benchmark::State &state, QWidget *w, Qt::Key key, int times, Reset reset)
{
    w->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    if (!w->hasFocus())
        state.SkipWithError("no focus");
    for (auto _ : measured(state)) {
        pause(state);
        reset();
        resume(state);
        for (int i = 0; i < times; ++i) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(w, &press);
            QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
            QApplication::sendEvent(w, &release);
        }
    }
}

// Typing `keys` into `w` in every iteration, after `reset` (not measured) has emptied the field.
template<class Reset>
void typing(benchmark::State &state, QWidget *w, QStringView keys, Reset reset)
{
    w->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    for (auto _ : measured(state)) {
        pause(state);
        reset();
        resume(state);
        typeKeys(w, keys);
    }
}

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    RatioReporter() : ConsoleReporter(isatty(fileno(stdout)) ? OO_Defaults : OO_Tabular) {}
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &r : runs) {
            if (r.error_occurred)
                continue;
            // A benchmark with an argument is named as the console shows it: "Name/1000".
            std::string name = r.run_name.function_name;
            if (!r.run_name.args.empty())
                name += '/' + r.run_name.args;
            if (r.run_type == Run::RT_Iteration) {
                auto &[total, count] = m_runs[name];
                total += r.GetAdjustedCPUTime();
                ++count;
            } else if (r.aggregate_name == "median") {
                // With repetitions the median: one run slowed by a busy machine does not move it.
                m_medians[name] = r.GetAdjustedCPUTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    double time(const std::string &name) const
    {
        if (const auto m = m_medians.find(name); m != m_medians.end())
            return m->second;
        const auto it = m_runs.find(name);
        return it == m_runs.end() || it->second.second == 0 ? 0 : it->second.first / it->second.second;
    }

private:
    std::map<std::string, std::pair<double, int>> m_runs;
    std::map<std::string, double> m_medians;
};

// A benchmark program's main: offscreen, English (US) regional settings, the benchmarks given on
// the command line, `after` (what a program adds to the ending), then `ratio <ours> / <peer>: <x>x` for
// each pair. With --pairs it only lists the pairs, one "<ours> <peer>" a line, for scripts/perf.
template<class After = void (*)()>
int runWithRatios(int argc, char **argv, const std::vector<std::pair<const char *, const char *>> &pairs, After after = [] {})
{
    if (argc == 2 && std::string(argv[1]) == "--pairs") {
        for (const auto &[ours, peer] : pairs)
            std::printf("%s %s\n", ours, peer);
        return 0;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    auto rt = std::make_shared<KelRuntime8>();
    rt->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    adoptRuntime(rt);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    if (RUNNING_ON_VALGRIND)
        std::printf("measured iterations: %ld\n", std::max(perf::measuredIterations, 0L));
    after();
    for (const auto &[ours, peer] : pairs) {
        const double a = reporter.time(ours), b = reporter.time(peer);
        if (a > 0 && b > 0)
            std::printf("ratio %s / %s: %.2fx\n", ours, peer, a / b);
    }
    return 0;
}

} // namespace kel::bench
