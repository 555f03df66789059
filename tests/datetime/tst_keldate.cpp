#include "controls/datetime/keldate.h"
#include "keys.h"
#include "kelfixture.h"

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>

using namespace kel;
using namespace kel::test;
using enum KelDate::KelDateDaysFlag;

namespace {

using Form = TwoFieldForm<KelDate>;
QString str(const char16_t *s) { return QString::fromUtf16(s); }
constexpr double Top = 2958465; // 31/12/9999

struct StepCase { const char16_t *format; int flag; double max; bool locked; const char16_t *typed; int caret; const char16_t *keys, *shown; int caretAfter, changes; };
struct TypeCase { bool insert, locked; int caret; const char16_t *keys, *shown; };
struct CommitCase { int flag; const char16_t *typed; double max; const char16_t *shown; bool isNull; };
struct ValidCase { bool mandatory, locked; const char16_t *typed; bool valid; QString message; };

} // namespace

Q_DECLARE_METATYPE(StepCase)
Q_DECLARE_METATYPE(TypeCase)
Q_DECLARE_METATYPE(CommitCase)
Q_DECLARE_METATYPE(ValidCase)

class TestKelDate : public QObject
{
    Q_OBJECT
    RecordingServices *rec = nullptr; // today is 15 January 2024
    std::unique_ptr<Form> f;
    KelDate *d = nullptr;

private slots:
    void init()
    {
        useRuntime();
        rec = recordServices();
        f = std::make_unique<Form>();
        d = f->first;
        QVERIFY(f->ready());
        enter(f->second);
    }
    void cleanup() { f.reset(); }

    // Text set from code is in the format, so the caret picks the part; typed text is not yet,
    // so the day (or the pinned month) steps. Bounds clamp, then the day is pinned.
    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        const char16_t *dmy = u"dd/mm/yyyy";
        const double mid = serial(2013, 3, 20);
        QTest::newRow("day at start") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"U", u"16/03/2013", 2, 1};
        QTest::newRow("month, caret after it") << StepCase{dmy, Allow, Top, false, nullptr, 4, u"U", u"15/04/2013", 5, 1};
        QTest::newRow("year") << StepCase{dmy, Allow, Top, false, nullptr, 6, u"D", u"15/03/2012", 10, 1};
        QTest::newRow("keys and spinner") << StepCase{dmy, Allow, Top, false, nullptr, 0, u"+Ss--", u"14/03/2013", 2, 5};
        QTest::newRow("31 Jan plus a month") << StepCase{dmy, Allow, Top, false, u"31/01/2013", 3, u"U", u"28/02/2013", 5, 1};
        QTest::newRow("leap day plus a year") << StepCase{dmy, Allow, Top, false, u"29/02/2012", 8, u"U", u"28/02/2013", 10, 1};
        QTest::newRow("no separators") << StepCase{u"ddmmyyyy", Allow, Top, false, nullptr, 4, u"U", u"16032013", 8, 1};
        QTest::newRow("last day pinned") << StepCase{dmy, LastDay, Top, false, u"31/01/2013", 0, u"UU", u"31/03/2013", 2, 2};
        QTest::newRow("first day pinned") << StepCase{dmy, FirstDay, Top, false, u"01/12/2013", 0, u"U", u"01/01/2014", 2, 1};
        QTest::newRow("month first format") << StepCase{u"mm-dd-yyyy", Allow, Top, false, nullptr, 0, u"U", u"04-15-2013", 2, 1};
        QTest::newRow("typed: the day") << StepCase{dmy, Allow, Top, false, u"5/3/13", 3, u"U", u"06/03/2013", 2, 1};
        QTest::newRow("typed, last day: the month") << StepCase{dmy, LastDay, Top, false, u"5/3/13", 0, u"U", u"30/04/2013", 5, 1};
        QTest::newRow("empty shows today") << StepCase{dmy, Allow, Top, false, u"", 0, u"U", u"15/01/2024", 2, 1};
        QTest::newRow("empty, last day") << StepCase{dmy, LastDay, Top, false, u"", 0, u"D", u"31/01/2024", 5, 1};
        QTest::newRow("at the maximum") << StepCase{dmy, Allow, Top, false, u"31/12/9999", 0, u"U", u"31/12/9999", 2, 1};
        QTest::newRow("clamped") << StepCase{dmy, Allow, mid, false, nullptr, 0, u"UUUUUU", u"20/03/2013", 2, 5};
        QTest::newRow("pinned past the maximum") << StepCase{dmy, LastDay, serial(2013, 2, 20), false, nullptr, 0, u"U", u"28/02/2013", 2, 1};
        QTest::newRow("locked") << StepCase{dmy, Allow, Top, true, nullptr, 0, u"UD+-Ss", u"15/03/2013", 0, 0};
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
        enter(d);
        if (c.typed) {
            text1(d)->clear();
            QTest::keyClicks(text1(d), str(c.typed));
        }
        text1(d)->setCursorPosition(c.caret);
        play(d, str(c.keys));
        QCOMPARE(text1(d)->text(), str(c.shown));
        QCOMPARE(text1(d)->cursorPosition(), c.caretAfter);
        QCOMPARE(changes.size(), c.changes);
        QCOMPARE(d->UpDown1->Enabled(), !c.locked);
        QCOMPARE(QApplication::focusWidget(), text1(d));
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

    void typing_data()
    {
        QTest::addColumn<TypeCase>("c");
        QTest::newRow("overwrite") << TypeCase{false, false, 0, u"2", u"25/03/2013"};
        QTest::newRow("insert") << TypeCase{true, false, 0, u"2", u"215/03/2013"};
        QTest::newRow("Insert key flips") << TypeCase{false, false, 0, u"I2", u"215/03/2013"};
        QTest::newRow("letters overwrite too") << TypeCase{false, false, 3, u"x", u"15/x3/2013"};
        QTest::newRow("Enter moves on") << TypeCase{false, false, 0, u"E", u"15/03/2013"};
        QTest::newRow("locked") << TypeCase{false, true, 0, u"2", u"15/03/2013"};
    }
    void typing()
    {
        QFETCH(TypeCase, c);
        d->setValue(u"15/03/2013"_qs);
        d->setInsertMode(c.insert);
        d->setLocked(c.locked);
        QSignalSpy reported(d, &UserControl::PropertyChanged);
        QSignalSpy changes(d, &KelDate::Change);
        enter(d);
        text1(d)->setCursorPosition(c.caret);
        play(d, str(c.keys));
        QCOMPARE(text1(d)->text(), str(c.shown));
        QCOMPARE(reported.size(), 0);
        QCOMPARE(changes.size(), 0);
        QCOMPARE(QApplication::focusWidget(), text1(str(c.keys).contains(u'E') ? f->second : d));
    }

    void commit_data()
    {
        QTest::addColumn<CommitCase>("c");
        QTest::newRow("normalised") << CommitCase{Allow, u"5.3.13", Top, u"05/03/2013", false};
        QTest::newRow("no date empties") << CommitCase{Allow, u"32/13/2013", Top, u"", true};
        QTest::newRow("clamped") << CommitCase{Allow, u"5/5/2011", serial(2010, 12, 31), u"31/12/2010", false};
        QTest::newRow("first day") << CommitCase{FirstDay, u"15/3/2013", Top, u"01/03/2013", false};
        QTest::newRow("pinned after clamp") << CommitCase{LastDay, u"20/3/2013", serial(2013, 3, 15), u"31/03/2013", false};
    }
    void commit()
    {
        QFETCH(CommitCase, c);
        d->setDaysFlag(c.flag);
        d->setMaxValue(Date{c.max});
        enter(d);
        QTest::keyClicks(text1(d), str(c.typed));
        enter(f->second);
        QCOMPARE(text1(d)->text(), str(c.shown));
        QCOMPARE(d->Value().isNull(), c.isNull);
        QVERIFY(d->Changed());
    }

    // Leaving a field the user did not type in reads its shown text back: that must give the
    // same date in any format the run-time object can show.
    void leavingUntouchedKeepsTheDate_data()
    {
        QTest::addColumn<QString>("format");
        for (const char16_t *f : {u"dd/mm/yyyy", u"mm/dd/yyyy", u"d-m-yy", u"dd mmm yyyy", u"dddd d mmmm yyyy", u"yyyymmdd"})
            QTest::newRow(qPrintable(str(f))) << str(f);
    }
    void leavingUntouchedKeepsTheDate()
    {
        QFETCH(QString, format);
        const Variant day = Date{serial(2013, 3, 5)};
        d->setFormat(format);
        d->setValue(day);
        enter(d);
        play(d, u"E");
        enter(f->second);
        QCOMPARE(d->Value(), day);
        QVERIFY(!d->Changed());
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
        QVERIFY(rec->boxes.empty());
        QCOMPARE(d->Valid(true), c.valid);
        QCOMPARE(rec->boxes.size(), size_t(c.valid ? 0 : 1));
        if (!c.valid) {
            QCOMPARE(rec->boxes[0].prompt, c.message);
            QCOMPARE(rec->boxes[0].title, u"Invalid Date"_qs);
            QCOMPARE(rec->boxes[0].style, 64);
            QCOMPARE(QApplication::focusWidget(), text1(d));
        }
    }

    // Bounds drag each other; an empty Format is ignored; Changed treats Null as the classic <>
    // would not; the order in which a host sets Format, DaysFlag and Value does not matter.
    void properties()
    {
        d->setMaxValue(Date{serial(2000, 1, 1)});
        d->setMinValue(Date{serial(2001, 1, 1)});
        QCOMPARE(d->MaxValue().serial, serial(2001, 1, 1));
        d->setMaxValue(Date{serial(1999, 1, 1)});
        QCOMPARE(d->MinValue().serial, serial(1999, 1, 1));
        // A bound a split second before midnight is the one a host reads back, not the day before.
        d->setProperty("MinValue", QDateTime(QDate(2000, 1, 1), QTime(23, 59, 59, 999)));
        QVERIFY(d->MinValue().serial == fromQDateTime(d->property("MinValue").toDateTime()));
        d->setFormat(QString());
        QCOMPARE(d->Format(), u"dd/mm/yyyy"_qs);
        d->setDaysFlag(7);
        QCOMPARE(d->DaysFlag(), qint32(Allow));

        d->setValue(Null);
        QVERIFY(!d->Changed());
        d->setValue(u"15/03/2013"_qs);
        d->setValueOriginal(Null);
        QVERIFY(d->Changed());
        d->setValueSaved(Date{serial(2013, 3, 15)});
        QVERIFY(!d->ChangedSaved());
        d->setValue(Null);
        QVERIFY(d->ChangedSaved());

        KelDate *other = f->second;
        d->setFormat(u"mm/dd/yyyy"_qs);
        d->setDaysFlag(LastDay);
        QVERIFY(d->setProperty("Value", QDate(2013, 3, 5)));
        QVERIFY(other->setProperty("Value", QDateTime(QDate(2013, 3, 5), QTime(10, 0))));
        other->setDaysFlag(LastDay);
        other->setFormat(u"mm/dd/yyyy"_qs);
        for (KelDate *x : {d, other}) {
            QCOMPARE(x->Value(), Variant(Date{serial(2013, 3, 31)}));
            QCOMPARE(x->Text1->Text(), u"03/31/2013"_qs);
            QVERIFY(!x->Changed());
        }
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
        QTest::newRow("a date") << day << u"dd/mm/yyyy"_qs << Variant(u"15032013"_qs) << u"15/03/2013"_qs << int(Allow);
        QTest::newRow("year first") << day << u"yyyy-mm-dd"_qs << Variant(u"15032013"_qs) << u"2013-03-15"_qs << int(Allow);
        QTest::newRow("month first") << day << u"mm/dd/yyyy"_qs << Variant(u"15032013"_qs) << u"03/15/2013"_qs << int(Allow);
        QTest::newRow("year before 1000") << Variant(Date{serial(100, 3, 31)}) << u"dd/mm/yyyy"_qs << Variant(u"31030100"_qs) << u"31/03/100"_qs << int(Allow);
        QTest::newRow("Null") << Variant(Null) << u"dd/mm/yyyy"_qs << Variant(u""_qs) << QString() << int(Allow);
        QTest::newRow("never assigned") << Variant() << u"dd/mm/yyyy"_qs << Variant(u""_qs) << QString() << int(Allow);
        QTest::newRow("today") << Variant(Date{serial(2024, 1, 15)}) << u"dd/mm/yyyy"_qs << Variant() << u"01/02/2024"_qs << int(Allow);
        // A birthday field's parser refuses a future date; the field's own saved form is still read.
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
        if (!value.isEmpty())
            a.setValue(value);
        a.setFormat(format);
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
        rec->now = QDateTime(QDate(2024, 2, 1), QTime(9, 0));
        KelDate b;
        b.ReadProperties(bag);
        QCOMPARE(b.Text1->Text(), shown);
        QCOMPARE(b.MinValue().serial, serial(1990, 1, 1));
        QCOMPARE(b.Valid(), !shown.isEmpty() && b.Value().toDouble() >= serial(1990, 1, 1));
    }
};

QTEST_MAIN(TestKelDate)
#include "tst_keldate.moc"
