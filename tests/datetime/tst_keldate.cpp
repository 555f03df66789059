#include "controls/datetime/keldate.h"
#include "fakedates.h"
#include "keys.h"
#include "library/dispatch.h"

#include <QApplication>
#include <QSignalSpy>

using namespace kel;
using namespace kel::test;

namespace {

using Form = TwoFieldForm<KelDate>;
QString str(const char16_t *s) { return QString::fromUtf16(s); }

struct StepCase { const char16_t *format; int flag; const char16_t *text; int caret; const char16_t *keys, *shown; int caretAfter, changes; };
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
        useFakeDates();
        rec = recordServices();
        f = std::make_unique<Form>();
        d = f->first;
        QVERIFY(f->ready());
        enter(f->second);
    }
    void cleanup() { f.reset(); }

    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        const char16_t *dmy = u"dd/mm/yyyy";
        QTest::newRow("day at start") << StepCase{dmy, Allow, u"15/03/2013", 0, u"U", u"16/03/2013", 2, 1};
        QTest::newRow("month, caret after it") << StepCase{dmy, Allow, u"15/03/2013", 4, u"U", u"15/04/2013", 5, 1};
        QTest::newRow("year") << StepCase{dmy, Allow, u"15/03/2013", 6, u"D", u"15/03/2012", 10, 1};
        QTest::newRow("minus key") << StepCase{dmy, Allow, u"01/03/2013", 1, u"-", u"28/02/2013", 2, 1};
        QTest::newRow("plus and spinner") << StepCase{dmy, Allow, u"15/03/2013", 0, u"+Ss", u"16/03/2013", 2, 3};
        QTest::newRow("31 Jan plus a month") << StepCase{dmy, Allow, u"31/01/2013", 3, u"U", u"28/02/2013", 5, 1};
        QTest::newRow("leap day plus a year") << StepCase{dmy, Allow, u"29/02/2012", 8, u"U", u"28/02/2013", 10, 1};
        QTest::newRow("no separators") << StepCase{u"ddmmyyyy", Allow, u"15032013", 4, u"U", u"16032013", 8, 1};
        QTest::newRow("last day pinned") << StepCase{dmy, LastDay, u"31/01/2013", 0, u"UU", u"31/03/2013", 2, 2};
        QTest::newRow("first day pinned") << StepCase{dmy, FirstDay, u"01/12/2013", 0, u"U", u"01/01/2014", 2, 1};
        QTest::newRow("month first format") << StepCase{u"mm-dd-yyyy", Allow, u"03-15-2013", 0, u"U", u"04-15-2013", 2, 1};
        QTest::newRow("empty shows today") << StepCase{dmy, Allow, u"", 0, u"U", u"15/01/2024", 2, 1};
        QTest::newRow("empty, last day") << StepCase{dmy, LastDay, u"", 0, u"D", u"31/01/2024", 5, 1};
        QTest::newRow("at the maximum") << StepCase{dmy, Allow, u"31/12/9999", 0, u"U", u"31/12/9999", 2, 0};
    }
    void stepping()
    {
        QFETCH(StepCase, c);
        d->setFormat(str(c.format));
        d->setDaysFlag(c.flag);
        d->setValue(str(c.text));
        QSignalSpy changes(d, &KelDate::Change);
        enter(d);
        text1(d)->setCursorPosition(c.caret);
        play(d, str(c.keys));
        QCOMPARE(text1(d)->text(), str(c.shown));
        QCOMPARE(text1(d)->cursorPosition(), c.caretAfter);
        QCOMPARE(changes.size(), c.changes);
        QVERIFY(!d->Changed()); // stepping moves the reference along
        QCOMPARE(QApplication::focusWidget(), text1(d));
    }

    // Bounds: a step is clamped, then pinned (so LastDay may pass MaxValue); a locked field
    // never steps.
    void steppingWithinBounds()
    {
        d->setMaxValue(Date{serial(2013, 3, 20)});
        d->setValue(u"15/03/2013"_qs);
        enter(d);
        play(d, u"UUUUUU");
        QCOMPARE(text1(d)->text(), u"20/03/2013"_qs);
        d->setDaysFlag(LastDay);
        play(d, u"U");
        QCOMPARE(text1(d)->text(), u"31/03/2013"_qs);
        d->setLocked(true);
        QSignalSpy changes(d, &KelDate::Change);
        play(d, u"DD-2");
        QCOMPARE(text1(d)->text(), u"31/03/2013"_qs);
        QCOMPARE(changes.size(), 0);
        QVERIFY(!d->UpDown1->Enabled());
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
        const double top = serial(9999, 12, 31);
        QTest::newRow("normalised") << CommitCase{Allow, u"5.3.13", top, u"05/03/2013", false};
        QTest::newRow("no date empties") << CommitCase{Allow, u"32/13/2013", top, u"", true};
        QTest::newRow("clamped") << CommitCase{Allow, u"5/5/2011", serial(2010, 12, 31), u"31/12/2010", false};
        QTest::newRow("first day") << CommitCase{FirstDay, u"15/3/2013", top, u"01/03/2013", false};
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
        enter(d);
        QTest::keyClicks(text1(d), str(c.typed)); // not committed: Valid reads the text
        d->setLocked(c.locked);
        QCOMPARE(d->Valid(false), c.valid);
        QVERIFY(rec->boxes.empty());
        QCOMPARE(d->Valid(true), c.valid);
        QCOMPARE(rec->boxes.size(), size_t(c.valid ? 0 : 1));
        if (!c.valid) {
            QCOMPARE(rec->boxes[0].prompt, c.message);
            QCOMPARE(rec->boxes[0].title, u"Invalid Date"_qs);
            QCOMPARE(rec->boxes[0].style, 64);
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
        for (KelDate *x : {d, other})
            x->setMaxValue(Date{serial(9999, 12, 31)});
        d->setFormat(u"mm/dd/yyyy"_qs);
        d->setDaysFlag(LastDay);
        d->setValue(Date{serial(2013, 3, 5)});
        other->setValue(Date{serial(2013, 3, 5)});
        other->setDaysFlag(LastDay);
        other->setFormat(u"mm/dd/yyyy"_qs);
        for (KelDate *x : {d, other}) {
            QCOMPARE(x->Value(), Variant(Date{serial(2013, 3, 31)}));
            QCOMPARE(x->Text1->Text(), u"03/31/2013"_qs);
            QVERIFY(!x->Changed());
        }
    }

    // What a field showed, it shows again after a save and a load; today is saved as "Now".
    void persistence_data()
    {
        QTest::addColumn<Variant>("value");
        QTest::addColumn<Variant>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a date") << Variant(Date{serial(2013, 3, 15)}) << Variant(u"15032013"_qs) << u"15/03/2013"_qs;
        QTest::newRow("Null") << Variant(Null) << Variant(u""_qs) << QString();
        QTest::newRow("never assigned") << Variant() << Variant(u""_qs) << QString();
        QTest::newRow("today") << Variant(Date{serial(2024, 1, 15)}) << Variant() << u"01/02/2024"_qs;
    }
    void persistence()
    {
        QFETCH(Variant, value);
        QFETCH(Variant, stored);
        QFETCH(QString, shown);
        KelDate a;
        a.InitProperties();
        if (!value.isEmpty())
            a.setValue(value);
        a.setFormat(u"dd.mm.yyyy"_qs);
        a.setFormat(u"dd/mm/yyyy"_qs);
        a.setMinValue(Date{serial(1990, 1, 1)});
        MemoryPropertyBag bag;
        a.WriteProperties(bag);
        QCOMPARE(bag.value(u"Value"_qs), stored);
        QStringList names;
        for (const auto &e : bag.entries())
            names << e.first;
        QCOMPARE(names.filter(QRegularExpression(u"^(Value|UpDown|MinValue)$"_qs)).join(u','),
                 str(stored.isEmpty() ? u"MinValue" : u"MinValue,Value"));
        rec->now = QDateTime(QDate(2024, 2, 1), QTime(9, 0));
        KelDate b;
        b.ReadProperties(bag);
        QCOMPARE(b.Text1->Text(), shown);
        QCOMPARE(b.MinValue().serial, serial(1990, 1, 1));
        QCOMPARE(b.Valid(), shown.isEmpty() ? false : true);
    }

    // Hosts reach every property by name with plain values.
    void dispatch()
    {
        QVERIFY(dispatchPut(d, u"DaysFlag", qint16(FirstDay)));
        QVERIFY(dispatchPut(d, u"Value", u"15/03/2013"_qs));
        QCOMPARE(dispatchGet(d, u"Value"), Variant(Date{serial(2013, 3, 1)}));
        QVERIFY(dispatchPut(d, u"MinValue", Date{serial(2014, 1, 1)}));
        QCOMPARE(dispatchGet(d, u"Valid", {true}), Variant(false));
        QCOMPARE(rec->boxes.size(), size_t(1));
        QCOMPARE(QApplication::focusWidget(), text1(d)); // the message puts the user back
    }
};

QTEST_MAIN(TestKelDate)
#include "tst_keldate.moc"
