// Reading typed dates and times, guided by the field's format.
// Rows tagged with a source check inputs that mean the same in our format-guided reading against
// public suites of the classic conversions (en-US unless said):
//   [wine] wine-mirror/wine, dlls/oleaut32/tests/vartest.c, test_VarDateFromStr;
//   [lo]   LibreOffice/core, basic/qa/vba_tests/datevalue.vb and cdate.vb.
// Departures on purpose: our two-digit years slide with the default date, month and day are
// never swapped to make a date fit, and AM/PM with an hour above 12 is no time.
#include "platform/dayserial.h"
#include "platform/format.h"
#include "runtime/kelruntime8.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTest>
#include <cmath>

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

struct DateCase { QString text, format; bool birthday; QLocale locale; QString expected; };

} // namespace

Q_DECLARE_METATYPE(DateCase)

class TestParseDate : public QObject
{
    Q_OBJECT
private slots:
    // Expected: "" for no date, else the date, with its time of day when it has one.
    void parseDate_data()
    {
        QTest::addColumn<DateCase>("c");
        const auto in = [](const QLocale &locale, const char *name, const char16_t *text, const char16_t *format,
                           const char *expected, bool birthday = false) {
            const QString e = QString::fromLatin1(expected);
            QTest::newRow(name) << DateCase{QString::fromUtf16(text), QString::fromUtf16(format), birthday, locale,
                                            e.isEmpty() ? e : e + u" 00:00:00"_qs.mid(e.size() - 10)};
        };
        const auto row = [&](const char *name, const char16_t *text, const char16_t *format, const char *expected,
                             bool birthday = false) { in(kUs, name, text, format, expected, birthday); };
        const QLocale de(QLocale::German, QLocale::Germany);
        const char16_t *dmy = u"dd/mm/yyyy";
        const char16_t *dmyhn = u"dd/mm/yyyy hh:nn";
        row("any separators", u" 15 .- 3,,2013 ", dmy, "2013-03-15");  row("six digits", u"150313", dmy, "2013-03-15");
        row("four digits: no year", u"1503", dmy, "2026-03-15");
        row("eight digits year first", u"20130315", u"yyyy-mm-dd", "2013-03-15");
        row("saved form read with any format", u"15032013", u"d mmm yyyy", "2013-03-15");
        row("no year", u"7/2", dmy, "2026-02-07");  row("month name glued", u"15mar13", dmy, "2013-03-15");
        row("weekday skipped", u"Friday, 15 March 2013", dmy, "2013-03-15");
        row("ordinal", u"March 15th 2013", dmy, "2013-03-15");  row("today any case", u"  tODAY ", u"mm/dd/yy", "2026-11-23");
        row("two-digit year near", u"1/1/46", dmy, "2046-01-01");  row("two-digit year far", u"1/1/47", dmy, "1947-01-01");
        row("three-digit year", u"1/1/800", dmy, "0800-01-01");
        row("birthday: short year never ahead", u"1/1/30", dmy, "1930-01-01", true);
        row("birthday: short year past", u"1/1/19", dmy, "2019-01-01", true);
        row("birthday: missing year goes back", u"24/12", dmy, "2025-12-24", true);
        row("birthday: today allowed", u"23/11/2026", dmy, "2026-11-23", true);
        row("birthday: explicit future year", u"24/11/2026", dmy, "", true);  row("month 13", u"1/13/2013", dmy, "");
        row("day 0", u"0/1/2013", dmy, "");  row("29 February leap", u"29/2/2012", dmy, "2012-02-29");
        row("29 February not leap", u"29/2/2013", dmy, "");  row("no day", u"March 2013", dmy, "");
        row("year 99 written in full", u"1/1/0099", dmy, "");  row("too many numbers", u"1/2/2013/4/5/6/7", dmy, "");
        row("unknown word", u"15 foo 2013", dmy, "");  row("huge digit run", u"99999999999999999999999999999999", dmy, "");
        row("astral characters", u"15\U0001F600/03\U0001F600/2013", dmy, "2013-03-15");
        row("ISO under any format", u"2013-03-15", u"mm/dd/yy", "2013-03-15");
        row("ISO time dropped for a whole date", u"2013-03-15T10:15:00", dmy, "2013-03-15");
        row("impossible time still refused", u"15/03/2013 25:15", dmy, "");
        row("day of year beside the day", u"15/03/2013 074", u"dd/mm/yyyy y", "2013-03-15");
        row("quarter and week skipped", u"Q1 w11 15/03/2013", u"\"Q\"q \"w\"ww dd/mm/yyyy", "2013-03-15");
        row("pm", u"15/03/2013 6:05:09 pm", u"dd/mm/yyyy h:nn:ss am/pm", "2013-03-15 18:05:09");
        row("m after h is minutes", u"15/03/2013 18:05", u"dd/mm/yyyy hh:mm", "2013-03-15 18:05:00");
        row("date and time in one run", u"150320131805", u"ddmmyyyy hhnn", "2013-03-15 18:05:00");
        row("time alone keeps the default date", u"6:05 pm", u"hh:nn am/pm", "2026-11-23 18:05:00");
        row("ISO with time", u"2013-03-15T18:05:09", dmyhn, "2013-03-15 18:05:09");
        row("13 pm", u"15/03/2013 13:00 pm", u"dd/mm/yyyy hh:nn am/pm", "");
        QTest::newRow("a format of many fields")
            << DateCase{u"15032013"_qs, u"ddmm"_qs + QString(400000, u'y'), false, kUs, u"2013-03-15 00:00:00"_qs};
        const char16_t *mdy = u"mm/dd/yyyy";
        const char16_t *mdyt = u"mm/dd/yyyy hh:nn:ss am/pm";
        row("month name, comma [wine]", u"2 January, 1970", mdy, "1970-01-02");
        row("day first [wine]", u"13-1-1970", u"dd-mm-yyyy", "1970-01-13");
        row("two-digit year 29 [wine]", u"1 2 29", u"mm/dd/yy", "2029-01-02");
        row("with time AM [wine]", u"6/30/2011 01:20:34 AM", mdyt, "2011-06-30 01:20:34");
        row("ideographic space [wine]", u"6/30/2011\u30001:20:34", mdyt, "2011-06-30 01:20:34");
        row("ISO with time [wine]", u"2013-05-14 02:04:12", u"yyyy-mm-dd hh:nn:ss", "2013-05-14 02:04:12");
        in(de, "German with time [wine]", u"02.01.1970 00:00:00", u"dd.mm.yyyy hh:nn:ss", "1970-01-02");
        in(de, "day 100000 [wine]", u"2173-10-14", u"yyyy-mm-dd", "2173-10-14");
        row("month name first [lo]", u"February 12, 1969", u"dd/mm/yyyy", "1969-02-12");
        row("both 07 [lo]", u"07/07/1977", mdy, "1977-07-07");
        in(de, "German month name", u"15. März 2013", u"dd. mmmm yyyy", "2013-03-15");
        in(de, "German weekday skipped", u"Fr, 15.03.2013", u"ddd, dd.mm.yyyy", "2013-03-15");
        // Two scripts of one language under one locale name, read in turn: names are the locale's own.
        const QLocale cyrillic(QLocale::Serbian, QLocale::CyrillicScript, QLocale::Serbia);
        const QLocale latin(QLocale::Serbian, QLocale::LatinScript, QLocale::Serbia);
        in(cyrillic, "Serbian Cyrillic month name", u"15. март 2013", u"dd. mmmm yyyy", "2013-03-15");
        in(latin, "Serbian Latin month name", u"15. mart 2013", u"dd. mmmm yyyy", "2013-03-15");
        in(cyrillic, "Latin name under Cyrillic", u"15. mart 2013", u"dd. mmmm yyyy", "");
    }
    void parseDate()
    {
        QFETCH(DateCase, c);
        QCOMPARE(read(c.text, c.format, c.birthday, c.locale), c.expected);
    }

    // Every text the date and time fields show in their formats reads back as what they show.
    void displayedTextReadsBack_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("time"); // read as the time field does
        const QStringList formats{
            u"d/m/yyyy"_qs, u"mm/dd/yyyy"_qs, u"m/d/yy"_qs, u"yyyy-mm-dd"_qs, u"ddmmyyyy"_qs, u"ddmmyy"_qs,
            u"dd-mmm-yy"_qs, u"mmm d, yyyy"_qs, u"dddd, d mmmm yyyy"_qs, u"ddd dd/mm/yyyy"_qs, u"dddddd"_qs,
            u"mm/yyyy"_qs, u"dd/mm"_qs, u"dd/mm/yyyy hh:nn:ss am/pm"_qs, u"mm/dd/yy h:mm a/p"_qs, u"c"_qs,
            u"\"Q\"q yyyy-mm-dd"_qs, u"ww dd/mm/yyyy"_qs, u"yyyy \"day\" y"_qs, u"dd \\de mmmm \\de yyyy"_qs,
            u"mmmmm yyyy dd"_qs, u"hh:nn dd/mm/yyyy"_qs, u"yyyy-mm-dd\"T\"hh:nn"_qs};
        for (const QLocale &l : {kUs, QLocale(QLocale::German, QLocale::Germany), QLocale(QLocale::French, QLocale::France)})
            for (const QString &f : formats)
                QTest::addRow("%s %s", qPrintable(l.name()), qPrintable(f)) << f << l << false;
        for (const char16_t *f : {u"hh:nn am/pm", u"h:nn", u"hh:mm", u"h:nn:ss AM/PM", u"hh:nn a/p", u"hhnn",
                                  u"hh.nn.ss", u"ttttt", u"h ampm", u"mm/dd hh:nn am/pm", u"d mmm yyyy h:nn"})
            QTest::addRow("time %s", qPrintable(QString::fromUtf16(f))) << QString::fromUtf16(f) << kUs << true;
    }
    void displayedTextReadsBack()
    {
        QFETCH(QString, format);
        QFETCH(QLocale, locale);
        QFETCH(bool, time);
        KelRuntimeDates dates(locale);
        const bool yearless = FormatDate(serial(QDate(2000, 2, 29)), format, locale)
                == FormatDate(serial(QDate(2004, 2, 29)), format, locale);
        QRandomGenerator random(20130315);
        QList<double> samples;
        for (int second = 0; time && second < 86400; second += 59) // the time field holds a time of day
            samples << second / 86400.0;
        if (!time)
            samples << kMinDaySerial << kMaxDaySerial + 0.99998 << serial(QDate(1999, 12, 31)) << serial(QDate(2000, 2, 29))
                    << serial(QDate(1900, 2, 28)) << serial(kToday);
        for (int i = 0; !time && i < 400; ++i) // seconds only: the field shows no fraction of one
            samples << std::floor((kMinDaySerial + random.generateDouble() * (kMaxDaySerial + 1 - kMinDaySerial)) * 86400) / 86400;
        for (double s : samples) {
            if (yearless && Month(s) == 2 && Day(s) == 29)
                continue; // without its year, 29 February is read in the default year
            const QString text = FormatDate(s, format, locale);
            const Variant back = time ? dates.ParseTime(text) : dates.ParseDate(text, format, Variant(Date{serial(kToday)}), false);
            QVERIFY2(back.get<Date>(), qPrintable(text + u" from "_qs + toQDateTime(s).toString(Qt::ISODate)));
            QCOMPARE(FormatDate(back.get<Date>()->serial, format, locale), text);
        }
    }

    void parseTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char16_t *text, const char *expected) {
            QTest::newRow(name) << QString::fromUtf16(text)
                                << (*expected ? u"1899-12-30 "_qs + QString::fromLatin1(expected) : QString());
        };
        row("hh:nn:ss", u"10:15:30", "10:15:30");  row("four digits", u"1015", "10:15:00");
        row("three digits", u"915", "09:15:00");  row("six digits", u"101530", "10:15:30");  row("3p", u"3p", "15:00:00");
        row("3:15 pm", u"3:15 pm", "15:15:00");  row("a.m.", u"3:15 a.m.", "03:15:00");  row("12am", u"12am", "00:00:00");
        row("persisted default", u"0", "00:00:00");  row("blanks", u"  7:05  ", "07:05:00");
        row("day fraction", u"0.4375", "10:30:00");  row("day fraction out of range", u"1.2500", "");  row("25:00", u"25:00", "");
        row("10:15:60", u"10:15:60", "");  row("13 pm", u"13 pm", "");  row("word", u"ten", "");
        row("huge digit run", u"12345678901234567890123", "");  row("three-digit minutes", u"10:015", "");
        row("astral", u"\U0001F600", "");  row("1 am [wine]", u"1 am", "01:00:00");  row("2.5 [wine]", u"2.5", "02:05:00");
        row("1.5.2 [wine]", u"1.5.2", "01:05:02");  row("12:59 AM [wine]", u"12:59 AM", "00:59:00");
        row("00:00 pm [wine]", u"00:00 pm", "12:00:00");  row("0.60 [wine]", u"0.60", "");
        QTest::newRow("whole date kept") << u"3/15/2013 10:15"_qs << u"2013-03-15 10:15:00"_qs;
        row("partial date dropped", u"15/03 10:15 pm", "22:15:00");
        row("unreadable date dropped", u"15/03/2013 10:15", "10:15:00");  row("True [wine]", u"True", "");
    }
    void parseTime()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(shown(KelRuntimeDates(kUs).ParseTime(text)), expected);
    }
};

QTEST_MAIN(TestParseDate)
#include "tst_parsedate.moc"
