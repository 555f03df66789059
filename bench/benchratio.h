#pragma once
// The benchmark programs' shared set-up and ending: the CPU time of every benchmark (steadier than wall time on
// a busy machine; the median over repetitions, else the mean), and one line per comparison, ours divided by
// the Qt peer's.
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>
#include <utility>
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
// the command line, then `ratio <ours> / <peer>: <x>x` for each pair.
inline int runWithRatios(int argc, char **argv, const std::vector<std::pair<const char *, const char *>> &pairs)
{
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
    for (const auto &[ours, peer] : pairs) {
        const double a = reporter.time(ours), b = reporter.time(peer);
        if (a > 0 && b > 0)
            std::printf("ratio %s / %s: %.2fx\n", ours, peer, a / b);
    }
    return 0;
}

} // namespace kel::bench
