// Expected texts come from public suites checked against the classic runtime, en-US:
//   [wine]   wine-mirror/wine, dlls/oleaut32/tests/varformat.c: VarFormat, VarFormatNumber, VarFormatFromTokens;
//   [winebs] Wine's vartype.c as carried in reactos/reactos, rostests/winetests/oleaut32/vartype.c: VarBstrFromDate/R4;
//   [lo]     LibreOffice/core, basic/qa/vba_tests/format.vb and formatnumber.vb (documented en-US results).
// Untagged rows check our own choices (locale separators, the 15-digit rule, edge cases).
#include "platform/format.h"
#include "platform/variant.h"

#include <QTest>
#include <cmath>

using namespace kel;
using namespace Qt::StringLiterals;

namespace {
const QLocale us(QLocale::English, QLocale::UnitedStates);
const QLocale de(QLocale::German, QLocale::Germany);
const QLocale es(QLocale::Spanish, QLocale::Spain);
double at(int days, int h, int m, int s) { return days + (h * 3600 + m * 60 + s) / 86400.0; }
using S = const char16_t *;
enum Kind { Num, Dat, Var, Gen, Reg }; // FormatNumber, FormatDate, FormatVariant, GeneralNumber, FormatNumberRegional
struct Case { Kind kind; Variant value; QString pattern, expected; QLocale locale; };
void add(Kind k, const char *name, const Variant &v, S p, S e, const QLocale &l = us)
{
    QTest::newRow(name) << Case{k, v, QString::fromUtf16(p), QString::fromUtf16(e), l};
}
void num(const char *name, double v, S p, S e, const QLocale &l = us) { add(Num, name, v, p, e, l); }
void dat(const char *name, double v, S p, S e, const QLocale &l = us) { add(Dat, name, v, p, e, l); }
void gen(const char *name, double v, S e, const QLocale &l = us) { add(Gen, name, v, u"", e, l); }
// For Reg the pattern holds the digits after the point and the flags L (leading digit),
// P (parentheses) and G (grouping).
void reg(const char *name, double v, S p, S e) { add(Reg, name, v, p, e); }
} // namespace

Q_DECLARE_METATYPE(Case)

class TestFormat : public QObject
{
    Q_OBJECT

private slots:
    void format_data()
    {
        QTest::addColumn<Case>("c");
        num("#.# of 0 [wine]", 0, u"#.#", u".");  num("escaped literals [wine]", 0, u"00\\c\\o\\p\\y", u"00copy");
        num("two sections, negative [wine]", -1, u"\"pos\";\"neg\"", u"neg");
        num("three sections, zero [wine]", 0, u"\"pos\";\"neg\";\"zero\"", u"zero");
        num("leading zeros from the first 0 [wine]", 1, u"#00##00#0", u"00000001");
        num("grouping and bare point [wine]", 123456789, u"#,#.#", u"123,456,789.");
        num("comma before a space is literal [wine]", 123456789, u"###, ###, ###", u"123, 456, 789");
        num("fraction zeros up to the last 0 [wine]", 1.2, u"0#.0#0#0#0#0", u"01.200000000");
        num("carry through nines [wine]", 9.9999999, u"#0.000000", u"10.000000");
        num("negative, no integer placeholder [wine]", -0.1, u".#", u"-.1");
        num("rounds up to .1 [wine]", 0.0995, u"#.##", u".1");
        num("binary 23.674999... shows 23.68 [lo]", 23.675, u"00.00", u"23.68");  num("percent [lo]", 0.25, u"##.00%", u"25.00%");
        num("escaped % does not scale [lo]", 0.25, u"##.###\\%", u".25%");
        num("beyond 15 digits never cut", 1e17, u"###############", u"100000000000000000");
        num("thousands scaling", 1234567, u"#,##0,", u"1,235");  num("empty pattern [wine]", 1, u"", u"1");
        num("digits after e- are literal [wine]", 1.7, u"0.0000e-1", u"1.7000e01");
        num("decimal rounding [wine]", 1.73245, u"0.0000E+000", u"1.7325E+000");
        num("large [wine]", 450.0001e+43, u"#000.0000e+0", u"4500.0010e+42");
        num("Scientific of 0 [wine]", 0.0, u"Scientific", u"0.00E+00");
        num("Standard [lo]", 562486.2356, u"Standard", u"562,486.24");
        num("de separators", 1234567.891, u"#,##0.00", u"1.234.567,89", de);

        gen("0 [wine]", 0, u"0");  gen("es comma [winebs]", 0.5, u"0,5", es);
        gen("15 digits stay plain", 999999999999999.0, u"999999999999999");
        gen("16 digits take the exponent", 1234567890123456.0, u"1.23456789012346E+15");  gen("small", -0.000015, u"-1.5E-05");
        gen("0.0001 stays plain", 0.0001, u"0.0001");

        reg("-1 in parentheses [wine]", -1, u"2P", u"(1.00)");
        reg("20 decimals, leading zero [lo]", -0.2, u"20L", u"-0.20000000000000000000");
        reg("20 decimals, no leading zero [lo]", -0.2, u"20", u"-.20000000000000000000");
        reg("grouped [lo]", -12345678, u"2LG", u"-12,345,678.00");  reg("negative zero after rounding", -0.001, u"2LP", u"0.00");
        reg("no digits, no separator", 2.5, u"0L", u"3");

        const double noon = 2.525; // Monday 1 January 1900 12:36 [wine]
        const double sat = at(36918, 17, 4, 23);
        dat("am/pm [wine]", noon, u"am/pm", u"pm");  dat("dddd [wine]", noon, u"dddd", u"Monday");
        dat("yyy is yy and y [wine]", noon, u"yyy", u"001");
        dat("mm after hh is minutes [wine]", noon, u"dd mm yyyy hh:mm:ss", u"01 01 1900 12:36:00");
        dat("mm without hh is month [wine]", noon, u"dd mm yyyy :mm", u"01 01 1900 :01");
        dat("mm after ss is month [wine]", noon, u"hh:mm :ss:mm", u"12:36 :00:01");
        dat("dd between cancels the hour [wine]", noon, u"hh:dd :mm:mm", u"12:01 :01:01");
        dat("A/P makes 12-hour [wine]", 2.725, u"hh:nn:ss A/P", u"05:24:00 P");  dat("w [wine]", 0, u"w", u"7");
        dat("general, time only [winebs]", 0.0, u"", u"12:00:00 AM");
        dat("general, before the epoch [winebs]", -49192.24, u"", u"4/24/1765 5:45:36 AM");
        dat("h:m:s [lo]", sat, u"h:m:s", u"17:4:23");
        dat("upper case tokens [lo]", sat, u"dddd, MMM d yyyy", u"Saturday, Jan 27 2001");
        dat("ttttt [lo]", sat, u"ttttt", u"5:04:23 PM");  dat("invalid serial", 1e9, u"yyyy", u"");
        dat("de separators", sat, u"dd/mm/yyyy hh:nn", u"27.01.2001 17:04", de);
        dat("de escaped slash", sat, u"dd\\/mm", u"27/01", de);
        // Read once: counted again at every step, such a run took minutes.
        QTest::newRow("a long run of one letter") << Case{Dat, sat, QString(400000, u'y'), u"2001"_qs.repeated(100000), us};

        add(Var, "Null", Null, u"0.00", u"");  add(Var, "Empty", Variant(), u"0.00", u"");
        add(Var, "Null uses the fourth section", Null, u"0;-0;0;\"n/a\"", u"n/a");
        add(Var, "Boolean as a number", true, u"0", u"-1");  add(Var, "text [wine]", u"testing", u"", u"testing");
        add(Var, "numeric text, en-US tokens [wine]", u"6,90", u"###,##0.00", u"690.00");
        add(Var, "numeric text, de tokens [wine]", u"6,90", u"###,##0.00", u"6,90", de);
        add(Var, "numeric text as a time [wine]", u"39697.11", u"hh:mm", u"02:38");
        add(Var, "number with a date pattern [wine]", 40531.0, u"dddd", u"Sunday");
        add(Var, "Date with a numeric pattern", Date{2.525}, u"0.000", u"2.525");
    }
    void format()
    {
        QFETCH(Case, c);
        const auto &[kind, value, pattern, expected, locale] = c;
        const double v = value.toDouble();
        int digits = 0;
        for (QChar c : pattern)
            digits = c.isDigit() ? digits * 10 + c.digitValue() : digits;
        QCOMPARE(kind == Num   ? FormatNumber(v, pattern, locale)
                 : kind == Dat ? FormatDate(v, pattern, locale)
                 : kind == Gen ? GeneralNumber(v, locale)
                 : kind == Reg ? FormatNumberRegional(v, digits, pattern.contains(u'L'), pattern.contains(u'P'),
                                                      pattern.contains(u'G'), locale)
                               : FormatVariant(value, pattern, locale),
                 expected);
    }

    // RoundDecimalString must print what RoundDecimal gives, with exactly `digits` decimals.
    void roundDecimal_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("digits");
        QTest::addColumn<double>("away");
        QTest::addColumn<double>("even");
        const auto row = [](const char *name, double v, int d, double away, double even) {
            QTest::newRow(name) << v << d << away << even;
        };
        row("2.675", 2.675, 2, 2.68, 2.68);  row("1.005", 1.005, 2, 1.01, 1.0);  row("-2.5", -2.5, 0, -3, -2);
        row("0.125 exact half", 0.125, 2, 0.13, 0.12);
        row("9.995 carries", 9.995, 2, 10, 10);  row("padded", 0.5, 3, 0.5, 0.5);
        row("zero result is +0", -0.001, 2, 0, 0);  row("huge unchanged", 1e20, 1, 1e20, 1e20);
    }
    void roundDecimal()
    {
        QFETCH(double, value);
        QFETCH(int, digits);
        QFETCH(double, away);
        QFETCH(double, even);
        for (auto [mode, want] : {std::pair{RoundMode::HalfAwayFromZero, away}, std::pair{RoundMode::HalfEven, even}}) {
            const double got = RoundDecimal(value, digits, mode);
            QCOMPARE(got, want);
            QCOMPARE(std::signbit(got), std::signbit(want));
            QCOMPARE(RoundDecimalString(value, digits, mode), QString::number(want, 'f', digits));
        }
        QVERIFY(std::isnan(RoundDecimal(std::nan(""), digits)));
    }
};

QTEST_APPLESS_MAIN(TestFormat)
#include "tst_format.moc"
