// Vectors marked [wine] come from Wine's oleaut32 tests (wine-mirror/wine,
// dlls/oleaut32/tests/vartest.c: test_VarDateFromUdate, test_VarUdateFromDate), which are
// checked against Windows; [wine-fmt] from dlls/oleaut32/tests/varformat.c; [wine vartype.c]
// from that suite's vartype.c as carried in reactos/reactos (rostests/winetests); [lo] from
// LibreOffice's Basic tests (LibreOffice/core, basic/qa/vba_tests/dateserial.vb,
// dateadd.vb, format.vb). Other day numbers were counted with Python's datetime.
#include "platform/dayserial.h"

#include <QTest>
#include <cmath>

using namespace kel;

namespace {
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
double orNone(std::optional<double> v) { return v ? *v : kNone; }
double hms(int h, int m, int s) { return (h * 3600 + m * 60 + s) / 86400.0; }
enum Kind { DateFn, TimeFn, DateTimeFn }; // DateSerial, TimeSerial, DateTimeSerial
} // namespace

class TestDaySerial : public QObject
{
    Q_OBJECT

    static void compareSerial(double actual, double expected)
    {
        if (std::isnan(expected)) {
            QVERIFY2(std::isnan(actual), qPrintable(QString::number(actual, 'g', 17)));
            return;
        }
        QVERIFY2(std::fabs(actual - expected) < 1e-9,
                 qPrintable(QStringLiteral("%1 != %2").arg(actual, 0, 'g', 17).arg(expected, 0, 'g', 17)));
    }

private slots:
    void serials_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QList<int>>("args");
        QTest::addColumn<double>("expected");
        auto row = [](const char *name, int kind, QList<int> args, double expected) {
            QTest::newRow(name) << kind << args << expected;
        };
        const double t = 29221.75087962963; // 1 January 1980 18:01:16 [wine]
        row("1980-01-01 [wine]", DateFn, {1980, 1, 1}, 29221.0);
        row("1990-12-31 [wine]", DateFn, {1990, 12, 31}, 33238.0);
        row("epoch [wine]", DateFn, {1899, 12, 30}, 0.0);
        row("minimum [wine]", DateFn, {100, 1, 1}, -657434.0);
        row("maximum [wine]", DateFn, {9999, 12, 31}, 2958465.0);
        row("year 10000 [wine]", DateFn, {10000, 1, 1}, kNone);
        row("two-digit 90 [wine]", DateFn, {90, 12, 31}, 33238.0);
        row("two-digit 0 [wine]", DateFn, {0, 1, 1}, 36526.0);
        row("two-digit 29", DateFn, {29, 12, 31}, 47483.0);
        row("two-digit 30", DateFn, {30, 1, 1}, 10959.0);
        row("day 0 [wine]", DateFn, {1980, 1, 0}, 29220.0);
        row("month 13 [wine]", DateFn, {1980, 13, 1}, 29587.0);
        row("month -300 [wine]", DateFn, {1980, -300, 1}, 20059.0);
        row("day -300 [wine]", DateFn, {1980, 1, -300}, 28920.0);
        row("1999-06-15 [lo]", DateFn, {1999, 6, 15}, 36326.0);
        row("month -6 [lo]", DateFn, {2000, 1 - 7, 15}, 36326.0);
        row("relative, documented example", DateFn, {1990 - 10, 8 - 2, 1 - 1}, 29372.0);
        row("rolls back onto the minimum", DateFn, {101, -11, 1}, -657434.0);
        row("rolls back below the minimum", DateFn, {100, 1, 0}, kNone);
        row("huge day count", DateFn, {1980, 1, 2000000000}, kNone);
        row("huge year", DateFn, {2000000000, 1, 1}, kNone);
        row("18:01:16 [wine]", DateTimeFn, {1980, 1, 1, 18, 1, 16}, t);
        row("hours roll into days [wine]", DateTimeFn, {1980, 1, 0, 42, 1, 16}, t);
        row("negative minutes [wine]", DateTimeFn, {1980, 1, 1, 20, -119, 16}, t);
        row("negative seconds [wine]", DateTimeFn, {1980, 1, 1, 18, 3, -104}, t);
        row("before the epoch, late [wine]", DateTimeFn, {1899, 12, 25, 23, 59, 59}, -5.9999884259259);
        row("time pulls an out-of-range date back", DateTimeFn, {10000, 1, 1, -24, 0, 0}, 2958465.0);
        row("documented 12-6, -15", TimeFn, {12 - 6, -15, 0}, hms(5, 45, 0));
        row("noon", TimeFn, {12, 0, 0}, 0.5);
        row("25 hours is the next day", TimeFn, {25, 0, 0}, 1.0 + hms(1, 0, 0));
        // The day before, with its time of day counted forward.
        row("one hour before midnight", TimeFn, {-1, 0, 0}, -1.0 - hms(23, 0, 0));
        row("far beyond the range", TimeFn, {2000000000, 2000000000, 0}, kNone);
    }
    void serials()
    {
        QFETCH(int, kind);
        QFETCH(QList<int>, args);
        QFETCH(double, expected);
        const auto &a = args;
        compareSerial(orNone(kind == DateFn ? DateSerial(a[0], a[1], a[2])
                             : kind == TimeFn ? TimeSerial(a[0], a[1], a[2])
                                         : DateTimeSerial(a[0], a[1], a[2], a[3], a[4], a[5])),
                      expected);
    }

    void split_data()
    {
        QTest::addColumn<double>("serial");
        QTest::addColumn<QList<int>>("ymdhms");
        QTest::addColumn<int>("weekday"); // Sunday = 1
        QTest::addColumn<int>("dayOfYear");
        QTest::newRow("1980-01-01 [wine]") << 29221.0 << QList<int>{1980, 1, 1, 0, 0, 0} << 3 << 1;
        QTest::newRow("1990-12-31 [wine]") << 33238.0 << QList<int>{1990, 12, 31, 0, 0, 0} << 2 << 365;
        QTest::newRow("epoch [wine]") << 0.0 << QList<int>{1899, 12, 30, 0, 0, 0} << 7 << 364;
        QTest::newRow("minimum [wine]") << -657434.0 << QList<int>{100, 1, 1, 0, 0, 0} << 6 << 1;
        QTest::newRow("maximum [wine]") << 2958465.0 << QList<int>{9999, 12, 31, 0, 0, 0} << 6 << 365;
        QTest::newRow("rounds up to 23:44 [wine]") << 29221.9888884444 << QList<int>{1980, 1, 1, 23, 44, 0} << 3 << 1;
        QTest::newRow("18:01:16 [wine]") << 29221.7508765432 << QList<int>{1980, 1, 1, 18, 1, 16} << 3 << 1;
        QTest::newRow("negative, 06:00 [wine]") << -5.25 << QList<int>{1899, 12, 25, 6, 0, 0} << 2 << 359;
        QTest::newRow("negative, 23:59:59 [wine]") << -5.9999884259259 << QList<int>{1899, 12, 25, 23, 59, 59} << 2 << 359;
        QTest::newRow("-0.25 is day 0 [wine]") << -0.25 << QList<int>{1899, 12, 30, 6, 0, 0} << 7 << 364;
        QTest::newRow("-1.25") << -1.25 << QList<int>{1899, 12, 29, 6, 0, 0} << 6 << 363;
        QTest::newRow("1765 [wine vartype.c]") << -49192.24 << QList<int>{1765, 4, 24, 5, 45, 36} << 4 << 114;
        QTest::newRow("0.99999999 carries into the next day") << 0.99999999 << QList<int>{1899, 12, 31, 0, 0, 0} << 1 << 365;
    }
    void split()
    {
        QFETCH(double, serial);
        QFETCH(QList<int>, ymdhms);
        QFETCH(int, weekday);
        QFETCH(int, dayOfYear);
        const QList<int> got{Year(serial), Month(serial), Day(serial), Hour(serial), Minute(serial), Second(serial)};
        QCOMPARE(got, ymdhms);
        QCOMPARE(Weekday(serial), weekday);
        QCOMPARE(DayOfYear(serial), dayOfYear);
    }

    void invalidSerials_data()
    {
        QTest::addColumn<double>("serial");
        QTest::newRow("below 1 Jan 100 [wine]") << -657435.0;
        QTest::newRow("above 31 Dec 9999 [wine]") << 2958466.0;
        QTest::newRow("last second rounds into year 10000") << 2958465.999999999;
        QTest::newRow("NaN") << kNone;
        QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    }
    void invalidSerials()
    {
        QFETCH(double, serial);
        QVERIFY(!splitDaySerial(serial));
        QCOMPARE(Year(serial), 0);
        QCOMPARE(Weekday(serial), 0);
        QVERIFY(!toQDate(serial).isValid());
    }

    void weekday()
    {
        for (int first = 1; first <= 7; ++first) // the epoch is a Saturday [wine-fmt]
            QCOMPARE(Weekday(0.0, first), 8 - first);
        QCOMPARE(Weekday(40531.0), 1); // a Sunday [wine-fmt]
        QCOMPARE(Weekday(35801.0), 3); // a Tuesday [lo]
        QCOMPARE(Weekday(0.0, 8), 0);
    }

    void dateAdd_data()
    {
        QTest::addColumn<DateInterval>("interval");
        QTest::addColumn<double>("number");
        QTest::addColumn<double>("serial");
        QTest::addColumn<double>("expected");
        const double jan31 = 34730; // 1995-01-31
        const double at = hms(21, 48, 29);
        QTest::newRow("month clamps to February [lo]") << DateInterval::Month << 1.0 << jan31 << 34758.0;
        QTest::newRow("year [lo]") << DateInterval::Year << 1.0 << jan31 << 35095.0;
        QTest::newRow("quarter clamps [lo]") << DateInterval::Quarter << 1.0 << jan31 << 34819.0;
        QTest::newRow("day [lo]") << DateInterval::Day << 1.0 << jan31 << 34731.0;
        QTest::newRow("week [lo]") << DateInterval::Week << 1.0 << jan31 << 34737.0;
        QTest::newRow("hour [lo]") << DateInterval::Hour << 1.0 << 34700 + at << 34700 + hms(22, 48, 29);
        QTest::newRow("minute [lo]") << DateInterval::Minute << 1.0 << jan31 + at << jan31 + hms(21, 49, 29);
        QTest::newRow("second [lo]") << DateInterval::Second << 1.0 << jan31 + at << jan31 + hms(21, 48, 30);
        QTest::newRow("29 Feb + 1 year") << DateInterval::Year << 1.0 << 45351.0 << 45716.0;
        QTest::newRow("months keep the time") << DateInterval::Month << -1.0 << 34758.5 << 34727.5;
        QTest::newRow("fraction of a count is dropped") << DateInterval::Day << 1.9 << jan31 << 34731.0;
        QTest::newRow("hour across the epoch, negative side") << DateInterval::Hour << 1.0 << -1.25 << -1.0 - hms(7, 0, 0);
        QTest::newRow("hours onto day 0") << DateInterval::Hour << 18.0 << -1.25 << 0.0;
        QTest::newRow("hours back over the epoch") << DateInterval::Hour << -7.0 << 0.25 << -1.0 - hms(23, 0, 0);
        QTest::newRow("year past 9999") << DateInterval::Year << 1.0 << 2958465.0 << kNone;
        QTest::newRow("day before 1 Jan 100") << DateInterval::Day << -1.0 << -657434.0 << kNone;
        QTest::newRow("second past the last one") << DateInterval::Second << 1.0 << 2958465.0 + hms(23, 59, 59) << kNone;
        QTest::newRow("huge count") << DateInterval::Month << 1e300 << 0.0 << kNone;
        QTest::newRow("serial out of range") << DateInterval::Day << 0.0 << 2958466.0 << kNone;
    }
    void dateAdd()
    {
        QFETCH(DateInterval, interval);
        QFETCH(double, number);
        QFETCH(double, serial);
        QFETCH(double, expected);
        compareSerial(orNone(DateAdd(interval, number, serial)), expected);
    }

    void helpers()
    {
        QCOMPARE(LastDayOfMonth(45332.75), 45351.0); // leap February
        QCOMPARE(LastDayOfMonth(33.0), 60.0);        // 1900 is not a leap year
        QCOMPARE(LastDayOfMonth(-5.25), 1.0);
        QCOMPARE(toQDate(29221.9), QDate(1980, 1, 1));
        QCOMPARE(toQDateTime(29221.75087962963), QDateTime(QDate(1980, 1, 1), QTime(18, 1, 16)));
        compareSerial(orNone(fromQDate(QDate(9999, 12, 31))), 2958465.0);
        compareSerial(orNone(fromQDateTime(QDateTime(QDate(1980, 1, 1), QTime(18, 1, 16)))), 29221.75087962963);
        compareSerial(orNone(fromQDateTime(QDateTime(QDate(1899, 12, 25), QTime(6, 0)))), -5.25);
        QVERIFY(!fromQDate(QDate(99, 12, 31)));
        QVERIFY(!fromQDate(QDate()));
    }
};

QTEST_APPLESS_MAIN(TestDaySerial)
#include "tst_dayserial.moc"
