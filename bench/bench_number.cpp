// The number field's two hot paths next to QDoubleSpinBox in the same run: stepping with the Up
// key, and committing typed text. Prints ours / theirs for each pair at the end.
#include "controls/number/kelnumber.h"
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>

using namespace kel;

namespace {

constexpr int Repeats = 10000;

// A shown window holding one number field with its spinner.
struct NumberForm {
    QWidget window;
    KelNumber *number = new KelNumber(&window);
    QLineEdit *text1 = number->findChild<QLineEdit *>(QStringLiteral("Text1"));
    NumberForm()
    {
        number->setGeometry(0, 0, 300, 20);
        number->setUpDown(true);
        number->setMandatory(false);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

struct SpinForm {
    QWidget window;
    QDoubleSpinBox *spin = new QDoubleSpinBox(&window);
    SpinForm()
    {
        spin->setRange(-9999999999.0, 9999999999.0);
        spin->setDecimals(2);
        spin->setGroupSeparatorShown(true);
        spin->setGeometry(0, 0, 300, 20);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

QString typedText(int i) { return QString::number(i % 5000) + QStringLiteral(".25"); }

void KelNumber_UpKey(benchmark::State &state)
{
    NumberForm form;
    for (auto _ : state) {
        state.PauseTiming();
        form.number->setValue(0.0);
        state.ResumeTiming();
        for (int i = 0; i < Repeats; ++i) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
            QApplication::sendEvent(form.text1, &press);
            QKeyEvent release(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier);
            QApplication::sendEvent(form.text1, &release);
        }
    }
    if (form.number->Value().toDouble() != Repeats)
        state.SkipWithError("the field did not step");
}

void QDoubleSpinBox_stepUp(benchmark::State &state)
{
    SpinForm form;
    for (auto _ : state) {
        state.PauseTiming();
        form.spin->setValue(0.0);
        state.ResumeTiming();
        for (int i = 0; i < Repeats; ++i)
            form.spin->stepUp();
    }
    if (form.spin->value() != Repeats)
        state.SkipWithError("the spin box did not step");
}

// Text put into the box (as a paste does), then reading Value commits it.
void KelNumber_Commit(benchmark::State &state)
{
    NumberForm form;
    double sum = 0;
    for (auto _ : state) {
        for (int i = 0; i < Repeats; ++i) {
            form.text1->setText(typedText(i));
            sum += form.number->Value().toDouble();
        }
    }
    benchmark::DoNotOptimize(sum);
    if (form.text1->text() != QStringLiteral("4,999.25"))
        state.SkipWithError("the field did not commit");
}

void QDoubleSpinBox_setValue(benchmark::State &state)
{
    SpinForm form;
    for (auto _ : state)
        for (int i = 0; i < Repeats; ++i)
            form.spin->setValue(i % 5000 + 0.25);
}

// The spin box's own path for typed text, for comparison with ours.
void QDoubleSpinBox_interpretText(benchmark::State &state)
{
    SpinForm form;
    QLineEdit *edit = form.spin->findChild<QLineEdit *>();
    double sum = 0;
    for (auto _ : state) {
        for (int i = 0; i < Repeats; ++i) {
            edit->setText(typedText(i));
            form.spin->interpretText();
            sum += form.spin->value();
        }
    }
    benchmark::DoNotOptimize(sum);
}

BENCHMARK(KelNumber_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_stepUp)->Unit(benchmark::kMillisecond);
BENCHMARK(KelNumber_Commit)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_setValue)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_interpretText)->Unit(benchmark::kMillisecond);

// Keeps the mean CPU time of every benchmark for the ratios (steadier than wall time on a busy
// machine).
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    RatioReporter() : ConsoleReporter(isatty(fileno(stdout)) ? OO_Defaults : OO_Tabular) {}
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &r : runs) {
            if (r.error_occurred)
                continue;
            if (r.run_type == Run::RT_Iteration) {
                auto &[total, count] = m_runs[r.run_name.function_name];
                total += r.GetAdjustedCPUTime();
                ++count;
            } else if (r.aggregate_name == "mean") {
                m_means[r.run_name.function_name] = r.GetAdjustedCPUTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    double mean(const std::string &name) const
    {
        if (const auto m = m_means.find(name); m != m_means.end())
            return m->second;
        const auto it = m_runs.find(name);
        return it == m_runs.end() || it->second.second == 0 ? 0 : it->second.first / it->second.second;
    }

private:
    std::map<std::string, std::pair<double, int>> m_runs;
    std::map<std::string, double> m_means;
};

} // namespace

int main(int argc, char **argv)
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

    const std::pair<const char *, const char *> pairs[] = {
        {"KelNumber_UpKey", "QDoubleSpinBox_stepUp"},
        {"KelNumber_Commit", "QDoubleSpinBox_setValue"},
        {"KelNumber_Commit", "QDoubleSpinBox_interpretText"},
    };
    std::printf("\nratio (ours / Qt, %d operations each)\n", Repeats);
    for (const auto &[ours, theirs] : pairs) {
        const double a = reporter.mean(ours), b = reporter.mean(theirs);
        if (a > 0 && b > 0)
            std::printf("  %-18s / %-30s %6.2fx\n", ours, theirs, a / b);
    }
    return 0;
}
