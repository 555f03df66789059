// The combo field's hot paths at the largest list it takes (32,767 items), each next to a stock
// QComboBox in the same run: the completion look-up, loading the list, the first drop-down and
// one typed key end to end. Prints ours / theirs for each pair at the end.
#include "benchratio.h"
#include "controls/combo/combolist.h"
#include "controls/combo/kelcombo.h"
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>

using namespace kel;

namespace {

constexpr int Items = ComboMaxItems;
constexpr int Lookups = 1000;

// Customer-like names: a few thousand shared beginnings, so prefixes match runs of items.
const QStringList &items()
{
    static const QStringList list = [] {
        static const char *const first[] = {"Anders", "Baker", "Carter", "Dupont", "Evans", "Fischer", "García", "Hansen",
                                            "Ito", "Jensen", "Kowalski", "López", "Müller", "Nagy", "Olsen", "Petrov"};
        std::mt19937 rng(7);
        QStringList l;
        for (int i = 0; i < Items; ++i)
            l << QString::fromUtf8(first[rng() % 16]) + u' ' + QString::number(rng() % 100000) + QStringLiteral(" Ltd");
        return l;
    }();
    return list;
}

const QString &listString()
{
    static const QString s = items().join(u',');
    return s;
}

// What a person types: the first one to eight characters of some item, in any case.
const QStringList &prefixes()
{
    static const QStringList list = [] {
        std::mt19937 rng(11);
        QStringList l;
        for (int i = 0; i < Lookups; ++i) {
            const QString &item = items().at(int(rng() % Items));
            QString p = item.left(1 + int(rng() % 8));
            l << (i % 2 ? p.toLower() : p);
        }
        return l;
    }();
    return list;
}

struct ComboForm {
    QWidget window;
    KelCombo *combo = new KelCombo(&window);
    QWidget *field = combo->Combo1->widget();
    ComboForm()
    {
        combo->setGeometry(0, 0, 300, 20);
        combo->setList(listString());
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

struct StockForm {
    QWidget window;
    QComboBox *combo = new QComboBox(&window);
    explicit StockForm(bool editable = false)
    {
        combo->setEditable(editable);
        combo->addItems(items());
        combo->setGeometry(0, 0, 300, 20);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

void KelCombo_FindString(benchmark::State &state)
{
    ComboForm form;
    ComboBox *box = form.combo->Combo1;
    box->FindString(u"x"); // the index is built on the first look-up
    long long sum = 0;
    for (auto _ : kel::bench::measured(state))
        for (const QString &p : prefixes())
            sum += box->FindString(p);
    benchmark::DoNotOptimize(sum);
    if (box->FindString(prefixes().at(0)) < 0)
        state.SkipWithError("no completion found");
}

void QComboBox_findText(benchmark::State &state)
{
    StockForm form;
    long long sum = 0;
    for (auto _ : kel::bench::measured(state))
        for (const QString &p : prefixes())
            sum += form.combo->findText(p, Qt::MatchStartsWith);
    benchmark::DoNotOptimize(sum);
}

void KelCombo_ListPut(benchmark::State &state)
{
    ComboForm form;
    for (auto _ : kel::bench::measured(state))
        form.combo->setList(listString());
    if (form.combo->ListCount() != Items)
        state.SkipWithError("the list did not load");
}

void QComboBox_addItems(benchmark::State &state)
{
    StockForm form;
    for (auto _ : kel::bench::measured(state)) {
        form.combo->clear();
        form.combo->addItems(items());
    }
}

// Saving: the list string rebuilt through the run-time object's list-append, item by item.
void KelCombo_ListGet(benchmark::State &state)
{
    ComboForm form;
    qsizetype size = 0;
    for (auto _ : kel::bench::measured(state))
        size += form.combo->List().size();
    benchmark::DoNotOptimize(size);
}

void QStringList_join(benchmark::State &state)
{
    qsizetype size = 0;
    for (auto _ : kel::bench::measured(state))
        size += items().join(u',').size();
    benchmark::DoNotOptimize(size);
}

template<class Form, class Open, class Close>
void firstOpen(benchmark::State &state, Open open, Close close)
{
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        auto form = std::make_unique<Form>();
        kel::bench::resume(state);
        open(*form);
        kel::bench::pause(state);
        close(*form);
        form.reset();
        kel::bench::resume(state);
    }
}

void KelCombo_FirstDropDown(benchmark::State &state)
{
    firstOpen<ComboForm>(
            state, [](ComboForm &f) { f.combo->Combo1->ShowDropDown(true); },
            [&state](ComboForm &f) {
                if (!f.combo->Combo1->DroppedDown())
                    state.SkipWithError("the list did not drop");
                f.combo->Combo1->ShowDropDown(false);
            });
}

void QComboBox_FirstShowPopup(benchmark::State &state)
{
    firstOpen<StockForm>(
            state, [](StockForm &f) { f.combo->showPopup(); }, [](StockForm &f) { f.combo->hidePopup(); });
}

// Field holds "Mü"; one more key "l" completes to a Müller item.
void KelCombo_TypedKey(benchmark::State &state)
{
    ComboForm form;
    form.combo->setLimitToList(false);
    form.field->setFocus();
    ComboBox *box = form.combo->Combo1;
    bench::typeKeys(form.field, u"M"); // the first key builds what later keys reuse, as with the peer
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        form.combo->setText(u"Mü"_qs);
        box->setSelStart(2);
        kel::bench::resume(state);
        bench::typeKeys(form.field, u"l");
    }
    if (!box->Text().startsWith(u"Müller"))
        state.SkipWithError("no completion");
}

void QComboBox_TypedKey(benchmark::State &state)
{
    StockForm form(true); // with its own inline completer
    form.combo->setFocus();
    QLineEdit *edit = form.combo->lineEdit();
    bench::typeKeys(form.combo, u"M");
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        edit->setText(u"Mü"_qs);
        edit->setCursorPosition(2);
        kel::bench::resume(state);
        bench::typeKeys(form.combo, u"l");
    }
}

BENCHMARK(KelCombo_FindString)->Unit(benchmark::kMicrosecond);
BENCHMARK(QComboBox_findText)->Unit(benchmark::kMicrosecond);
BENCHMARK(KelCombo_ListPut)->Unit(benchmark::kMillisecond);
BENCHMARK(QComboBox_addItems)->Unit(benchmark::kMillisecond);
BENCHMARK(KelCombo_ListGet)->Unit(benchmark::kMillisecond);
BENCHMARK(QStringList_join)->Unit(benchmark::kMillisecond);
// Under valgrind one a repetition, as every benchmark there: each stock first popup over the whole list takes
// callgrind half a minute, and each repetition's is the same.
int firstOpens() { return RUNNING_ON_VALGRIND ? 1 : 10; }
BENCHMARK(KelCombo_FirstDropDown)->Unit(benchmark::kMillisecond)->Iterations(firstOpens());
BENCHMARK(QComboBox_FirstShowPopup)->Unit(benchmark::kMillisecond)->Iterations(firstOpens());
BENCHMARK(KelCombo_TypedKey)->Unit(benchmark::kMicrosecond);
BENCHMARK(QComboBox_TypedKey)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    return kel::bench::runWithRatios(argc, argv, {
        {"KelCombo_FindString", "QComboBox_findText"},
        {"KelCombo_ListPut", "QComboBox_addItems"},
        {"KelCombo_ListGet", "QStringList_join"},
        {"KelCombo_FirstDropDown", "QComboBox_FirstShowPopup"},
        {"KelCombo_TypedKey", "QComboBox_TypedKey"},
    }, [] { std::printf("KelCombo_FindString and QComboBox_findText: %d look-ups per iteration\n", Lookups); });
}
