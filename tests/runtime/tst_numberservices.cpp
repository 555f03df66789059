#include "kelfixture.h"
#include "platform/format.h"
#include "runtime/kelruntime8.h"

#include <QTest>
#include <cmath>
#include <limits>

using namespace kel;

namespace {
const QLocale us(QLocale::English, QLocale::UnitedStates);
const QLocale de(QLocale::German, QLocale::Germany);
} // namespace

class TestNumberServices : public QObject
{
    Q_OBJECT
private slots:
    void roundNumber_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<double>("expected");
        // The binary forms of these lie just below the half; the decimal text decides.
        QTest::newRow("2.675") << 2.675 << 2 << 2.68;
        QTest::newRow("1.005") << 1.005 << 2 << 1.01;
        QTest::newRow("0.285") << 0.285 << 2 << 0.29;
        QTest::newRow("1.45 to 1") << 1.45 << 1 << 1.5;
        // Half away from zero, not to even.
        QTest::newRow("-2.5 to 0") << -2.5 << 0 << -3.0;
        // Really below the half.
        QTest::newRow("2.67499") << 2.67499 << 2 << 2.67;
        QTest::newRow("0.4999999999999999 to 0") << 0.4999999999999999 << 0 << 0.0;
        QTest::newRow("bound plus half a cent") << 9999999999.995 << 2 << 10000000000.0;
        // No more digits than the forms show (15 significant), so stored equals shown.
        QTest::newRow("sixteen places, fifteen digits") << 0.1234567890123456 << 16 << 0.123456789012346;
        QTest::newRow("ten integer digits, six places") << 1234567890.123456 << 6 << 1234567890.12346;
        QTest::newRow("negative to zero") << -0.004 << 2 << 0.0;
    }
    void roundNumber()
    {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(double, expected);
        KelRuntimeDates dates(us);
        const double r = dates.RoundNumber(value, qint16(decimals));
        QCOMPARE(r, expected);
        QVERIFY(!std::signbit(r) || r != 0); // no -0 that would print as "-0.00"
        QCOMPARE(dates.NumberFromValue(value, qint16(decimals)), expected);
    }

    void numberFromText_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<double>("expected");
        QTest::newRow("display form") << us << u"1,234.50"_qs << 2 << 1234.5;
        QTest::newRow("parentheses") << us << u"(1,234.50)"_qs << 2 << -1234.5;
        QTest::newRow("minus before parentheses") << us << u"-(1,234.50)"_qs << 2 << -1234.5;
        QTest::newRow("unicode minus") << QLocale(QLocale::Swedish, QLocale::Sweden) << u"\u22121234,5"_qs << 2 << -1234.5;
        QTest::newRow("overflow is the largest") << us << u"1e400"_qs << 0 << std::numeric_limits<double>::max();
        QTest::newRow("editing form") << us << u"-1234.5"_qs << 2 << -1234.5;
        QTest::newRow("no leading zero") << us << u".5"_qs << 2 << 0.5;
        QTest::newRow("blanks") << us << u"  42  "_qs << 0 << 42.0;
        QTest::newRow("trailing minus") << us << u"7.25-"_qs << 2 << -7.25;
        QTest::newRow("rounded to the field") << us << u"2.675"_qs << 2 << 2.68;
        QTest::newRow("empty") << us << QString() << 2 << 0.0;
        QTest::newRow("lone minus") << us << u"-"_qs << 2 << 0.0;
        QTest::newRow("letters") << us << u"abc"_qs << 2 << 0.0;
        QTest::newRow("digits then letters") << us << u"12abc"_qs << 2 << 0.0;
        QTest::newRow("two separators") << us << u"1.2.3"_qs << 2 << 0.0;
        QTest::newRow("german display") << de << u"(1.234,56)"_qs << 2 << -1234.56;
        QTest::newRow("german point is grouping") << de << u"1.5"_qs << 2 << 15.0;
    }
    void numberFromText()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, text);
        QFETCH(int, decimals);
        QFETCH(double, expected);
        QCOMPARE(KelRuntimeDates(locale).NumberFromValue(text, qint16(decimals)), expected);
    }

    void numberFromOtherValues()
    {
        KelRuntimeDates dates(us);
        QCOMPARE(dates.NumberFromValue(Variant(), 2), 0.0);
        QCOMPARE(dates.NumberFromValue(Null, 2), 0.0);
        QCOMPARE(dates.NumberFromValue(qint16(7), 2), 7.0);
        QCOMPARE(dates.NumberFromValue(true, 2), -1.0);
    }

    // What a field shows, resting or edited, reads back as the value it holds.
    void formsReadBack_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::newRow("en-US") << us;
        QTest::newRow("de-DE") << de;
        QTest::newRow("sv-SE (U+2212 minus)") << QLocale(QLocale::Swedish, QLocale::Sweden);
    }
    void formsReadBack()
    {
        QFETCH(QLocale, locale);
        KelRuntimeDates dates(locale);
        const QString dec = locale.decimalPoint();
        for (qint16 d = 0; d <= 16; ++d) {
            // The widest value of fifteen digits with up to d decimals, at both bounds.
            const int frac = std::min<int>(d, 5);
            const double widest = (u"9999999999."_qs + QString(frac, u'9')).toDouble();
            const double seeds[] = {0, 0.5, -0.5, 1234.5678, -98765.4321, 0.001, std::pow(10.0, -d),
                                    9999999999, -9999999999, widest, -widest, 1234567890.123456, -0.1234567890123456};
            QString pattern(15, u'#');
            if (d > 0)
                pattern += u'.' + QString(d, u'#');
            for (double seed : seeds) {
                const double v = dates.RoundNumber(seed, d);
                for (bool group : {true, false}) {
                    const QString shown = FormatNumberRegional(v, d, true, true, group, locale);
                    QVERIFY2(dates.NumberFromValue(shown, d) == v, qPrintable(shown));
                }
                QString edited = FormatNumber(v, pattern, locale);
                if (edited.endsWith(dec))
                    edited.chop(dec.size());
                QVERIFY2(dates.NumberFromValue(edited, d) == v, qPrintable(edited));
            }
        }
    }
};

QTEST_MAIN(TestNumberServices)
#include "tst_numberservices.moc"
