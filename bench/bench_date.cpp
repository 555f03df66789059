// Stepping a date: the date field's Up key (parse the text, step the part under the caret,
// clamp, format, put the caret back) next to QDateEdit stepping its day section, in one run; and
// typing a date and a time key by key, next to QDateEdit and QTimeEdit.
#include "benchratio.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "platform/dayserial.h"

#include <QApplication>
#include <QDateEdit>
#include <QTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>

using namespace kel;

namespace {

constexpr int Repeats = 10000;
const QDate Start(2000, 1, 1);

using DateForm = bench::FieldForm<KelDate>;

// Under callgrind a step costs what a hundred do natively; a tenth of them keeps scripts/perf quick.
int upSteps() { return RUNNING_ON_VALGRIND ? Repeats / 10 : Repeats; }

// The Up key pressed and released in the focused field, the caret on the day.
void KelDate_UpKey(benchmark::State &state)
{
    DateForm form;
    form.text1->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    if (!form.text1->hasFocus())
        state.SkipWithError("no focus");
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        form.field->setValue(Date{*fromQDate(Start)});
        form.text1->setCursorPosition(0);
        kel::bench::resume(state);
        kel::bench::pressKey(form.text1, Qt::Key_Up, upSteps());
    }
    if (toQDate(form.field->Value().toDouble()) != Start.addDays(upSteps()))
        state.SkipWithError("the field did not step");
}

// A shown date edit on the day section. The day section stops at the month's end unless it
// wraps; wrapping keeps every step real.
struct DateEditForm {
    QWidget window;
    QDateEdit *edit = new QDateEdit(&window);
    DateEditForm()
    {
        edit->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
        edit->setWrapping(true);
        edit->setGeometry(0, 0, 300, 20);
        window.resize(320, 40);
        window.show();
        QApplication::processEvents();
    }
    void reset()
    {
        edit->setDate(Start);
        edit->setCurrentSection(QDateTimeEdit::DaySection);
    }
};

// The same key in the focused date edit: its own key path, then stepBy.
void QDateEdit_UpKey(benchmark::State &state)
{
    DateEditForm form;
    form.edit->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    if (!form.edit->hasFocus())
        state.SkipWithError("no focus");
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        form.reset();
        kel::bench::resume(state);
        kel::bench::pressKey(form.edit, Qt::Key_Up, upSteps());
    }
    if (form.edit->date() == Start)
        state.SkipWithError("the date edit did not step");
}

// The step alone, with no key around it.
void QDateEdit_stepBy(benchmark::State &state)
{
    DateEditForm form;
    for (auto _ : kel::bench::measured(state)) {
        kel::bench::pause(state);
        form.reset();
        kel::bench::resume(state);
        for (int i = 0; i < upSteps(); ++i)
            form.edit->stepBy(1);
    }
    if (form.edit->date() == Start)
        state.SkipWithError("the date edit did not step");
}

// Digits alone: the stock edit moves on by itself after each section, and our field reads ddmmyyyy.
const QString TypedDate = QStringLiteral("15012024");
const QString TypedTime = QStringLiteral("10:30");

template<class Field>
void fieldTypedKeys(benchmark::State &state, const QString &keys)
{
    bench::FieldForm<Field> form;
    bench::typing(state, form.text1, keys, [&] { form.text1->clear(); });
    if (form.text1->text() != keys)
        state.SkipWithError("the field did not take the keys");
}

// The stock edits type over their sections: the first section selected, as on entering by Tab.
template<class Edit>
void editTypedKeys(benchmark::State &state, const QString &format, const QString &keys, const QString &shown)
{
    QWidget window;
    auto *edit = new Edit(&window);
    edit->setDisplayFormat(format);
    edit->setGeometry(0, 0, 300, 20);
    window.show();
    QLineEdit *line = edit->template findChild<QLineEdit *>();
    const QDateTime start = edit->dateTime();
    bench::typing(state, edit, keys, [&] {
        edit->setDateTime(start);
        edit->setSelectedSection(edit->sectionAt(0));
    });
    if (line->text() != shown)
        state.SkipWithError("the edit did not take the keys");
}

void KelDate_TypedKeys(benchmark::State &state) { fieldTypedKeys<KelDate>(state, TypedDate); }
void QDateEdit_TypedKeys(benchmark::State &state) { editTypedKeys<QDateEdit>(state, QStringLiteral("dd/MM/yyyy"), TypedDate, u"15/01/2024"_qs); }
void KelTime_TypedKeys(benchmark::State &state) { fieldTypedKeys<KelTime>(state, TypedTime); }
void QTimeEdit_TypedKeys(benchmark::State &state) { editTypedKeys<QTimeEdit>(state, QStringLiteral("HH:mm"), TypedTime, TypedTime); }

BENCHMARK(KelDate_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDateEdit_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QDateEdit_stepBy)->Unit(benchmark::kMillisecond);
BENCHMARK(KelDate_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(QDateEdit_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(KelTime_TypedKeys)->Unit(benchmark::kMicrosecond);
BENCHMARK(QTimeEdit_TypedKeys)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    return bench::runWithRatios(argc, argv,
                                {{"KelDate_UpKey", "QDateEdit_UpKey"},
                                 {"KelDate_UpKey", "QDateEdit_stepBy"},
                                 {"KelDate_TypedKeys", "QDateEdit_TypedKeys"},
                                 {"KelTime_TypedKeys", "QTimeEdit_TypedKeys"}});
}
