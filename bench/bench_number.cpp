// The number field's hot paths next to QDoubleSpinBox in the same run: stepping with the Up key,
// committing typed text, and typing a number key by key.
#include "benchratio.h"
#include "controls/number/kelnumber.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>

using namespace kel;

namespace {

constexpr int Repeats = 10000;

// A number field with its spinner.
struct NumberForm : bench::FieldForm<KelNumber> {
    KelNumber *number = field;
    NumberForm()
    {
        number->setUpDown(true);
        number->setMandatory(false);
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

// Under callgrind a step costs what a hundred do natively; a tenth of them keeps scripts/perf quick.
int upSteps() { return RUNNING_ON_VALGRIND ? Repeats / 10 : Repeats; }

// The Up key pressed and released in the focused field, from 0.
void KelNumber_UpKey(benchmark::State &state)
{
    NumberForm form;
    bench::pressing(state, form.text1, Qt::Key_Up, upSteps(), [&] { form.number->setValue(0.0); });
    if (form.number->Value().toDouble() != upSteps())
        state.SkipWithError("the field did not step");
}

// The same key in the focused spin box: its own key path, then stepBy.
void QDoubleSpinBox_UpKey(benchmark::State &state)
{
    SpinForm form;
    bench::pressing(state, form.spin, Qt::Key_Up, upSteps(), [&] { form.spin->setValue(0.0); });
    if (form.spin->value() != upSteps())
        state.SkipWithError("the spin box did not step");
}

// The step alone, with no key around it.
void QDoubleSpinBox_stepUp(benchmark::State &state)
{
    SpinForm form;
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        form.spin->setValue(0.0);
        kel::bench::resume(state);
        for (int i = 0; i < upSteps(); ++i)
            form.spin->stepUp();
    }
    if (form.spin->value() != upSteps())
        state.SkipWithError("the spin box did not step");
}

// Text put into the box (as a paste does), then reading Value commits it.
void KelNumber_Commit(benchmark::State &state)
{
    NumberForm form;
    double sum = 0;
    for (auto _ : kel::bench::measured(state)) {
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
    for (auto _ : kel::bench::measured(state))
        for (int i = 0; i < Repeats; ++i)
            form.spin->setValue(i % 5000 + 0.25);
}

// The spin box's own path for typed text, for comparison with ours.
void QDoubleSpinBox_interpretText(benchmark::State &state)
{
    SpinForm form;
    QLineEdit *edit = form.spin->findChild<QLineEdit *>();
    double sum = 0;
    for (auto _ : kel::bench::measured(state)) {
        for (int i = 0; i < Repeats; ++i) {
            edit->setText(typedText(i));
            form.spin->interpretText();
            sum += form.spin->value();
        }
    }
    benchmark::DoNotOptimize(sum);
}

const QString Typed = QStringLiteral("1234567.25");

void KelNumber_TypedKeys(benchmark::State &state)
{
    NumberForm form;
    bench::typing(state, form.text1, Typed, [&] { form.text1->clear(); });
    if (form.text1->text() != Typed)
        state.SkipWithError("the field did not take the keys");
}

void QDoubleSpinBox_TypedKeys(benchmark::State &state)
{
    SpinForm form;
    QLineEdit *edit = form.spin->findChild<QLineEdit *>();
    bench::typing(state, form.spin, Typed, [&] { form.spin->clear(); });
    if (edit->text() != QStringLiteral("1,234,567.25") && edit->text() != Typed)
        state.SkipWithError("the spin box did not take the keys");
}

BENCHMARK(KelNumber_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_stepUp)->Unit(benchmark::kMillisecond);
BENCHMARK(KelNumber_Commit)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_setValue)->Unit(benchmark::kMillisecond);
BENCHMARK(QDoubleSpinBox_interpretText)->Unit(benchmark::kMillisecond);
BENCHMARK(KelNumber_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(QDoubleSpinBox_TypedKeys)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    return bench::runWithRatios(argc, argv,
                                {{"KelNumber_UpKey", "QDoubleSpinBox_UpKey"},
                                 {"KelNumber_UpKey", "QDoubleSpinBox_stepUp"},
                                 {"KelNumber_Commit", "QDoubleSpinBox_setValue"},
                                 {"KelNumber_Commit", "QDoubleSpinBox_interpretText"},
                                 {"KelNumber_TypedKeys", "QDoubleSpinBox_TypedKeys"}});
}
