#include "controls/datetime/keltime.h"
#include "keys.h"
#include "kelfixture.h"

#include <QApplication>
#include <QSignalSpy>

using namespace kel;
using namespace kel::test;

namespace {

using Form = TwoFieldForm<KelTime>;
QString str(const char16_t *s) { return QString::fromUtf16(s); }

struct StepCase { const char16_t *format, *text; int caret; const char16_t *keys, *shown; int caretAfter, changes; };

} // namespace

Q_DECLARE_METATYPE(StepCase)

class TestKelTime : public QObject
{
    Q_OBJECT
    RecordingServices *rec = nullptr; // now is 15 January 2024 10:30:00
    std::unique_ptr<Form> f;
    KelTime *t = nullptr;

private slots:
    void init()
    {
        useRuntime();
        rec = recordServices();
        f = std::make_unique<Form>();
        t = f->first;
        QVERIFY(f->ready());
        enter(f->second);
    }
    void cleanup() { f.reset(); }

    void formatCorrection_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("stored");
        QTest::newRow("hh:mm") << u"hh:mm"_qs << u"hh:nn"_qs;
        QTest::newRow("upper case") << u"HH:MM:SS"_qs << u"HH:NN:SS"_qs;
        QTest::newRow("mixed case pair") << u"h:Mm"_qs << u"h:NN"_qs;
        QTest::newRow("month before") << u"dd/mm hh:mm"_qs << u"dd/mm hh:nn"_qs;
        QTest::newRow("only the first") << u"h:mm h:mm"_qs << u"h:nn h:mm"_qs;
        QTest::newRow("empty stored") << QString() << QString();
    }
    void formatCorrection()
    {
        QFETCH(QString, given);
        QFETCH(QString, stored);
        t->setFormat(given);
        QCOMPARE(t->Format(), stored);
    }

    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        const char16_t *hns = u"hh:nn:ss";
        QTest::newRow("minutes under the caret") << StepCase{hns, u"10:15:30", 4, u"U", u"10:16:30", 5, 1};
        QTest::newRow("hours at start") << StepCase{hns, u"10:15:30", 0, u"-", u"09:15:30", 2, 1};
        QTest::newRow("seconds, caret past end") << StepCase{hns, u"10:15:30", 7, u"D", u"10:15:29", 8, 1};
        QTest::newRow("half-day marker steps minutes") << StepCase{u"hh:nn am/pm", u"10:15 am", 7, u"+", u"10:16 am", 5, 1};
        QTest::newRow("no wrap past midnight") << StepCase{u"hh:nn", u"23:59", 4, u"U", u"23:59", 5, 1};
        QTest::newRow("none below midnight") << StepCase{hns, u"00:00:00", 1, u"D", u"00:00:00", 2, 0};
        QTest::newRow("empty shows now") << StepCase{hns, u"", 0, u"S", u"10:30:00", 5, 1};
        QTest::newRow("typed over Null: minutes, no Change") << StepCase{hns, u"9:5", 0, u"U", u"09:06:00", 5, 0};
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

    // Only the time characters are typed, over what follows the caret; "+"/"-" step.
    void typing_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("shown");
        QTest::newRow("refused") << u"x/,Z"_qs << u"10:15 am"_qs;
        QTest::newRow("digits overwrite") << u"09"_qs << u"09:15 am"_qs;
        QTest::newRow("half-day letters") << u"I1 p"_qs << u"1p10:15 am"_qs;
        QTest::newRow("separators") << u"I.:"_qs << u".:10:15 am"_qs;
    }
    void typing()
    {
        QFETCH(QString, keys);
        QFETCH(QString, shown);
        t->setValue(u"10:15"_qs);
        enter(t);
        play(t, keys);
        QCOMPARE(text1(t)->text(), shown);
    }

    // Bounds keep only the time of day and drag each other; a value set outside them stays
    // until the commit clamps it.
    void bounds()
    {
        t->setMinValue(Date{clock(8, 0)});
        t->setMaxValue(Date{2.25});
        QCOMPARE(t->MaxValue().serial, clock(6, 0));
        QCOMPARE(t->MinValue().serial, clock(6, 0));
        // A split second before midnight is the last second, not midnight, also as a QTime.
        QVERIFY(t->setProperty("MaxValue", QDateTime(QDate(2000, 1, 1), QTime(23, 59, 59, 999))));
        QCOMPARE(t->property("MaxValue").toTime(), QTime(23, 59, 59));
        t->setMaxValue(Date{1.75});
        t->setValue(u"23:00"_qs);
        QCOMPARE(t->Value(), Variant(Date{clock(23, 0)}));
        QVERIFY(!t->Valid(true));
        QCOMPARE(rec->boxes.back().prompt, u"This field only accepts times from 06:00 am to 06:00 pm."_qs);
        QCOMPARE(rec->boxes.back().title, u"Invalid Time"_qs);
        enter(f->second);
        QCOMPARE(t->Value(), Variant(Date{clock(18, 0)}));
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
        QCOMPARE(rec->boxes.size(), size_t(1));
        QCOMPARE(rec->boxes[0].prompt, u"Please enter a valid time in this field."_qs);
    }

    // Saved as "hh:nn:ss" whatever the display format; a missing value loads through the parser.
    void persistence_data()
    {
        QTest::addColumn<Variant>("value");
        QTest::addColumn<Variant>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a time") << Variant(u"2:05:09 pm"_qs) << Variant(u"14:05:09"_qs) << u"02:05 pm"_qs;
        QTest::newRow("Null") << Variant(Null) << Variant(u""_qs) << QString();
        QTest::newRow("never assigned") << Variant() << Variant(u""_qs) << QString();
        QTest::newRow("absent from the bag") << Variant(Date{0}) << Variant(u"00:00:00"_qs) << u"12:00 am"_qs;
    }
    void persistence()
    {
        QFETCH(Variant, value);
        QFETCH(Variant, stored);
        QFETCH(QString, shown);
        KelTime a;
        a.InitProperties();
        if (!value.isEmpty())
            a.setValue(value);
        MemoryPropertyBag bag;
        a.WriteProperties(bag);
        QCOMPARE(bag.value(u"Value"_qs), stored);
        KelTime b;
        b.ReadProperties(bag);
        QCOMPARE(b.Text1->Text(), shown);
        MemoryPropertyBag empty;
        KelTime c;
        c.ReadProperties(empty);
        QCOMPARE(c.Value(), Variant(Date{0}));
    }
};

QTEST_MAIN(TestKelTime)
#include "tst_keltime.moc"
