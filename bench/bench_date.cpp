// Stepping a date: the date field's Up key (parse the text, step the part under the caret,
// clamp, format, put the caret back) next to QDateEdit stepping its day section, in one run.
#include "benchratio.h"
#include "controls/datetime/keldate.h"
#include "platform/dayserial.h"

#include <QApplication>
#include <QDateEdit>
#include <QKeyEvent>
#include <QLineEdit>

using namespace kel;

namespace {

constexpr int Repeats = 10000;
const QDate Start(2000, 1, 1);

struct DateForm {
    QWidget window;
    KelDate *date = new KelDate(&window);
    QLineEdit *text1 = date->findChild<QLineEdit *>(QStringLiteral("Text1"));
    DateForm()
    {
        date->setGeometry(0, 0, 300, 20);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
};

void KelDate_UpKey(benchmark::State &state)
{
    DateForm form;
    for (auto _ : state) {
        state.PauseTiming();
        form.date->setValue(Date{*fromQDate(Start)});
        form.text1->setCursorPosition(0); // on the day
        state.ResumeTiming();
        for (int i = 0; i < Repeats; ++i) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
            QApplication::sendEvent(form.text1, &press);
            QKeyEvent release(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier);
            QApplication::sendEvent(form.text1, &release);
        }
    }
    if (toQDate(form.date->Value().toDouble()) != Start.addDays(Repeats))
        state.SkipWithError("the field did not step");
}

void QDateEdit_stepBy(benchmark::State &state)
{
    QWidget window;
    auto *edit = new QDateEdit(&window);
    edit->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
    // The day section stops at the month's end unless it wraps; wrapping keeps every step real.
    edit->setWrapping(true);
    edit->setGeometry(0, 0, 300, 20);
    window.resize(320, 40);
    window.show();
    QApplication::processEvents();
    for (auto _ : state) {
        state.PauseTiming();
        edit->setDate(Start);
        edit->setCurrentSection(QDateTimeEdit::DaySection);
        state.ResumeTiming();
        for (int i = 0; i < Repeats; ++i)
            edit->stepBy(1);
    }
    if (edit->date() == Start)
        state.SkipWithError("the date edit did not step");
}

BENCHMARK(KelDate_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDateEdit_stepBy)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    return bench::runWithRatios(argc, argv, {{"KelDate_UpKey", "QDateEdit_stepBy"}});
}
