// [wine]: wine-mirror/wine, dlls/oleaut32/tests/vartest.c (test_VarDateFromUdate, test_VarUdateFromDate),
// checked against Windows; [wine-fmt]: its varformat.c; [wine vartype.c]: its vartype.c as carried in
// reactos/reactos (rostests/winetests); [lo]: LibreOffice/core, basic/qa/vba_tests/dateserial.vb,
// dateadd.vb, format.vb. Other day numbers were counted with Python's datetime.
#include "platform/dayserial.h"

#include <QTest>
#include <cmath>

using namespace kel;

namespace {
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
double hms(int h, int m, int s) { return (h * 3600 + m * 60 + s) / 86400.0; }
enum Kind { D, T, DT }; // DateSerial, TimeSerial, DateTimeSerial

void sameSerial(std::optional<double> got, double want)
{
    const double g = got.value_or(kNone);
    QVERIFY2(std::isnan(want) ? std::isnan(g) : std::fabs(g - want) < 1e-9,
             qPrintable(QStringLiteral("%1 != %2").arg(g, 0, 'g', 17).arg(want, 0, 'g', 17)));
}
} // namespace

class TestDaySerial : public QObject
{
    Q_OBJECT

private slots:
    void serials_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QList<int>>("args");
        QTest::addColumn<double>("expected");
        const auto row = [](const char *name, Kind k, QList<int> a, double e) {
            QTest::newRow(name) << int(k) << a << e;
        };
        const double t = 29221.75087962963; // 1 January 1980 18:01:16 [wine]
        row("1980-01-01 [wine]", D, {1980, 1, 1}, 29221);  row("epoch [wine]", D, {1899, 12, 30}, 0);
        row("minimum [wine]", D, {100, 1, 1}, -657434);  row("year 10000 [wine]", D, {10000, 1, 1}, kNone);
        row("two-digit 90 [wine]", D, {90, 12, 31}, 33238);  row("two-digit 29", D, {29, 12, 31}, 47483);
        row("two-digit 30", D, {30, 1, 1}, 10959);  row("month -300 [wine]", D, {1980, -300, 1}, 20059);
        row("day -300 [wine]", D, {1980, 1, -300}, 28920);  row("month -6 [lo]", D, {2000, 1 - 7, 15}, 36326);
        row("rolls back onto the minimum", D, {101, -11, 1}, -657434);
        row("rolls back below the minimum", D, {100, 1, 0}, kNone);  row("huge day count", D, {1980, 1, 2000000000}, kNone);
        // Under the sanitizers, the lowest month must not overflow on its way to "no date".
        row("lowest month", D, {1980, std::numeric_limits<int>::min(), 1}, kNone);
        row("18:01:16 [wine]", DT, {1980, 1, 1, 18, 1, 16}, t);
        row("hours roll into days [wine]", DT, {1980, 1, 0, 42, 1, 16}, t);
        row("negative seconds [wine]", DT, {1980, 1, 1, 18, 3, -104}, t);
        row("before the epoch, late [wine]", DT, {1899, 12, 25, 23, 59, 59}, -5.9999884259259);
        row("time pulls an out-of-range date back", DT, {10000, 1, 1, -24, 0, 0}, 2958465);
        row("negative minutes roll back an hour", T, {6, -15, 0}, hms(5, 45, 0));
        // The day before, with its time of day counted forward.
        row("one hour before midnight", T, {-1, 0, 0}, -1.0 - hms(23, 0, 0));
        row("far beyond the range", T, {2000000000, 2000000000, 0}, kNone);
    }
    void serials()
    {
        QFETCH(int, kind);
        QFETCH(QList<int>, args);
        QFETCH(double, expected);
        const auto &a = args;
        sameSerial(kind == D ? DateSerial(a[0], a[1], a[2])
                   : kind == T ? TimeSerial(a[0], a[1], a[2])
                               : DateTimeSerial(a[0], a[1], a[2], a[3], a[4], a[5]),
                   expected);
    }

    // Year, month, day, hour, minute, second, weekday (Sunday = 1), day of year; all 0 when invalid.
    void split_data()
    {
        QTest::addColumn<double>("serial");
        QTest::addColumn<QList<int>>("parts");
        const auto row = [](const char *name, double s, QList<int> p) { QTest::newRow(name) << s << p; };
        row("1980-01-01 [wine]", 29221, {1980, 1, 1, 0, 0, 0, 3, 1});  row("epoch [wine]", 0, {1899, 12, 30, 0, 0, 0, 7, 364});
        row("minimum [wine]", -657434, {100, 1, 1, 0, 0, 0, 6, 1});
        row("maximum [wine]", 2958465, {9999, 12, 31, 0, 0, 0, 6, 365});
        row("rounds up to 23:44 [wine]", 29221.9888884444, {1980, 1, 1, 23, 44, 0, 3, 1});
        row("18:01:16 [wine]", 29221.7508765432, {1980, 1, 1, 18, 1, 16, 3, 1});
        row("negative, 23:59:59 [wine]", -5.9999884259259, {1899, 12, 25, 23, 59, 59, 2, 359});
        row("-0.25 is day 0 [wine]", -0.25, {1899, 12, 30, 6, 0, 0, 7, 364});
        row("1765 [wine vartype.c]", -49192.24, {1765, 4, 24, 5, 45, 36, 4, 114});
        row("0.99999999 carries into the next day", 0.99999999, {1899, 12, 31, 0, 0, 0, 1, 365});
        const QList<int> none(8, 0);
        row("below 1 Jan 100 [wine]", -657435, none);  row("last second rounds into year 10000", 2958465.999999999, none);
        row("NaN", kNone, none);
    }
    void split()
    {
        QFETCH(double, serial);
        QFETCH(QList<int>, parts);
        const QList<int> got{Year(serial), Month(serial),  Day(serial),     Hour(serial),
                             Minute(serial), Second(serial), Weekday(serial), DayOfYear(serial)};
        QCOMPARE(got, parts);
        QCOMPARE(splitDaySerial(serial).has_value(), parts[0] != 0);
        QCOMPARE(toQDate(serial).isValid(), parts[0] != 0);
    }

    void dateAdd_data()
    {
        QTest::addColumn<DateInterval>("interval");
        QTest::addColumn<double>("number");
        QTest::addColumn<double>("serial");
        QTest::addColumn<double>("expected");
        const auto row = [](const char *name, DateInterval i, double n, double s, double e) {
            QTest::newRow(name) << i << n << s << e;
        };
        using enum DateInterval;
        const double jan31 = 34730, at = jan31 + hms(21, 48, 29); // 1995-01-31, and that day at 21:48:29
        row("month clamps to February [lo]", Month, 1, jan31, 34758);  row("year [lo]", Year, 1, jan31, 35095);
        row("day [lo]", Day, 1, jan31, 34731);  row("week [lo]", Week, 1, jan31, 34737);
        row("hour [lo]", Hour, 1, 34700 + hms(21, 48, 29), 34700 + hms(22, 48, 29));
        row("minute [lo]", Minute, 1, at, jan31 + hms(21, 49, 29));  row("second [lo]", Second, 1, at, jan31 + hms(21, 48, 30));
        row("29 Feb + 1 year", Year, 1, 45351, 45716);  row("months keep the time", Month, -1, 34758.5, 34727.5);
        row("hour across the epoch, negative side", Hour, 1, -1.25, -1.0 - hms(7, 0, 0));
        row("hours back over the epoch", Hour, -7, 0.25, -1.0 - hms(23, 0, 0));  row("year past 9999", Year, 1, 2958465, kNone);
        row("day before 1 Jan 100", Day, -1, -657434, kNone);  row("huge count", Month, 1e300, 0, kNone);
        row("serial out of range", Day, 0, 2958466, kNone);
    }
    void dateAdd()
    {
        QFETCH(DateInterval, interval);
        QFETCH(double, number);
        QFETCH(double, serial);
        QFETCH(double, expected);
        sameSerial(DateAdd(interval, number, serial), expected);
    }

    void helpers()
    {
        for (int first = 1; first <= 7; ++first) // the epoch is a Saturday [wine-fmt]
            QCOMPARE(Weekday(0.0, first), 8 - first);
        QCOMPARE(Weekday(40531.0), 1); // a Sunday [wine-fmt]
        QCOMPARE(Weekday(35801.0), 3); // a Tuesday [lo]
        QCOMPARE(Weekday(0.0, 8), 0);
        QCOMPARE(LastDayOfMonth(45332.75), 45351.0); // leap February
        QCOMPARE(LastDayOfMonth(33.0), 60.0);        // 1900 is not a leap year
        QCOMPARE(LastDayOfMonth(-5.25), 1.0);
        QCOMPARE(toQDate(29221.9), QDate(1980, 1, 1));
        QCOMPARE(toQDateTime(29221.75087962963), QDateTime(QDate(1980, 1, 1), QTime(18, 1, 16)));
        sameSerial(fromQDateTime(QDateTime(QDate(1899, 12, 25), QTime(6, 0))), -5.25);
        QVERIFY(!fromQDate(QDate(99, 12, 31)));
        QVERIFY(!fromQDate(QDate()));
    }
};

QTEST_APPLESS_MAIN(TestDaySerial)
#include "tst_dayserial.moc"
