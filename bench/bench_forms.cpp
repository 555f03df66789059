// Opening forms next to plain Qt in the same run: a mixed form of 300 controls of all seven kinds
// against the same count of the nearest stock widgets, each with a QLabel; then one form per
// kind, to show where the time goes. Ends with the memory each control costs against its peer
// (heap in use, from mallinfo2, around creating and showing a form), as ratio lines too.
#include "controls/check/kelcheck.h"
#include "controls/combo/kelcombo.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "controls/number/kelnumber.h"
#include "controls/progress/kelprogressbar.h"
#include "controls/text/keltext.h"
#include "benchratio.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTimeEdit>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <malloc.h>
#include <string>

namespace {

constexpr int Controls = 300;
constexpr int Kinds = 7;
const char *const kindNames[Kinds] = {"Text", "Number", "Date", "Time", "Combo", "Check", "ProgressBar"};

// One control of `kind` as a saved form loads it: through its property bag.
void addKel(QWidget *form, int kind, int i)
{
    kel::MemoryPropertyBag bag;
    bag.set(QStringLiteral("Caption"), QStringLiteral("Field %1").arg(i));
    bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
    kel::UserControl *c = nullptr;
    switch (kind) {
    case 0: c = new kel::KelText(form); bag.set(QStringLiteral("Text"), QStringLiteral("value %1").arg(i)); break;
    case 1: c = new kel::KelNumber(form); bag.set(QStringLiteral("Value"), double(i) * 1.5); break;
    case 2: c = new kel::KelDate(form); bag.set(QStringLiteral("Value"), QStringLiteral("15012024")); break;
    case 3: c = new kel::KelTime(form); bag.set(QStringLiteral("Value"), QStringLiteral("10:30:00")); break;
    case 4:
        c = new kel::KelCombo(form);
        bag.set(QStringLiteral("List"), QStringLiteral("Alpha,Beta,Gamma,Delta"));
        bag.set(QStringLiteral("Text"), QStringLiteral("Beta"));
        break;
    case 5: c = new kel::KelCheck(form); bag.set(QStringLiteral("Value"), bool(i & 1)); break;
    default: c = new kel::KelProgressBar(form); bag.set(QStringLiteral("Value"), qint32(i % 100)); break;
    }
    c->setGeometry(0, i * 22, 300, 20);
    c->ReadProperties(bag);
}

// The nearest stock widget with its label, set up to show the same.
void addQt(QWidget *form, int kind, int i)
{
    auto *l = new QLabel(QStringLiteral("Field %1").arg(i), form);
    l->setGeometry(0, i * 22, 100, 13);
    QWidget *w = nullptr;
    switch (kind) {
    case 0: w = new QLineEdit(QStringLiteral("value %1").arg(i), form); break;
    case 1: { auto *s = new QDoubleSpinBox(form); s->setRange(-1e9, 1e9); s->setValue(i * 1.5); w = s; break; }
    case 2: w = new QDateEdit(QDate(2024, 1, 15), form); break;
    case 3: w = new QTimeEdit(QTime(10, 30), form); break;
    case 4: {
        auto *c = new QComboBox(form);
        c->setEditable(true);
        c->addItems({QStringLiteral("Alpha"), QStringLiteral("Beta"), QStringLiteral("Gamma"), QStringLiteral("Delta")});
        c->setCurrentIndex(1);
        w = c;
        break;
    }
    case 5: { auto *c = new QCheckBox(form); c->setChecked(i & 1); w = c; break; }
    default: { auto *p = new QProgressBar(form); p->setValue(i % 100); w = p; break; }
    }
    w->setGeometry(100, i * 22, 200, 20);
}

template<void (*Add)(QWidget *, int, int)>
void openForm(int kind /* -1: all kinds in turn */)
{
    QWidget form;
    for (int i = 0; i < Controls; ++i)
        Add(&form, kind < 0 ? i % Kinds : kind, i);
    form.show();
    QApplication::processEvents();
}

void KelMixedForm(benchmark::State &state)
{
    for (auto _ : kel::bench::measured(state))
        openForm<addKel>(-1);
    state.SetItemsProcessed(state.iterations() * Controls);
}

void QtMixedForm(benchmark::State &state)
{
    for (auto _ : kel::bench::measured(state))
        openForm<addQt>(-1);
    state.SetItemsProcessed(state.iterations() * Controls);
}

BENCHMARK(KelMixedForm)->Unit(benchmark::kMillisecond);
BENCHMARK(QtMixedForm)->Unit(benchmark::kMillisecond);

// Heap bytes in use per control while a shown form of `Controls` of them is open.
template<void (*Add)(QWidget *, int, int)>
double bytesPerControl(int kind)
{
    openForm<Add>(kind); // first-use caches (fonts, styles, the run-time object) are not the form's
    malloc_trim(0);
    const size_t before = mallinfo2().uordblks;
    auto *form = new QWidget;
    for (int i = 0; i < Controls; ++i)
        Add(form, kind, i);
    form->show();
    QApplication::processEvents();
    const size_t after = mallinfo2().uordblks;
    delete form;
    return double(after - before) / Controls;
}

// Printed at the end with the other ratios, in their form.
std::string memoryLines;

void MemoryPerControl(benchmark::State &state)
{
    for (auto _ : state) {
        memoryLines.clear();
        for (int k = 0; k < Kinds; ++k) {
            const double ours = bytesPerControl<addKel>(k), theirs = bytesPerControl<addQt>(k);
            char line[160];
            std::snprintf(line, sizeof line, "memory %s: %.0f B per control, peer %.0f B\nratio Kel%sMemory / Qt%sMemory: %.2fx\n",
                          kindNames[k], ours, theirs, kindNames[k], kindNames[k], ours / theirs);
            memoryLines += line;
        }
    }
}
BENCHMARK(MemoryPerControl)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    // One form per kind, each under its own name so that every kind gets its ratio.
    static std::vector<std::string> names;
    for (int k = 0; k < Kinds; ++k)
        for (const char *side : {"Kel", "Qt"})
            names.push_back(std::string(side) + "Form" + kindNames[k]);
    std::vector<std::pair<const char *, const char *>> pairs = {{"KelMixedForm", "QtMixedForm"}};
    for (int k = 0; k < Kinds; ++k) {
        benchmark::RegisterBenchmark(names[2 * k].c_str(), [k](benchmark::State &st) { for (auto _ : kel::bench::measured(st)) openForm<addKel>(k); })
                ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(names[2 * k + 1].c_str(), [k](benchmark::State &st) { for (auto _ : kel::bench::measured(st)) openForm<addQt>(k); })
                ->Unit(benchmark::kMillisecond);
        pairs.emplace_back(names[2 * k].c_str(), names[2 * k + 1].c_str());
    }
    return kel::bench::runWithRatios(argc, argv, pairs, [] { std::fputs(memoryLines.c_str(), stdout); });
}
