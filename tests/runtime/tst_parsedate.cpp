// Reading typed dates and times, guided by the field's format.
#include "platform/dayserial.h"
#include "platform/format.h"
#include "runtime/kelruntime8.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTest>

using namespace kel;

namespace {

const QLocale kUs(QLocale::English, QLocale::UnitedStates);
const QDate kToday(2026, 11, 23);

double serial(QDate d, QTime t = QTime(0, 0)) { return *fromQDateTime(QDateTime(d, t)); }

// "" for Null, else the date and time read, in a form that diffs well.
QString shown(const Variant &v)
{
    if (v.isNull())
        return QString();
    const Date *d = v.get<Date>();
    return d ? toQDateTime(d->serial).toString(u"yyyy-MM-dd hh:mm:ss"_qs) : u"not a date: "_qs + v.debugString();
}

QString read(const QString &text, const QString &format, bool birthday = false, const QLocale &locale = kUs)
{
    return shown(KelRuntimeDates(locale).ParseDate(text, format, Variant(Date{serial(kToday)}), birthday));
}

} // namespace

class TestParseDate : public QObject
{
    Q_OBJECT
private slots:
    void parseDate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("birthday");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char16_t *text, const char16_t *format, const char *expected,
                            bool birthday = false) {
            QTest::newRow(name) << QString::fromUtf16(text) << QString::fromUtf16(format) << birthday
                                << (*expected ? QString::fromLatin1(expected) + u" 00:00:00"_qs : QString());
        };
        const char16_t *dmy = u"dd/mm/yyyy";
        row("day first", u"15/03/2013", dmy, "2013-03-15");
        row("month first", u"03/15/2013", u"mm/dd/yyyy", "2013-03-15");
        row("year first", u"2013-03-15", u"yyyy-mm-dd", "2013-03-15");
        row("any separators", u" 15 .- 3,,2013 ", dmy, "2013-03-15");
        row("eight digits", u"15032013", dmy, "2013-03-15");
        row("six digits", u"150313", dmy, "2013-03-15");
        row("four digits: no year", u"1503", dmy, "2026-03-15");
        row("eight digits year first", u"20130315", u"yyyy-mm-dd", "2013-03-15");
        row("saved form read with any format", u"15032013", u"d mmm yyyy", "2013-03-15");
        row("day alone", u"7", dmy, "2026-11-07");
        row("no year", u"7/2", dmy, "2026-02-07");
        row("month name", u"15 March 2013", dmy, "2013-03-15");
        row("month abbreviation first", u"Mar 15, 2013", dmy, "2013-03-15");
        row("month name glued", u"15mar13", dmy, "2013-03-15");
        row("month name any case", u"15 SEPT 2013", dmy, "2013-09-15");
        row("weekday skipped", u"Friday, 15 March 2013", dmy, "2013-03-15");
        row("ordinal", u"March 15th 2013", dmy, "2013-03-15");
        row("Now", u"Now", dmy, "2026-11-23");
        row("today any case", u"  tODAY ", u"mm/dd/yy", "2026-11-23");
        row("two-digit year near", u"1/1/46", dmy, "2046-01-01");
        row("two-digit year far", u"1/1/47", dmy, "1947-01-01");
        row("one-digit year", u"1/1/5", dmy, "2005-01-01");
        row("three-digit year", u"1/1/800", dmy, "0800-01-01");
        row("birthday: short year never ahead", u"1/1/30", dmy, "1930-01-01", true);
        row("birthday: short year past", u"1/1/19", dmy, "2019-01-01", true);
        row("birthday: missing year goes back", u"24/12", dmy, "2025-12-24", true);
        row("birthday: today allowed", u"23/11/2026", dmy, "2026-11-23", true);
        row("birthday: explicit future year", u"24/11/2026", dmy, "", true);
        row("31 February", u"31/02/2013", dmy, "");
        row("month 13", u"1/13/2013", dmy, "");
        row("day 0", u"0/1/2013", dmy, "");
        row("29 February leap", u"29/2/2012", dmy, "2012-02-29");
        row("29 February not leap", u"29/2/2013", dmy, "");
        row("no day", u"March 2013", dmy, "");
        row("year 99 written in full", u"1/1/0099", dmy, "");
        row("year 10000", u"1/1/10000", dmy, "");
        row("too many numbers", u"1/2/2013/4/5/6/7", dmy, "");
        row("five digits", u"15032", dmy, "");
        row("unknown word", u"15 foo 2013", dmy, "");
        row("two months", u"March April 2013", dmy, "");
        row("empty", u"", dmy, "");
        row("blanks", u"   ", dmy, "");
        row("huge digit run", u"99999999999999999999999999999999", dmy, "");
        row("astral characters", u"15\U0001F600/03\U0001F600/2013", dmy, "2013-03-15");
        row("astral only", u"\U0001F600\U0001F600", dmy, "");
        row("time dropped for a whole date", u"15/03/2013 10:15", dmy, "2013-03-15");
        row("impossible time still refused", u"15/03/2013 25:15", dmy, "");
        row("day of year ignored beside the day", u"15/03/2013 074", u"dd/mm/yyyy y", "2013-03-15");
        row("quarter and week numbers skipped", u"Q1 w11 15/03/2013", u"\"Q\"q \"w\"ww dd/mm/yyyy", "2013-03-15");
    }
    void parseDate()
    {
        QFETCH(QString, text);
        QFETCH(QString, format);
        QFETCH(bool, birthday);
        QFETCH(QString, expected);
        QCOMPARE(read(text, format, birthday), expected);
    }

    void parseDateWithTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("expected");
        QTest::newRow("24 hours") << u"15/03/2013 18:05"_qs << u"dd/mm/yyyy hh:nn"_qs << u"2013-03-15 18:05:00"_qs;
        QTest::newRow("pm") << u"15/03/2013 6:05:09 pm"_qs << u"dd/mm/yyyy h:nn:ss am/pm"_qs << u"2013-03-15 18:05:09"_qs;
        QTest::newRow("m after h is minutes") << u"15/03/2013 18:05"_qs << u"dd/mm/yyyy hh:mm"_qs << u"2013-03-15 18:05:00"_qs;
        QTest::newRow("digits split") << u"150320131805"_qs << u"ddmmyyyy hhnn"_qs << u"2013-03-15 18:05:00"_qs;
        QTest::newRow("time omitted") << u"15/03/2013"_qs << u"dd/mm/yyyy hh:nn"_qs << u"2013-03-15 00:00:00"_qs;
        QTest::newRow("minute 60") << u"15/03/2013 18:60"_qs << u"dd/mm/yyyy hh:nn"_qs << QString();
        QTest::newRow("13 pm") << u"15/03/2013 13:00 pm"_qs << u"dd/mm/yyyy hh:nn am/pm"_qs << QString();
    }
    void parseDateWithTime()
    {
        QFETCH(QString, text);
        QFETCH(QString, format);
        QFETCH(QString, expected);
        QCOMPARE(read(text, format), expected);
    }

    void parseTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char16_t *text, const char *expected) {
            QTest::newRow(name) << QString::fromUtf16(text)
                                << (*expected ? u"1899-12-30 "_qs + QString::fromLatin1(expected) : QString());
        };
        row("hh:nn", u"10:15", "10:15:00");
        row("hh:nn:ss", u"10:15:30", "10:15:30");
        row("four digits", u"1015", "10:15:00");
        row("three digits", u"915", "09:15:00");
        row("six digits", u"101530", "10:15:30");
        row("dot", u"10.15", "10:15:00");
        row("hour alone", u"10", "10:00:00");
        row("3p", u"3p", "15:00:00");
        row("3:15 pm", u"3:15 pm", "15:15:00");
        row("a.m.", u"3:15 a.m.", "03:15:00");
        row("12am", u"12am", "00:00:00");
        row("12 PM", u"12 PM", "12:00:00");
        row("persisted default", u"0", "00:00:00");
        row("blanks", u"  7:05  ", "07:05:00");
        row("day fraction", u"0.4375", "10:30:00");
        row("25:00", u"25:00", "");
        row("10:61", u"10:61", "");
        row("10:15:60", u"10:15:60", "");
        row("13 pm", u"13 pm", "");
        row("two markers", u"3 am pm", "");
        row("word", u"ten", "");
        row("empty", u"", "");
        row("blank", u" ", "");
        row("seven digits", u"1015301", "");
        row("huge digit run", u"12345678901234567890123", "");
        row("three-digit minutes", u"10:015", "");
        row("astral", u"\U0001F600", "");
        row("day fraction out of range", u"1.2500", "");
    }
    void parseTime()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(shown(KelRuntimeDates(kUs).ParseTime(text)), expected);
    }

    void lastDayOfMonth_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("last");
        QTest::newRow("February leap") << QDate(2012, 2, 10) << QDate(2012, 2, 29);
        QTest::newRow("February") << QDate(1900, 2, 1) << QDate(1900, 2, 28);
        QTest::newRow("December 9999") << QDate(9999, 12, 31) << QDate(9999, 12, 31);
        QTest::newRow("before 1899") << QDate(100, 1, 2) << QDate(100, 1, 31);
    }
    void lastDayOfMonth()
    {
        QFETCH(QDate, date);
        QFETCH(QDate, last);
        const Date got = KelRuntimeDates(kUs).LastDayOfMonth(Date{serial(date, QTime(15, 0))});
        QCOMPARE(toQDateTime(got.serial), QDateTime(last, QTime(0, 0)));
    }
};

QTEST_MAIN(TestParseDate)
#include "tst_parsedate.moc"
