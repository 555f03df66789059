#include "controls/datetime/keltime.h"
#include "spinkeys.h"
#include "library/dispatch.h"

#include <QSignalSpy>

using namespace kel;
using namespace kel::test;

namespace {

struct StepCase { const char16_t *format, *text; int caret; const char16_t *keys, *shown; int caretAfter, changes; };

} // namespace

Q_DECLARE_METATYPE(StepCase)

class TestKelTime : public QObject
{
    Q_OBJECT
    std::unique_ptr<FieldForm<KelTime>> f; // now is 15 January 2024 10:30:00
    KelTime *t = nullptr;

private slots:
    void init()
    {
        f = std::make_unique<FieldForm<KelTime>>();
        t = f->field;
        QVERIFY(f->ready());
    }
    void cleanup() { f.reset(); }

    // The first h:mm pair's mm means minutes, in the case it was given in.
    void formatCorrection_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("stored");
        QTest::newRow("hh:mm") << u"hh:mm"_qs << u"hh:nn"_qs;
        QTest::newRow("mixed case pair") << u"h:Mm"_qs << u"h:NN"_qs;
        QTest::newRow("only the first, after a month") << u"dd/mm h:mm h:mm"_qs << u"dd/mm h:nn h:mm"_qs;
        QTest::newRow("a letter that upper-cases longer") << u"ß hh:mm"_qs << u"ß hh:nn"_qs;
    }
    void formatCorrection()
    {
        QFETCH(QString, given);
        QFETCH(QString, stored);
        t->setFormat(given);
        QCOMPARE(t->Format(), stored);
    }

    // Only the time characters are typed, over what follows the caret; "+"/"-" step.
    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        const char16_t *hns = u"hh:nn:ss";
        QTest::newRow("minutes under the caret") << StepCase{hns, u"10:15:30", 4, u"U", u"10:16:30", 5, 1};
        QTest::newRow("hours, caret after them") << StepCase{hns, u"10:15:30", 2, u"U", u"11:15:30", 2, 1};
        QTest::newRow("hours at start") << StepCase{hns, u"10:15:30", 0, u"-", u"09:15:30", 2, 1};
        QTest::newRow("seconds, caret past end") << StepCase{hns, u"10:15:30", 7, u"D", u"10:15:29", 8, 1};
        QTest::newRow("half-day marker steps minutes") << StepCase{u"hh:nn am/pm", u"10:15 am", 7, u"+", u"10:16 am", 5, 1};
        QTest::newRow("no wrap past midnight") << StepCase{u"hh:nn", u"23:59", 4, u"U", u"23:59", 5, 1};
        QTest::newRow("none below midnight") << StepCase{hns, u"00:00:00", 1, u"D", u"00:00:00", 2, 0};
        QTest::newRow("empty shows now") << StepCase{hns, u"", 0, u"S", u"10:30:00", 5, 1};
        QTest::newRow("typed over Null: minutes, no Change") << StepCase{hns, u"9:5", 0, u"U", u"09:06:00", 5, 0};
        const char16_t *ampm = u"hh:nn am/pm";
        QTest::newRow("refused keys") << StepCase{ampm, u"10:15 am", 0, u"x/,Z", u"10:15 am", 0, 0};
        QTest::newRow("digits overwrite") << StepCase{ampm, u"10:15 am", 0, u"09", u"09:15 am", 2, 0};
        QTest::newRow("half-day letters") << StepCase{ampm, u"10:15 am", 0, u"I1 p", u"1p10:15 am", 2, 0};
        QTest::newRow("separators") << StepCase{ampm, u"10:15 am", 0, u"I.:", u".:10:15 am", 2, 0};
    }
    void stepping()
    {
        QFETCH(StepCase, c);
        t->setFormat(str(c.format));
        t->setValue(str(c.text));
        QSignalSpy changes(t, &KelTime::Change);
        enter(t);
        if (str(c.text) != text1(t)->text()) { // typed as the user left it
            t->setValue(Null);
            QTest::keyClicks(text1(t), str(c.text));
        }
        text1(t)->setCursorPosition(c.caret);
        play(t, str(c.keys));
        QCOMPARE(text1(t)->text(), str(c.shown));
        QCOMPARE(text1(t)->cursorPosition(), c.caretAfter);
        QCOMPARE(changes.size(), c.changes);
    }

    // At run time the shown text is read again in the new format; while a form loads (a control
    // not yet shown) the value is kept and shown in it.
    void formatPut_data()
    {
        QTest::addColumn<bool>("loading");
        QTest::addColumn<QString>("shown");
        QTest::newRow("at run time") << false << u"10:15:00"_qs;
        QTest::newRow("while loading") << true << u"10:15:30"_qs;
    }
    void formatPut()
    {
        QFETCH(bool, loading);
        QFETCH(QString, shown);
        KelTime fresh;
        KelTime *c = loading ? &fresh : t;
        c->setValue(Date{clock(10, 15, 30)});
        QCOMPARE(c->Text1->Text(), u"10:15 am"_qs);
        c->setFormat(u"hh:nn:ss"_qs);
        QCOMPARE(c->Text1->Text(), shown);
        QCOMPARE(c->Changed(), !loading);
    }

    // Bounds keep only the time of day in whole seconds and drag each other; a value set
    // outside them stays until the commit clamps it.
    void bounds()
    {
        // A tiny negative serial is midnight of the day, never 24:00.
        QVERIFY(t->setProperty("Value", -1.48604e-267));
        QCOMPARE(t->Value(), Variant(Date{0}));
        t->setMinValue(Date{clock(8, 0)});
        t->setMaxValue(Date{2.25});
        QCOMPARE(t->MinValue().serial, clock(6, 0));
        // Through dispatch too a split second before midnight is the last second of the day.
        QVERIFY(dispatchPut(t, u"MaxValue", 0.99999999));
        QCOMPARE(t->MaxValue().serial, clock(23, 59, 59));
        QCOMPARE(t->MinValue().serial, clock(6, 0));
        // A split second before midnight is the last second, not midnight, also as a QTime.
        QVERIFY(t->setProperty("MaxValue", QDateTime(QDate(2000, 1, 1), QTime(23, 59, 59, 999))));
        QCOMPARE(t->property("MaxValue").toTime(), QTime(23, 59, 59));
        t->setMaxValue(Date{1.75});
        t->setValue(u"23:00"_qs);
        QCOMPARE(t->Value(), Variant(Date{clock(23, 0)}));
        QVERIFY(!t->Valid(true));
        QCOMPARE(f->rec->boxes.back().prompt, u"This field only accepts times from 06:00 am to 06:00 pm."_qs);
        QCOMPARE(f->rec->boxes.back().title, u"Invalid Time"_qs);
        enter(f->second);
        QCOMPARE(t->Text1->Text(), u"06:00 pm"_qs);
    }

    // An optional field holding no time is valid whatever its box shows; a mandatory one is not.
    void validWithoutTime()
    {
        enter(t);
        QTest::keyClicks(text1(t), u"99"_qs);
        t->setMandatory(false);
        QVERIFY(t->Valid(true));
        t->setMandatory(true);
        QVERIFY(!t->Valid(true));
        QCOMPARE(f->rec->boxes.size(), size_t(1));
        QCOMPARE(f->rec->boxes[0].prompt, u"Please enter a valid time in this field."_qs);
    }

    // Saved as "hh:nn:ss" whatever the display format; a bag without a value loads midnight.
    void persistence_data()
    {
        QTest::addColumn<Variant>("value");
        QTest::addColumn<Variant>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a time") << Variant(u"2:05:09 pm"_qs) << Variant(u"14:05:09"_qs) << u"02:05 pm"_qs;
        QTest::newRow("Null") << Variant(Null) << Variant(u""_qs) << QString();
        QTest::newRow("absent from the bag") << Variant() << Variant() << u"12:00 am"_qs;
    }
    void persistence()
    {
        QFETCH(Variant, value);
        QFETCH(Variant, stored);
        QFETCH(QString, shown);
        KelTime a;
        a.InitProperties();
        a.setValue(value);
        MemoryPropertyBag bag;
        if (!value.isEmpty())
            a.WriteProperties(bag);
        QCOMPARE(bag.value(u"Value"_qs), stored);
        KelTime b;
        b.ReadProperties(bag);
        QCOMPARE(b.Text1->Text(), shown);
    }
};

QTEST_MAIN(TestKelTime)
#include "tst_keltime.moc"
