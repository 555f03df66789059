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

// The commit loops' i-th value of n: 0 to 4,999 twice over, the same spread at any n.
double committed(int i, int n) { return i * (Repeats / n) % 5000 + 0.25; }
QString typedText(int i, int n) { return QString::number(committed(i, n), 'f', 2); }

int upSteps() { return bench::loopCount(Repeats); }

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
    const int n = bench::loopCount(Repeats);
    double sum = 0;
    for (auto _ : kel::bench::measured(state)) {
        for (int i = 0; i < n; ++i) {
            form.text1->setText(typedText(i, n));
            sum += form.number->Value().toDouble();
        }
    }
    benchmark::DoNotOptimize(sum);
    if (form.number->Value().toDouble() != committed(n - 1, n) || !form.text1->text().endsWith(u".25"))
        state.SkipWithError("the field did not commit");
}

void QDoubleSpinBox_setValue(benchmark::State &state)
{
    SpinForm form;
    const int n = bench::loopCount(Repeats);
    for (auto _ : kel::bench::measured(state))
        for (int i = 0; i < n; ++i)
            form.spin->setValue(committed(i, n));
}

// The spin box's own path for typed text, for comparison with ours.
void QDoubleSpinBox_interpretText(benchmark::State &state)
{
    SpinForm form;
    QLineEdit *edit = form.spin->findChild<QLineEdit *>();
    const int n = bench::loopCount(Repeats);
    double sum = 0;
    for (auto _ : kel::bench::measured(state)) {
        for (int i = 0; i < n; ++i) {
            edit->setText(typedText(i, n));
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
