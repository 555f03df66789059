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
const QLocale sv(QLocale::Swedish, QLocale::Sweden);
struct Case { Variant value; int decimals; double expected; QLocale locale; };
} // namespace

Q_DECLARE_METATYPE(Case)

class TestRuntime : public QObject
{
    Q_OBJECT
private slots:
    // A Double goes through RoundNumber as well; shown forms are covered by formsReadBack.
    void numberFromValue_data()
    {
        QTest::addColumn<Case>("c");
        const auto row = [](const char *name, const Variant &v, int d, double want, const QLocale &l = us) {
            QTest::newRow(name) << Case{v, d, want, l};
        };
        // The binary forms of these lie just below the half; the decimal text decides.
        row("2.675", 2.675, 2, 2.68);  row("text 1.005", u"1.005", 2, 1.01);
        // Half away from zero, not to even; really below the half stays below.
        row("-2.5", -2.5, 0, -3);  row("2.67499", 2.67499, 2, 2.67);  row("0.4999999999999999", 0.4999999999999999, 0, 0);
        row("negative to +0", -0.004, 2, 0);
        // No more digits than the forms show (15 significant), so stored equals shown.
        row("sixteen places", 0.1234567890123456, 16, 0.123456789012346);
        row("ten integer digits", 1234567890.123456, 6, 1234567890.12346);
        row("minus before parentheses", u"-(1,234.50)", 2, -1234.5);
        row("U+2212 minus", u"\u22121234,5", 2, -1234.5, sv);
        row("overflow is the largest", u"1e400", 0, std::numeric_limits<double>::max());
        row("not a number", u"12abc", 2, 0);  row("german point groups", u"1.5", 2, 15, de);
        row("Empty", Variant(), 2, 0);  row("Null", Null, 2, 0);  row("True", true, 2, -1);
    }
    void numberFromValue()
    {
        QFETCH(Case, c);
        KelRuntimeDates dates(c.locale);
        const double r = dates.NumberFromValue(c.value, qint16(c.decimals));
        QCOMPARE(r, c.expected);
        QVERIFY(!std::signbit(r) || r != 0); // no -0 that would print as "-0.00"
        if (const double *d = c.value.get<double>())
            QCOMPARE(dates.RoundNumber(*d, qint16(c.decimals)), c.expected);
    }

    // What a field shows, resting or edited, reads back as the value it holds.
    void formsReadBack_data()
    {
        QTest::addColumn<QLocale>("locale");
        for (const QLocale &l : {us, de, sv})
            QTest::newRow(qPrintable(l.name())) << l;
    }
    void formsReadBack()
    {
        QFETCH(QLocale, locale);
        KelRuntimeDates dates(locale);
        const QString dec = locale.decimalPoint();
        for (qint16 d = 0; d <= 16; ++d) {
            // The widest value of fifteen digits with up to d decimals, at both bounds.
            const double widest = (u"9999999999."_qs + QString(std::min<int>(d, 5), u'9')).toDouble();
            const double seeds[] = {0, 0.5, -0.5, 1234.5678, -98765.4321, 0.001, std::pow(10.0, -d),
                                    9999999999, -9999999999, widest, -widest, 1234567890.123456, -0.1234567890123456};
            const QString pattern = QString(15, u'#') + (d > 0 ? u'.' + QString(d, u'#') : QString());
            for (double seed : seeds) {
                const double v = dates.RoundNumber(seed, d);
                QString edited = FormatNumber(v, pattern, locale);
                if (edited.endsWith(dec))
                    edited.chop(dec.size());
                for (const QString &shown : {FormatNumberRegional(v, d, true, true, true, locale),
                                             FormatNumberRegional(v, d, true, true, false, locale), edited})
                    QVERIFY2(dates.NumberFromValue(shown, d) == v, qPrintable(shown));
            }
        }
    }

    // Joining and splitting are inverses for any items, quotes, commas and empties included.
    void listRoundTrip_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("joined");
        QTest::newRow("nothing") << QStringList() << QString();
        QTest::newRow("plain") << QStringList{u"a"_qs, u"b c"_qs} << u"a,b c"_qs;
        QTest::newRow("comma") << QStringList{u"x,y"_qs, u"z"_qs} << u"\"x,y\",z"_qs;
        QTest::newRow("quotes") << QStringList{u"say \"hi\""_qs} << u"\"say \"\"hi\"\"\""_qs;
        QTest::newRow("lone quote") << QStringList{u"\"abc"_qs, u"d\""_qs} << u"\"\"\"abc\",\"d\"\"\""_qs;
        QTest::newRow("one empty") << QStringList{QString()} << u"\"\""_qs;
        QTest::newRow("empties") << QStringList{QString(), QString(), u"a"_qs, QString()} << u"\"\",,a,"_qs;
        QTest::newRow("blanks kept") << QStringList{u" a "_qs, u" "_qs} << u" a , "_qs;
    }
    void listRoundTrip()
    {
        QFETCH(QStringList, items);
        QFETCH(QString, joined);
        KelRuntime8 rt;
        QString list;
        for (const QString &i : items)
            list = rt.ListAppend(std::move(list), i);
        QCOMPARE(list, joined);
        QStringList back;
        qint32 pos = 0;
        for (QString field = rt.ReadField(list, pos, 44); pos >= 0; field = rt.ReadField(list, pos, 44))
            back << field;
        QCOMPARE(back, items);
    }

    // Tab is the one key it sends (the fields' Enter tests use it); any other says so.
    void sendKey() { QVERIFY_THROWS_EXCEPTION(RuntimeError, KelRuntime8().SendKey(13)); }
};

QTEST_MAIN(TestRuntime)
#include "tst_runtime.moc"