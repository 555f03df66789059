// The text field next to its plain Qt peers in the same run: creating, loading and showing a
// form of 300 fields (against QLabel + QLineEdit pairs), and reading the text of a multi-line
// field that ends in many empty lines (against QPlainTextEdit and trimming the string).
// Also typing a line into the field against QLineEdit. Prints ours / theirs for each pair at the end.
#include "controls/text/keltext.h"
#include "benchratio.h"
#include "library/librarysettings.h"
#include "runtime/kelruntime8.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr int Fields = 300;

void KelTextForm(benchmark::State &state)
{
    for (auto _ : kel::bench::measured(state)) {
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
    for (auto _ : kel::bench::measured(state)) {
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

QString withTrailingPairs(int pairs) { return QStringLiteral("a") + QStringLiteral("\r\n").repeated(pairs); }

// Text drops the trailing empty lines from the field itself, one Change each.
void KelText_TextTrailingPairs(benchmark::State &state)
{
    const QString text = withTrailingPairs(int(state.range(0)));
    kel::KelText t;
    t.setMultiLine(true);
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        t.setText(text);
        kel::bench::resume(state);
        benchmark::DoNotOptimize(t.Text());
    }
}

void QPlainTextEdit_TextTrailingPairs(benchmark::State &state)
{
    const QString text = withTrailingPairs(int(state.range(0)));
    QPlainTextEdit e;
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        e.setPlainText(text);
        kel::bench::resume(state);
        QString t = e.toPlainText();
        while (t.endsWith(u'\n'))
            t.chop(1);
        e.setPlainText(t);
        benchmark::DoNotOptimize(t);
    }
}

const QString Typed = QStringLiteral("Hello world 42");

void KelText_TypedKeys(benchmark::State &state)
{
    kel::bench::FieldForm<kel::KelText> form;
    auto *box = form.field->Text1(0);
    kel::bench::typing(state, box->widget(), Typed, [&] { form.field->setText(QString()); });
    if (form.field->Text() != Typed)
        state.SkipWithError("the field did not take the keys");
}

void QLineEdit_TypedKeys(benchmark::State &state)
{
    QWidget window;
    auto *edit = new QLineEdit(&window);
    edit->setGeometry(100, 0, 200, 20);
    window.show();
    kel::bench::typing(state, edit, Typed, [&] { edit->clear(); });
    if (edit->text() != Typed)
        state.SkipWithError("the line edit did not take the keys");
}

BENCHMARK(KelTextForm)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainQtForm)->Unit(benchmark::kMillisecond);
BENCHMARK(KelText_TextTrailingPairs)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(QPlainTextEdit_TextTrailingPairs)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(KelText_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(QLineEdit_TypedKeys)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    return kel::bench::runWithRatios(argc, argv, {
        {"KelTextForm", "PlainQtForm"},
        {"KelText_TextTrailingPairs/1000", "QPlainTextEdit_TextTrailingPairs/1000"},
        {"KelText_TextTrailingPairs/4000", "QPlainTextEdit_TextTrailingPairs/4000"},
        {"KelText_TypedKeys", "QLineEdit_TypedKeys"},
    });
}
