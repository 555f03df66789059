// Stepping a date and a time: the fields' Up key (parse the text, step the part under the caret,
// clamp, format, put the caret back) next to QDateEdit and QTimeEdit stepping a section, in one
// run; and typing a date and a time key by key, next to the same.
#include "benchratio.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "platform/dayserial.h"

#include <QApplication>
#include <QDateEdit>
#include <QTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>

#include <cmath>

using namespace kel;

namespace {

constexpr int Repeats = 10000;
const QDate Start(2000, 1, 1);

int upSteps() { return bench::loopCount(Repeats); }

// The Up key pressed and released in the focused field, from `start` with the caret at `caret`;
// every step moves the value by `unit`.
template<class Field>
void fieldUpKey(benchmark::State &state, const QString &format, double start, int caret, double unit)
{
    bench::FieldForm<Field> form;
    form.field->setFormat(format);
    bench::pressing(state, form.text1, Qt::Key_Up, upSteps(), [&] {
        form.field->setValue(Date{start});
        form.text1->setCursorPosition(caret);
    });
    if (std::abs(form.field->Value().toDouble() - (start + upSteps() * unit)) > unit / 2)
        state.SkipWithError("the field did not step");
}

// A shown stock edit on one section, which wraps: a section stops at its end otherwise (the day
// at the month's end), and wrapping keeps every step real. By keys (focused) or by stepBy alone.
template<class Edit>
void editUpKey(benchmark::State &state, const QString &format, QDateTimeEdit::Section section, bool byKey)
{
    QWidget window;
    auto *edit = new Edit(&window);
    edit->setDisplayFormat(format);
    edit->setWrapping(true);
    edit->setGeometry(0, 0, 300, 20);
    window.resize(320, 40);
    window.show();
    QApplication::processEvents();
    const QDateTime start = edit->dateTime();
    const auto reset = [&] {
        edit->setDateTime(start);
        edit->setCurrentSection(section);
    };
    if (byKey) {
        bench::pressing(state, edit, Qt::Key_Up, upSteps(), reset);
    } else {
        for (auto _ : kel::bench::measured(state)) {
            kel::bench::pause(state);
            reset();
            kel::bench::resume(state);
            for (int i = 0; i < upSteps(); ++i)
                edit->stepBy(1);
        }
    }
    if (edit->dateTime() == start)
        state.SkipWithError("the edit did not step");
}

const QString DateFormat = QStringLiteral("dd/mm/yyyy"), DateEditFormat = QStringLiteral("dd/MM/yyyy");
const QString TimeFormat = QStringLiteral("hh:nn:ss"), TimeEditFormat = QStringLiteral("HH:mm:ss");

// The date on its day; the time on its seconds, from midnight.
void KelDate_UpKey(benchmark::State &state) { fieldUpKey<KelDate>(state, DateFormat, *fromQDate(Start), 0, 1); }
// The same key in the stock edit: its own key path, then stepBy.
void QDateEdit_UpKey(benchmark::State &state) { editUpKey<QDateEdit>(state, DateEditFormat, QDateTimeEdit::DaySection, true); }
// The step alone, with no key around it.
void QDateEdit_stepBy(benchmark::State &state) { editUpKey<QDateEdit>(state, DateEditFormat, QDateTimeEdit::DaySection, false); }
void KelTime_UpKey(benchmark::State &state) { fieldUpKey<KelTime>(state, TimeFormat, 0, 8, 1.0 / 86400); }
void QTimeEdit_UpKey(benchmark::State &state) { editUpKey<QTimeEdit>(state, TimeEditFormat, QDateTimeEdit::SecondSection, true); }

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
BENCHMARK(KelTime_UpKey)->Unit(benchmark::kMillisecond);
BENCHMARK(QTimeEdit_UpKey)->Unit(benchmark::kMillisecond);
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
                                 {"KelTime_UpKey", "QTimeEdit_UpKey"},
                                 {"KelDate_TypedKeys", "QDateEdit_TypedKeys"},
                                 {"KelTime_TypedKeys", "QTimeEdit_TypedKeys"}});
}
