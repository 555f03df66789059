// Creating, loading and showing a form of 300 text fields, next to the same form built from
// plain QLabel + QLineEdit pairs.
#include "controls/text/keltext.h"
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <benchmark/benchmark.h>

namespace {

constexpr int Fields = 300;

void KelTextForm(benchmark::State &state)
{
    for (auto _ : state) {
        QWidget form;
        for (int i = 0; i < Fields; ++i) {
            auto *t = new kel::KelText(&form);
            t->setGeometry(0, i * 22, 300, 20);
            kel::MemoryPropertyBag bag;
            bag.set(QStringLiteral("Caption"), QStringLiteral("Field %1").arg(i));
            bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
            bag.set(QStringLiteral("Text"), QStringLiteral("value %1").arg(i));
            t->ReadProperties(bag);
        }
        form.show();
        QApplication::processEvents();
    }
    state.SetItemsProcessed(state.iterations() * Fields);
}

void PlainQtForm(benchmark::State &state)
{
    for (auto _ : state) {
        QWidget form;
        for (int i = 0; i < Fields; ++i) {
            auto *l = new QLabel(QStringLiteral("Field %1").arg(i), &form);
            l->setGeometry(0, i * 22, 100, 13);
            auto *e = new QLineEdit(&form);
            e->setGeometry(100, i * 22, 200, 20);
            e->setText(QStringLiteral("value %1").arg(i));
        }
        form.show();
        QApplication::processEvents();
    }
    state.SetItemsProcessed(state.iterations() * Fields);
}

BENCHMARK(KelTextForm)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainQtForm)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    kel::adoptRuntime(std::make_shared<kel::KelRuntime8>());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
