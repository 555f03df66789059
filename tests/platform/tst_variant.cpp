#include "platform/propertybag.h"
#include "platform/variant.h"

#include <QLocale>
#include <QTest>

using namespace kel;

class TestVariant : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    // The classic numeric test that setters use.
    void numericText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("numeric");
        QTest::addColumn<double>("value");
        const auto row = [](const char *name, const char16_t *t, bool numeric, double v) {
            QTest::newRow(name) << QString::fromUtf16(t) << numeric << v;
        };
        row("int", u"42", true, 42);  row("blanks", u"  -3.5 ", true, -3.5);  row("grouped", u"1,234.5", true, 1234.5);
        row("parens", u"(12.00)", true, -12);  row("trailing minus", u"7-", true, -7);  row("exponent", u"1.5E3", true, 1500);
        row("hex", u"&HFF", true, 255);  row("hex integer wraps", u"&HFFFF", true, -1);
        row("letters", u"12abc", false, 0);  row("two points", u"1.2.3", false, 0);  row("empty text", u"", false, 0);
        row("sign only", u"-", false, 0);  row("dangling exponent", u"1E", false, 0);
    }
    void numericText()
    {
        QFETCH(QString, text);
        QFETCH(bool, numeric);
        QFETCH(double, value);
        const Variant v(text);
        QCOMPARE(v.isNumeric(), numeric);
        bool ok = false;
        QCOMPARE(v.toDouble(&ok), value);
        QCOMPARE(ok, numeric);
    }

    void kinds()
    {
        QVERIFY(Variant().isNumeric());            // Empty counts as 0
        QVERIFY(!Variant(Null).isNumeric());
        QVERIFY(Variant(true).isNumeric());
        QCOMPARE(Variant(true).toDouble(), -1.0);
        QCOMPARE(Variant(Null).toString(), QString());
        QCOMPARE(Variant(2.5).toString(), u"2.5"_qs);
        QCOMPARE(Variant(1e20).toString(), u"1E+20"_qs);
        bool ok = true;
        for (double d : {40000.0, qQNaN(), qInf(), -qInf()}) {
            ok = true;
            Variant(d).toInt16(&ok);
            QVERIFY(!ok);
            ok = true;
            Variant(d * 1e6).toInt32(&ok);
            QVERIFY(!ok);
        }
        QCOMPARE(Variant(2.5).toInt16(), qint16(2)); // integer conversion rounds half to even
        QCOMPARE(Variant(3.5).toInt16(), qint16(4));
    }

    void classicDiffers_data()
    {
        QTest::addColumn<Variant>("a");
        QTest::addColumn<Variant>("b");
        QTest::addColumn<bool>("differs");
        QTest::newRow("null vs value") << Variant(Null) << Variant(2.0) << false;
        QTest::newRow("value vs null") << Variant(Date{45000}) << Variant(Null) << false;
        QTest::newRow("empty vs zero") << Variant() << Variant(0.0) << false;
        QTest::newRow("empty vs text") << Variant() << Variant(u""_qs) << false;
        QTest::newRow("empty vs date") << Variant() << Variant(Date{45000}) << true;
        QTest::newRow("date vs same serial") << Variant(Date{45000.5}) << Variant(45000.5) << false;
        QTest::newRow("integer vs double") << Variant(qint16(3)) << Variant(3.0) << false;
        QTest::newRow("true vs -1") << Variant(true) << Variant(qint32(-1)) << false;
        QTest::newRow("text case") << Variant(u"a"_qs) << Variant(u"A"_qs) << true;
        QTest::newRow("number vs its text") << Variant(3.0) << Variant(u"3"_qs) << true;
    }
    void classicDiffers()
    {
        QFETCH(Variant, a);
        QFETCH(Variant, b);
        QFETCH(bool, differs);
        QCOMPARE(kel::differs(a, b), differs);
        QCOMPARE(kel::differs(b, a), differs);
    }

    void bagDefaultsAndCoercion()
    {
        MemoryPropertyBag bag;
        bag.WriteProperty(u"Caption"_qs, u""_qs, u""_qs);
        bag.WriteProperty(u"Enabled"_qs, true, true);
        QVERIFY(bag.entries().isEmpty());              // equal to its default: not stored
        bag.WriteProperty(u"Width"_qs, qint16(300), qint16(0));
        QCOMPARE(bag.ReadProperty(u"width"_qs, qint16(0)), Variant(qint16(300)));
        QCOMPARE(bag.ReadProperty(u"Width"_qs, 0.0), Variant(300.0));
        QCOMPARE(bag.ReadProperty(u"Width"_qs, QString()), Variant(u"300"_qs));
        bag.set(u"Flag"_qs, u"maybe"_qs);
        QCOMPARE(bag.ReadProperty(u"Flag"_qs, true), Variant(true)); // unreadable: the default
        bag.set(u"Big"_qs, 1e9);
        QCOMPARE(bag.ReadProperty(u"Big"_qs, qint16(7)), Variant(qint16(7)));

        MemoryPropertyBag exact(PropertyBag::NameMatch::Exact);
        exact.set(u"Caption"_qs, u"x"_qs);
        QCOMPARE(exact.ReadProperty(u"caption"_qs, u"d"_qs), Variant(u"d"_qs));
        QCOMPARE(exact.ReadProperty(u"Caption"_qs, u"d"_qs), Variant(u"x"_qs));
    }
};

QTEST_MAIN(TestVariant)
#include "tst_variant.moc"
