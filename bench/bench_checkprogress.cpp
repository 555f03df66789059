// The progress bar and the check field next to QProgressBar and QCheckBox in the same run: a
// million values that leave the bar where it is, a sweep over a 300-pixel bar (with its paints
// counted), ten thousand real clicks, and the space key. Ends with one ratio line per pair, ours / Qt.
#include "controls/check/kelcheck.h"
#include "controls/progress/kelprogressbar.h"
#include "benchratio.h"

#include <QApplication>
#include <QCheckBox>
#include <QMouseEvent>
#include <QProgressBar>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

using namespace kel;

namespace {

// Under valgrind (scripts/perf) a hundredth of each, on both sides alike: the full runs would take
// callgrind the better part of an hour. The sweep still moves the bar over all its pixels.
int scale() { return RUNNING_ON_VALGRIND ? 100 : 1; }
const int Scale = scale();
const int StillValues = 1000000 / Scale;
const int SweepEnd = 100000 / Scale;
const int Clicks = 10000 / Scale;

struct PaintCounter : QObject {
    long paints = 0;
    bool eventFilter(QObject *, QEvent *e) override
    {
        paints += e->type() == QEvent::Paint;
        return false;
    }
};
std::map<std::string, double> paintsPerSweep;

// One shown window holding the widget under test, 300 pixels of bar wide.
template<class W>
struct Shown {
    QWidget window;
    W *widget = new W(&window);
    Shown(int width = 302, int height = 22)
    {
        widget->setGeometry(0, 0, width, height);
        window.resize(width + 10, height + 10);
        window.show();
        QApplication::processEvents();
    }
};

void KelProgressBar_StillValue(benchmark::State &state)
{
    Shown<KelProgressBar> form;
    KelProgressBar *bar = form.widget;
    bar->setMax(1000000000);
    bar->Start();
    bar->setValue(1);
    for (auto _ : kel::bench::measured(state))
        for (int v = 1; v <= StillValues; ++v)
            bar->setValue(v);
    if (bar->Value() != StillValues || bar->Picture1->ScaleWidth() != 300)
        state.SkipWithError("the bar did not take the values");
}

void QProgressBar_StillValue(benchmark::State &state)
{
    Shown<QProgressBar> form;
    QProgressBar *bar = form.widget;
    bar->setRange(1, 1000000000);
    bar->setValue(1);
    for (auto _ : kel::bench::measured(state))
        for (int v = 1; v <= StillValues; ++v)
            bar->setValue(v);
}

template<class Bar, class Reset>
void sweep(benchmark::State &state, Bar *bar, QWidget *painted, Reset reset, const char *name)
{
    PaintCounter counter;
    painted->installEventFilter(&counter);
    long sweeps = 0;
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        reset();
        counter.paints = 0;
        kel::bench::resume(state);
        for (int v = 1; v <= SweepEnd; ++v)
            bar->setValue(v);
        ++sweeps;
    }
    paintsPerSweep[name] = double(counter.paints);
    benchmark::DoNotOptimize(sweeps);
}

void KelProgressBar_Sweep(benchmark::State &state)
{
    Shown<KelProgressBar> form;
    KelProgressBar *bar = form.widget;
    bar->setShowTime(false);
    sweep(state, bar, bar->Picture1->widget(), [bar] { bar->setMax(SweepEnd); bar->Start(); }, "KelProgressBar");
}

void QProgressBar_Sweep(benchmark::State &state)
{
    Shown<QProgressBar> form;
    QProgressBar *bar = form.widget;
    sweep(state, bar, bar, [bar] { bar->setRange(1, SweepEnd); bar->reset(); }, "QProgressBar");
}

void clickAway(benchmark::State &state, QWidget *box)
{
    const QPointF at(8, box->height() / 2);
    const QPointF global = box->mapToGlobal(at);
    for (auto _ : kel::bench::measured(state)) {
        for (int i = 0; i < Clicks; ++i) {
            QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(box, &press);
            QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(box, &release);
        }
    }
}

void KelCheck_Click(benchmark::State &state)
{
    Shown<KelCheck> form(300, 20);
    long changes = 0;
    QObject::connect(form.widget, &KelCheck::Change, [&changes] { ++changes; });
    clickAway(state, form.widget->Check1->widget());
    if (changes != long(state.iterations()) * Clicks)
        state.SkipWithError("not every click raised Change");
}

void QCheckBox_Click(benchmark::State &state)
{
    Shown<QCheckBox> form(300, 20);
    long toggles = 0;
    QObject::connect(form.widget, &QCheckBox::stateChanged, [&toggles] { ++toggles; });
    clickAway(state, form.widget);
    if (toggles != long(state.iterations()) * Clicks)
        state.SkipWithError("not every click toggled");
}

// The space key toggles; ten of them a iteration.
const QString Spaces = QStringLiteral("          ");

void KelCheck_TypedKeys(benchmark::State &state)
{
    Shown<KelCheck> form(300, 20);
    long changes = 0;
    QObject::connect(form.widget, &KelCheck::Change, [&changes] { ++changes; });
    bench::typing(state, form.widget->Check1->widget(), Spaces, [] {});
    if (changes == 0)
        state.SkipWithError("the space key did not toggle");
}

void QCheckBox_TypedKeys(benchmark::State &state)
{
    Shown<QCheckBox> form(300, 20);
    long toggles = 0;
    QObject::connect(form.widget, &QCheckBox::stateChanged, [&toggles] { ++toggles; });
    bench::typing(state, form.widget, Spaces, [] {});
    if (toggles == 0)
        state.SkipWithError("the space key did not toggle");
}

BENCHMARK(KelProgressBar_StillValue)->Unit(benchmark::kMillisecond);
BENCHMARK(QProgressBar_StillValue)->Unit(benchmark::kMillisecond);
BENCHMARK(KelProgressBar_Sweep)->Unit(benchmark::kMillisecond);
BENCHMARK(QProgressBar_Sweep)->Unit(benchmark::kMillisecond);
BENCHMARK(KelCheck_Click)->Unit(benchmark::kMillisecond);
BENCHMARK(QCheckBox_Click)->Unit(benchmark::kMillisecond);
BENCHMARK(KelCheck_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(QCheckBox_TypedKeys)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    return bench::runWithRatios(argc, argv,
                                {{"KelProgressBar_StillValue", "QProgressBar_StillValue"},
                                 {"KelProgressBar_Sweep", "QProgressBar_Sweep"},
                                 {"KelCheck_Click", "QCheckBox_Click"},
                                 {"KelCheck_TypedKeys", "QCheckBox_TypedKeys"}},
                                [] {
                                    for (const auto &[bar, paints] : paintsPerSweep)
                                        std::printf("paints in a sweep 1..%d over 300 pixels, %s: %.0f\n", SweepEnd, bar.c_str(), paints);
                                });
}
