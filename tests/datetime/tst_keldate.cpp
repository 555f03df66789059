#include "controls/datetime/keldate.h"
#include "spinkeys.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>

using namespace kel;
using namespace kel::test;
using enum KelDate::KelDateDaysFlag;

namespace {

constexpr double Top = 2958465; // 31/12/9999

struct StepCase { const char16_t *format; int flag; double max; bool locked; const char16_t *typed; int caret; const char16_t *keys, *shown; int caretAfter, changes; };
struct LeaveCase { const char16_t *format; int flag; double max; const char16_t *typed; Variant value; };
struct ValidCase { bool mandatory, locked; const char16_t *typed; bool valid; QString message; };

} // namespace

Q_DECLARE_METATYPE(StepCase)
Q_DECLARE_METATYPE(LeaveCase)
Q_DECLARE_METATYPE(ValidCase)

class TestKelDate : public QObject
{
    Q_OBJECT
    std::unique_ptr<FieldForm<KelDate>> f; // today is 15 January 2024
    KelDate *d = nullptr;

private slots:
    void init()
    {
        f = std::make_unique<FieldForm<KelDate>>();
        d = f->field;
        QVERIFY(f->ready());
    }
    void cleanup() { f.reset(); }

    // Text set from code is in the format, so the caret picks the part; typed text is not yet,
    // so the day (or the pinned month) steps. Bounds clamp, then the day is pinned. Typing
    // overwrites (Insert flips that) and raises neither Change nor a property notification.
    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        const char16_t *dmy = u"dd/mm/yyyy";
        QTest::newRow("day at start") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"U", u"16/03/2013", 2, 1};
        QTest::newRow("month, caret after it") << StepCase{dmy, Allow, Top, false, nullptr, 4, u"U", u"15/04/2013", 5, 1};
        QTest::newRow("year") << StepCase{dmy, Allow, Top, false, nullptr, 6, u"D", u"15/03/2012", 10, 1};
        QTest::newRow("keys and spinner") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"+Ss--", u"14/03/2013", 2, 5};
        QTest::newRow("no separators") << StepCase{u"ddmmyyyy", Allow, Top, false, nullptr, 4, u"U", u"16032013", 8, 1};
        QTest::newRow("first day pinned") << StepCase{dmy, FirstDay, Top, false, u"01/12/2013", 0, u"U", u"01/01/2014", 2, 1};
        QTest::newRow("month first format") << StepCase{u"mm-dd-yyyy", Allow, Top, false, nullptr, 0, u"U", u"04-15-2013", 2, 1};
        QTest::newRow("typed: the day") << StepCase{dmy, Allow, Top, false, u"5/3/13", 3, u"U", u"06/03/2013", 2, 1};
        QTest::newRow("typed, last day: the month") << StepCase{dmy, LastDay, Top, false, u"5/3/13", 0, u"U", u"30/04/2013", 5, 1};
        QTest::newRow("empty, last day: today") << StepCase{dmy, LastDay, Top, false, u"", 0, u"D", u"31/01/2024", 5, 1};
        QTest::newRow("at the maximum") << StepCase{dmy, Allow, Top, false, u"31/12/9999", 0, u"U", u"31/12/9999", 2, 1};
        QTest::newRow("clamped") << StepCase{dmy, Allow, serial(2013, 3, 20), false, nullptr, 0, u"UUUUUU", u"20/03/2013", 2, 5};
        // DaysFlag set after Value waits for the step: the text is not yet the pinned date's, so the month steps.
        QTest::newRow("pinned past the maximum") << StepCase{dmy, LastDay, serial(2013, 2, 20), false, nullptr, 0, u"U", u"28/02/2013", 5, 1};
        QTest::newRow("locked") << StepCase{dmy, Allow, Top, true, nullptr, 0, u"UD+-Ss2", u"15/03/2013", 0, 0};
        QTest::newRow("overwrite") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"2", u"25/03/2013", 1, 0};
        QTest::newRow("Insert key flips") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"I2", u"215/03/2013", 1, 0};
        QTest::newRow("letters overwrite too") << StepCase{dmy, Allow, Top, false, nullptr, 3, u"x", u"15/x3/2013", 4, 0};
        // Control characters too: a paste (of "2") types over, a copy takes the character after the caret.
        QTest::newRow("paste overwrites") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"V", u"25/03/2013", 1, 0};
        QTest::newRow("copy takes the next character") << StepCase{dmy, Allow, Top, false, nullptr, 3, u"CV", u"15/03/2013", 4, 0};
        QTest::newRow("format letter that upper-cases longer") << StepCase{u"ß dd/mm/yyyy", Allow, Top, false, nullptr, 6, u"U", u"ß 15/04/2013", 7, 1};
    }
    void stepping()
    {
        QFETCH(StepCase, c);
        d->setFormat(str(c.format));
        d->setMaxValue(Date{c.max});
        d->setValue(Date{serial(2013, 3, 15)});
        d->setDaysFlag(c.flag);
        d->setLocked(c.locked);
        QSignalSpy changes(d, &KelDate::Change);
        QSignalSpy reported(d, &UserControl::PropertyChanged);
        enter(d);
        if (c.typed) {
            text1(d)->clear();
            QTest::keyClicks(text1(d), str(c.typed));
        }
        text1(d)->setCursorPosition(c.caret);
        QGuiApplication::clipboard()->setText(u"2"_qs);
        play(d, str(c.keys));
        QCOMPARE(text1(d)->text(), str(c.shown));
        QCOMPARE(text1(d)->cursorPosition(), c.caretAfter);
        QCOMPARE(changes.size(), c.changes);
        QCOMPARE(reported.size(), 0);
        QCOMPARE(d->UpDown1->Enabled(), !c.locked);
        QCOMPARE(QApplication::focusWidget(), text1(d));
    }

    // A run-time object of another region shows the same date in its words, set again or stepped.
    void regionOfANewRuntime()
    {
        d->setFormat(u"d mmmm yyyy"_qs);
        d->setValue(Date{serial(2013, 3, 15)});
        QCOMPARE(text1(d)->text(), u"15 March 2013"_qs);
        useRuntime(24, 2, QLocale(QLocale::German, QLocale::Germany));
        d->setValue(Date{serial(2013, 3, 15)});
        QCOMPARE(text1(d)->text(), u"15 M\u00e4rz 2013"_qs);
        enter(d);
        text1(d)->selectAll();
        play(d, u"U"_qs);
        QCOMPARE(text1(d)->text(), u"16 M\u00e4rz 2013"_qs);
        QCOMPARE(text1(d)->selectedText(), QString()); // the step leaves a caret, after the day
        QCOMPARE(text1(d)->cursorPosition(), 2);
    }

    // The spinner repeats while held and stops on release; screen readers can step it too.
    void spinnerRepeatsAndSpeaks()
    {
        d->setValue(u"15/03/2013"_qs);
        QSignalSpy changes(d, &KelDate::Change);
        QWidget *spinner = d->UpDown1->widget();
        QTest::mousePress(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, 2));
        QTRY_VERIFY(changes.size() >= 3);
        QTest::mouseRelease(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, 2));
        const qsizetype held = changes.size();
        QTest::qWait(300);
        QCOMPARE(changes.size(), held);
        QCOMPARE(d->Value(), Variant(Date{serial(2013, 3, 15) + double(held)}));

        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(spinner);
        QVERIFY(a && a->actionInterface());
        a->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
        QCOMPARE(changes.size(), held + 1);
        d->setLocked(true);
        QVERIFY(a->actionInterface()->actionNames().isEmpty());
    }

    // Enter moves on and commits typed text. A field the user did not type in reads its shown
    // text back: that must give the same date in any format the run-time object can show.
    void leaving_data()
    {
        QTest::addColumn<LeaveCase>("c");
        const Variant day = Date{serial(2013, 3, 5)};
        for (const char16_t *f : {u"dd/mm/yyyy", u"mm/dd/yyyy", u"d-m-yy", u"dd mmm yyyy", u"dddd d mmmm yyyy", u"yyyymmdd"})
            QTest::newRow(qPrintable(u"untouched "_qs + str(f))) << LeaveCase{f, Allow, Top, nullptr, day};
        const char16_t *dmy = u"dd/mm/yyyy";
        QTest::newRow("normalised") << LeaveCase{dmy, Allow, Top, u"5.3.13", day};
        QTest::newRow("no date empties") << LeaveCase{dmy, Allow, Top, u"32/13/2013", Null};
        QTest::newRow("clamped") << LeaveCase{dmy, Allow, serial(2010, 12, 31), u"5/5/2011", Date{serial(2010, 12, 31)}};
        QTest::newRow("first day") << LeaveCase{dmy, FirstDay, Top, u"15/3/2013", Date{serial(2013, 3, 1)}};
        QTest::newRow("pinned after clamp") << LeaveCase{dmy, LastDay, serial(2013, 3, 15), u"20/3/2013", Date{serial(2013, 3, 31)}};
    }
    void leaving()
    {
        QFETCH(LeaveCase, c);
        d->setDaysFlag(c.flag);
        d->setMaxValue(Date{c.max});
        d->setFormat(str(c.format));
        if (!c.typed)
            d->setValue(c.value);
        enter(d);
        if (c.typed)
            QTest::keyClicks(text1(d), str(c.typed));
        play(d, u"E");
        QCOMPARE(QApplication::focusWidget(), text1(f->second));
        QCOMPARE(d->Value(), c.value);
        QCOMPARE(d->Changed(), c.typed != nullptr);
        KelDate shown; // what a field given that value from code shows
        shown.setFormat(str(c.format));
        shown.setValue(c.value);
        QCOMPARE(d->Text1->Text(), shown.Text1->Text());
    }

    // Dates are set from code (out of range stays until a commit); other text is typed and read
    // as shown. A refusal puts the focus back in the field.
    void valid_data()
    {
        QTest::addColumn<ValidCase>("c");
        const QString none = u"Please enter a valid date in this field."_qs;
        QTest::newRow("mandatory empty") << ValidCase{true, false, u"", false, none};
        QTest::newRow("optional empty") << ValidCase{false, false, u"", true, {}};
        QTest::newRow("optional garbage") << ValidCase{false, false, u"xx", false, none};
        QTest::newRow("out of range") << ValidCase{true, false, u"05/05/2011", false,
                                                   u"This field only accepts dates from 01/01/2000 to 31/12/2010."_qs};
        QTest::newRow("in range") << ValidCase{true, false, u"05/05/2010", true, {}};
        QTest::newRow("locked") << ValidCase{true, true, u"05/05/2011", true, {}};
    }
    void valid()
    {
        QFETCH(ValidCase, c);
        d->setMinValue(Date{serial(2000, 1, 1)});
        d->setMaxValue(Date{serial(2010, 12, 31)});
        d->setMandatory(c.mandatory);
        d->setLocked(c.locked);
        d->setValue(str(c.typed));
        if (d->Value().isNull())
            text1(d)->setText(str(c.typed)); // as a paste leaves it
        QCOMPARE(d->Valid(false), c.valid);
        QVERIFY(f->rec->boxes.empty());
        QCOMPARE(d->Valid(true), c.valid);
        QCOMPARE(f->rec->boxes.size(), size_t(c.valid ? 0 : 1));
        if (!c.valid) {
            QCOMPARE(f->rec->boxes[0].prompt, c.message);
            QCOMPARE(f->rec->boxes[0].title, u"Invalid Date"_qs);
            QCOMPARE(f->rec->boxes[0].style, 64);
            QCOMPARE(QApplication::focusWidget(), text1(d));
        }
    }

    // At run time Format reads the shown text again in the new format, and DaysFlag waits for
    // the next commit or step. While a form loads (a control not yet shown) both keep the value,
    // so that the order of the setters does not matter.
    void formatAndDaysFlagPuts_data()
    {
        QTest::addColumn<bool>("loading");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("changed");
        const double march5 = serial(2013, 3, 5);
        QTest::newRow("Format at run time") << false << u"Format"_qs << QVariant(u"mm/dd/yyyy"_qs) << u"05/03/2013"_qs << serial(2013, 5, 3) << true;
        QTest::newRow("Format while loading") << true << u"Format"_qs << QVariant(u"mm/dd/yyyy"_qs) << u"03/05/2013"_qs << march5 << false;
        QTest::newRow("DaysFlag at run time") << false << u"DaysFlag"_qs << QVariant(int(LastDay)) << u"05/03/2013"_qs << march5 << false;
        QTest::newRow("DaysFlag while loading") << true << u"DaysFlag"_qs << QVariant(int(LastDay)) << u"31/03/2013"_qs << serial(2013, 3, 31) << false;
    }
    void formatAndDaysFlagPuts()
    {
        QFETCH(bool, loading);
        QFETCH(QString, property);
        QFETCH(QVariant, given);
        QFETCH(QString, shown);
        QFETCH(double, value);
        QFETCH(bool, changed);
        KelDate fresh;
        KelDate *c = loading ? &fresh : d;
        c->setValue(Date{serial(2013, 3, 5)});
        QVERIFY(c->setProperty(property.toLatin1().constData(), given));
        QCOMPARE(c->Text1->Text(), shown);
        QCOMPARE(c->Value(), Variant(Date{value}));
        QCOMPARE(c->Changed(), changed);
        if (loading)
            return;
        enter(d); // the next commit pins the day
        enter(f->second);
        QCOMPARE(d->Changed(), property == u"DaysFlag" || changed);
    }

    // A time of day stays exactly when Format shows one, whether text, a number or a date-time
    // gave it, so that what a host reads it can write back unchanged.
    void timeOfDay_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<double>("value");
        const double day = serial(2013, 3, 15), at1030 = day + 0.4375;
        const QString withTime = u"dd/mm/yyyy hh:nn"_qs;
        QTest::newRow("number, time shown") << withTime << QVariant(at1030) << at1030;
        QTest::newRow("date-time, time shown") << withTime << QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 30))) << at1030;
        QTest::newRow("text, time shown") << withTime << QVariant(u"15/03/2013 10:30"_qs) << at1030;
        QTest::newRow("number, no time") << u"dd/mm/yyyy"_qs << QVariant(at1030) << day;
        QTest::newRow("text, no time") << u"dd/mm/yyyy"_qs << QVariant(u"15/03/2013 10:30"_qs) << day;
        QTest::newRow("AM/PM alone") << u"dd/mm/yyyy AMPM"_qs << QVariant(at1030) << day;
        // A bound is kept whole, and a value clamped to it is the bound.
        QTest::newRow("typed past a bound with a time") << u"dd/mm/yyyy"_qs << QVariant(u"typed 20/03/2013"_qs) << at1030;
    }
    void timeOfDay()
    {
        QFETCH(QString, format);
        QFETCH(QVariant, given);
        QFETCH(double, value);
        d->setFormat(format);
        if (const QString text = given.toString(); text.startsWith(u"typed "_qs)) {
            d->setMaxValue(Date{value});
            d->Text1->setText(text.mid(6));
            QCOMPARE(d->Value(), Variant(Date{value}));
            return;
        }
        QVERIFY(d->setProperty("Value", given));
        QCOMPARE(d->Value(), Variant(Date{value}));
        const QVariant read = d->property("Value");
        QVERIFY(d->setProperty("Value", read));
        QCOMPARE(d->property("Value"), read);
    }

    void ignoredSetters()
    {
        // A bound a split second before midnight is the one a host reads back, not the day before.
        d->setProperty("MinValue", QDateTime(QDate(2000, 1, 1), QTime(23, 59, 59, 999)));
        QVERIFY(d->MinValue().serial == fromQDateTime(d->property("MinValue").toDateTime()));
        d->setFormat(QString());
        QCOMPARE(d->Format(), u"dd/mm/yyyy"_qs);
    }

    // What a field showed, it shows again after a save and a load, also under a format that
    // orders the parts otherwise; today is saved as "Now" and loads as the day it is loaded on.
    void persistence_data()
    {
        QTest::addColumn<Variant>("value");
        QTest::addColumn<QString>("format");
        QTest::addColumn<Variant>("stored");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("flag");
        const Variant day = Date{serial(2013, 3, 15)};
        QTest::newRow("year first") << day << u"yyyy-mm-dd"_qs << Variant(u"15032013"_qs) << u"2013-03-15"_qs << int(Allow);
        QTest::newRow("month first") << day << u"mm/dd/yyyy"_qs << Variant(u"15032013"_qs) << u"03/15/2013"_qs << int(Allow);
        QTest::newRow("year before 1000") << Variant(Date{serial(100, 3, 31)}) << u"dd/mm/yyyy"_qs << Variant(u"31030100"_qs) << u"31/03/100"_qs << int(Allow);
        QTest::newRow("Null") << Variant(Null) << u"dd/mm/yyyy"_qs << Variant(u""_qs) << QString() << int(Allow);
        QTest::newRow("today") << Variant(Date{serial(2024, 1, 15)}) << u"dd/mm/yyyy"_qs << Variant() << u"01/02/2024"_qs << int(Allow);
        // Only a value equal to today is "Now": with a time of day it keeps its day, and loses the time.
        QTest::newRow("today with a time") << Variant(u"15/01/2024 10:30"_qs) << u"dd/mm/yyyy hh:nn"_qs
                                           << Variant(u"15012024"_qs) << u"15/01/2024 00:00"_qs << int(Allow);
        // A birthday field's parser refuses a future date; the field's own saved form is still read.
        // Whole days count towards zero: before 1900 the fraction is still the time of day.
        QTest::newRow("before 1900 with a time") << Variant(Date{-1.25}) << u"dd/mm/yyyy"_qs << Variant(u"29121899"_qs) << u"29/12/1899"_qs << int(Allow);
        QTest::newRow("first day at noon") << Variant(Date{-657434.5}) << u"dd/mm/yyyy"_qs << Variant(u"01010100"_qs) << u"01/01/100"_qs << int(Allow);
        QTest::newRow("future birthday") << Variant(Date{serial(2079, 6, 4)}) << u"dd/mm/yyyy"_qs << Variant(u"04062079"_qs) << u"04/06/2079"_qs << int(BirthDay);
    }
    void persistence()
    {
        QFETCH(Variant, value);
        QFETCH(QString, format);
        QFETCH(Variant, stored);
        QFETCH(QString, shown);
        QFETCH(int, flag);
        KelDate a;
        a.InitProperties();
        a.setDaysFlag(flag);
        // Format first: a Format put while loading would clamp the value into the default bounds.
        a.setFormat(format);
        a.setValue(value);
        a.setMinValue(Date{serial(1990, 1, 1)});
        MemoryPropertyBag bag;
        a.WriteProperties(bag);
        QCOMPARE(bag.value(u"Value"_qs), stored);
        QStringList names;
        for (const auto &e : bag.entries())
            names << e.first;
        names.removeAll(u"Format"_qs);
        names.removeAll(u"DaysFlag"_qs);
        QCOMPARE(names.join(u','), str(stored.isEmpty() ? u"CaptionWidth,MinValue" : u"CaptionWidth,MinValue,Value"));
        f->rec->now = QDateTime(QDate(2024, 2, 1), QTime(9, 0));
        KelDate b;
        b.ReadProperties(bag);
        QCOMPARE(b.Text1->Text(), shown);
        QCOMPARE(b.MinValue().serial, serial(1990, 1, 1));
        QCOMPARE(b.Valid(), !shown.isEmpty() && b.Value().toDouble() >= serial(1990, 1, 1));
    }
};

QTEST_MAIN(TestKelDate)
#include "tst_keldate.moc"
