#include "platform/dayserial.h"
#include "platform/propertybag.h"
#include "platform/variant.h"

#include <QDateTime>
#include <QLocale>
#include <cmath>
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

    // Empty counts as 0, Null as no number; integers round half to even and refuse what does not fit.
    void kinds()
    {
        QVERIFY(Variant().isNumeric());
        QVERIFY(!Variant(Null).isNumeric());
        QCOMPARE(Variant(Null).toString(), QString());
        for (double d : {40000.0, qQNaN(), qInf(), -qInf()}) {
            bool ok16 = true, ok32 = true;
            Variant(d).toInt16(&ok16);
            Variant(d * 1e6).toInt32(&ok32);
            QVERIFY(!ok16 && !ok32);
        }
        QCOMPARE(Variant(2.5).toInt16(), qint16(2));
        QCOMPARE(Variant(3.5).toInt16(), qint16(4));
    }

    void classicDiffers_data()
    {
        QTest::addColumn<Variant>("a");
        QTest::addColumn<Variant>("b");
        QTest::addColumn<bool>("differs");
        const auto row = [](const char *name, const Variant &a, const Variant &b, bool differs) { QTest::newRow(name) << a << b << differs; };
        // Each pair is tried both ways round.
        row("null vs value", Null, 2.0, false);  row("empty vs zero", Variant(), 0.0, false);
        row("empty vs text", Variant(), u""_qs, false);  row("empty vs date", Variant(), Date{45000}, true);
        row("date vs same serial", Date{45000.5}, 45000.5, false);  row("integer vs double", qint16(3), 3.0, false);
        row("true vs -1", true, qint32(-1), false);  row("text case", u"a"_qs, u"A"_qs, true);
        row("number vs its text", 3.0, u"3"_qs, true);
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

    // Plain QVariants in, and what a Qt user reads back out.
    void qvariantIn_data()
    {
        QTest::addColumn<QVariant>("in");
        QTest::addColumn<Variant>("variant");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("dateTime");
        const auto row = [](const char *name, const QVariant &in, const Variant &v, const QString &text, const QDateTime &dt = {}) {
            QTest::newRow(name) << in << v << text << dt;
        };
        const auto at = [](int y, int m, int d, int h = 0) { return QDateTime(QDate(y, m, d), QTime(h, 0)); };
        row("double", 2.5, 2.5, u"2.5"_qs, at(1900, 1, 1, 12));  row("int", 7, qint32(7), u"7"_qs, at(1900, 1, 6));
        row("huge integer", Q_INT64_C(1) << 40, 1099511627776.0, u"1099511627776"_qs);
        row("bool", true, true, u"True"_qs, at(1899, 12, 29));  row("text", u"abc"_qs, u"abc"_qs, u"abc"_qs);
        row("ISO text", u"2013-03-15"_qs, u"2013-03-15"_qs, u"2013-03-15"_qs, at(2013, 3, 15));
        row("QDate", QDate(2013, 3, 15), Date{41348}, u"2013-03-15"_qs, at(2013, 3, 15));
        row("QDateTime", at(2013, 3, 15, 18), Date{41348.75}, u"2013-03-15T18:00:00"_qs, at(2013, 3, 15, 18));
        row("QTime", QTime(6, 0), Date{0.25}, u"1899-12-30T06:00:00"_qs, at(1899, 12, 30, 6));
        row("invalid QDate is Null", QDate(), Null, QString());  row("nullptr is Null", QVariant::fromValue(nullptr), Null, QString());
    }
    void qvariantIn()
    {
        QFETCH(QVariant, in);
        QFETCH(Variant, variant);
        QFETCH(QString, text);
        QFETCH(QDateTime, dateTime);
        QVERIFY(in.convert(QMetaType::fromType<Variant>()));
        QCOMPARE(in.value<Variant>(), variant);
        QCOMPARE(in.toString(), text);
        QCOMPARE(in.toDateTime(), dateTime);
        QCOMPARE(in.toDate(), dateTime.date());
        bool ok = false;
        const double d = in.toDouble(&ok);
        QCOMPARE(ok, variant.isNumeric() || variant.type() == Variant::Type::Date || dateTime.isValid());
        if (ok && dateTime.isValid())
            QCOMPARE(toQDateTime(d), dateTime);
    }

    // Out through QVariant: Empty reads as 0, Null as no number or date; a date as its serial, its
    // date and time, and ISO text.
    void outThroughQVariant()
    {
        bool ok = false;
        QCOMPARE(QVariant::fromValue(Variant()).toDouble(&ok), 0.0);
        QVERIFY(ok);
        QVariant::fromValue(Variant(Null)).toDouble(&ok);
        QVERIFY(!ok);
        QVERIFY(!QVariant::fromValue(Variant(Null)).toDate().isValid());
        const QVariant v = QVariant::fromValue(Date{41348.5});
        QCOMPARE(v.toDouble(), 41348.5);
        QCOMPARE(v.toDateTime(), QDateTime(QDate(2013, 3, 15), QTime(12, 0)));
        QCOMPARE(v.toString(), u"2013-03-15T12:00:00"_qs);
        QCOMPARE(v.toTime(), QTime(12, 0));
        // A split second before midnight keeps its day: never the next day's 00:00 as a time.
        QCOMPARE(QVariant::fromValue(Date{0.99999999}).toTime(), QTime(23, 59, 59, 999));
        QCOMPARE(QVariant::fromValue(Variant(Date{1.99999999})).toTime(), QTime(23, 59, 59, 999));
        for (const QVariant &in : {QVariant(QDate(2013, 3, 15)), QVariant(41348), QVariant(u"2013-03-15"_qs)})
            QCOMPARE(in.value<Date>().serial, 41348.0);
        QVariant tooLate(1e9);
        QVERIFY(!tooLate.convert(QMetaType::fromType<Date>()));
        QVERIFY(!QVariant::fromValue(Date{std::nan("")}).toDate().isValid());
    }
};

QTEST_MAIN(TestVariant)
#include "tst_variant.moc"
