#include "controls/number/kelnumber.h"
#include "library/kelcontrolhandler.h"
#include "spinkeys.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QScopeGuard>
#include <QWheelEvent>

using namespace kel;

namespace {

using namespace kel::test;

double value(KelNumber *n) { return n->Value().toDouble(); }

struct ValueCase { int decimals; bool group; Variant input; double value; const char16_t *shown, *edited, *fromBag = nullptr; };
struct KeyCase { int decimals; double number; int caret; bool insert, locked; const char16_t *keys, *text; int selStart, selLength, beeps; };
struct StepCase { bool upDown; double start, min, max, step; char16_t how; double value; int changes; const char16_t *shown; };
struct ValidCase { bool mandatory, locked; double min, max; int decimals; bool group; const char16_t *typed; QString message; double committed; };
struct LayoutCase { bool upDown; double width, expected, label; };

// A host's own run-time object in another region than the process; nothing of our run-time
// object is behind it but the number services it hands out.
class HostRuntime : public IKelRuntime
{
public:
    explicit HostRuntime(const QLocale &region) : m_region(region) {}
    int ColourDepth() override { return 24; }
    QString DecimalSeparator() override { return m_region.decimalPoint(); }
    qint16 DecimalDigits() override { return 2; }
    QLocale Locale() override { return m_region; }
    FontSpec CaptionFont() override { return {}; }
    FontSpec FieldFont() override { return {}; }
    void SendKey(int) override {}
    std::shared_ptr<IRuntimeDates> RuntimeDates() override { return std::make_shared<KelRuntimeDates>(m_region); }
    QString ListAppend(QString list, const QString &) override { return list; }
    QString ReadField(const QString &, qint32 &position, int) override { position = -1; return {}; }

private:
    QLocale m_region;
};

} // namespace

Q_DECLARE_METATYPE(ValueCase)
Q_DECLARE_METATYPE(KeyCase)
Q_DECLARE_METATYPE(StepCase)
Q_DECLARE_METATYPE(ValidCase)
Q_DECLARE_METATYPE(LayoutCase)

class TestKelNumber : public QObject
{
    Q_OBJECT
    std::unique_ptr<FieldForm<KelNumber>> f;
    KelNumber *n = nullptr; // the first field; the focus starts in the second
    RecordingServices *rec = nullptr;

private slots:
    void init()
    {
        f = std::make_unique<FieldForm<KelNumber>>();
        n = f->field;
        rec = f->rec;
        QVERIFY(f->ready());
        QCOMPARE(QApplication::focusWidget(), text1(f->second));
    }
    void cleanup() { f.reset(); }

    // Display form, red for negatives; editing form in black while focused. Decimals applies to
    // the value already held; out-of-range Decimals and non-numeric values are ignored.
    void valueAndForms_data()
    {
        QTest::addColumn<ValueCase>("c");
        QTest::newRow("negative grouped") << ValueCase{2, true, -1234.5, -1234.5, u"(1,234.50)", u"-1234.5"};
        QTest::newRow("ungrouped") << ValueCase{2, false, 1234.5, 1234.5, u"1234.50", u"1234.5"};
        QTest::newRow("no fraction kept") << ValueCase{0, true, 2.5, 3, u"3", u"3"};
        QTest::newRow("regional count, no leading zero") << ValueCase{-1, true, 0.5, 0.5, u"0.50", u".5"};
        QTest::newRow("grouped text") << ValueCase{2, true, u"1,234.567", 1234.57, u"1,234.57", u"1234.57"};
        QTest::newRow("sixteen places") << ValueCase{16, true, 0.1, 0.1, u"0.1000000000000000", u".1"};
        QTest::newRow("Empty is zero, edits empty") << ValueCase{2, true, Variant(), 0, u"0.00", u""};
        QTest::newRow("text ignored") << ValueCase{2, true, u"abc", 5, u"5.00", u"5", u"0.00"}; // saved, it reads as 0
    }
    void valueAndForms()
    {
        QFETCH(ValueCase, c);
        n->setGroupDigits(c.group);
        n->setDecimals(16);
        n->setValue(5.0);
        n->setValue(c.input);
        for (int d : {c.decimals, 17, -2})
            n->setDecimals(qint16(d));
        const quint32 rest = c.value < 0 ? 0x0000FF : 0;
        QCOMPARE(n->Value(), Variant(c.value));
        QCOMPARE(n->ValueOriginal(), c.value);
        for (bool editing : {false, true, false}) { // resting, edited, resting again
            enter(editing ? n : f->second);
            QCOMPARE(text1(n)->text(), str(editing ? c.edited : c.shown));
            QCOMPARE(n->Text1->ForeColor(), editing ? 0u : rest);
        }
        QCOMPARE(value(n), c.value);

        // The same from a saved form (Decimals first, Value last), over another display.
        MemoryPropertyBag bag;
        bag.set(u"Decimals"_qs, qint16(c.decimals));
        bag.set(u"GroupDigits"_qs, c.group);
        bag.set(u"Value"_qs, c.input);
        n->setGroupDigits(!c.group);
        n->setDecimals(16);
        n->ReadProperties(bag);
        QCOMPARE(text1(n)->text(), str(c.fromBag ? c.fromBag : c.shown));
        QCOMPARE(n->Text1->ForeColor(), rest);
    }

    void keyFilter_data()
    {
        QTest::addColumn<KeyCase>("c");
        QTest::newRow("minus twice keeps one") << KeyCase{2, 12, 2, true, false, u"--", u"-12", 1, 2, 0};
        QTest::newRow("separator to caret") << KeyCase{2, 12.34, 1, true, false, u".", u"1.34", 2, 2, 0};
        QTest::newRow("separator back to caret") << KeyCase{2, 12.34, 4, true, false, u".", u"12.4", 3, 1, 0};
        QTest::newRow("first separator inserted") << KeyCase{2, 123, 1, true, false, u".", u"1.23", 2, 2, 0};
        QTest::newRow("first separator overwrites") << KeyCase{2, 123, 1, false, false, u".", u"1.3", 2, 1, 0};
        QTest::newRow("digits overwrite") << KeyCase{2, 123, 0, false, false, u"98", u"983", 2, 0, 0};
        QTest::newRow("digits insert") << KeyCase{2, 123, 0, true, false, u"98", u"98123", 2, 0, 0};
        QTest::newRow("refused keys beep") << KeyCase{2, 12, 2, true, false, u"a+ e", u"12", 2, 0, 4};
        QTest::newRow("no decimals: separator silent") << KeyCase{0, 12, 1, true, false, u".", u"12", 1, 0, 0};
        QTest::newRow("locked ignores - and .") << KeyCase{2, 12, 0, true, true, u"-.x", u"12.00", 0, 0, 1};
    }
    void keyFilter()
    {
        QFETCH(KeyCase, c);
        n->setDecimals(qint16(c.decimals));
        n->setValue(c.number); // its editing form is the text typed into
        n->setInsertMode(c.insert);
        n->setLocked(c.locked);
        enter(n);
        text1(n)->setCursorPosition(c.caret);
        QTest::keyClicks(text1(n), str(c.keys));
        QCOMPARE(n->Text1->Text(), str(c.text));
        QCOMPARE(n->Text1->SelStart(), c.selStart);
        QCOMPARE(n->Text1->SelLength(), c.selLength);
        QCOMPARE(rec->beeps, c.beeps);
    }

    // Insert toggles the mode, the keypad separator types the regional one, Enter moves on.
    void specialKeys()
    {
        test::useRuntime(24, 2, QLocale(QLocale::German, QLocale::Germany));
        n->setDecimals(-1); // takes up the new region
        enter(n);
        QTest::keyClick(text1(n), Qt::Key_Insert);
        QVERIFY(n->InsertMode());
        QTest::keyClicks(text1(n), u"12"_qs);
        QTest::keyClick(text1(n), Qt::Key_Period, Qt::KeypadModifier);
        QTest::keyClicks(text1(n), u"5"_qs);
        QCOMPARE(text1(n)->text(), u"12,5"_qs);
        QTest::keyClick(text1(n), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), text1(f->second));
        QCOMPARE(value(n), 12.5);
    }

    // A host's run-time object in another region than the process: what the field shows is what
    // the host's conversion reads back, so visiting and stepping never move the value.
    void hostRegion_data()
    {
        QTest::addColumn<QLocale>("region");
        QTest::addColumn<QStringList>("forms"); // shown, edited, stepped
        QTest::newRow("German") << QLocale(QLocale::German, QLocale::Germany) << QStringList{u"1.234,50"_qs, u"1234,5"_qs, u"2,50"_qs};
        QTest::newRow("Swiss") << QLocale(QLocale::German, QLocale::Switzerland) << QStringList{str(u"1\u2019234.50"), u"1234.5"_qs, u"2.50"_qs};
    }
    void hostRegion()
    {
        QFETCH(QLocale, region);
        QFETCH(QStringList, forms);
        const QString &shown = forms[0];
        const QLocale process;
        QLocale::setDefault(QLocale::c());
        auto restore = qScopeGuard([&] { QLocale::setDefault(process); });
        KelControlHandler().SetRuntime(std::make_shared<HostRuntime>(region));
        n->setDecimals(2);
        n->setValue(1234.5);
        QCOMPARE(text1(n)->text(), shown);
        enter(n);
        QCOMPARE(text1(n)->text(), forms[1]);
        enter(f->second);
        QCOMPARE(value(n), 1234.5);
        QVERIFY(!n->Changed());
        QCOMPARE(text1(n)->text(), shown);

        n->setUpDown(true);
        n->setValue(1.5);
        enter(n);
        QTest::keyClick(text1(n), Qt::Key_Up);
        QCOMPARE(value(n), 2.5);
        QCOMPARE(text1(n)->text(), forms[2]);
    }

    // Up/Down keys and the spinner halves; a step clamped back to the same value raises nothing.
    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        QTest::newRow("Down key below zero") << StepCase{true, 0.5, -100, 100, 1, u'D', -0.5, 1, u"(0.50)"};
        QTest::newRow("Up at MaxValue") << StepCase{true, 10, 0, 10, 1, u'U', 10, 0, u"10.00"};
        QTest::newRow("Down lands on MinValue") << StepCase{true, 1.5, 1, 10, 1, u'D', 1, 1, u"1.00"};
        QTest::newRow("keys idle without spinner") << StepCase{false, 5, 0, 10, 1, u'U', 5, 0, u"5"};
        QTest::newRow("upper half") << StepCase{true, 5, 0, 10, 2, u'S', 7, 1, u"7.00"};
        QTest::newRow("lower half, fraction") << StepCase{true, 5, 0, 10, 0.25, u's', 4.75, 1, u"4.75"};
        QTest::newRow("past the largest double") << StepCase{true, 1e308, -1e308, 1e308, 1e308, u'U', 1e308, 0, nullptr};
        QTest::newRow("below the lowest double") << StepCase{true, -1e308, -1e308, 1e308, 1e308, u'D', -1e308, 0, nullptr};
        QTest::newRow("overflow lands on the bound") << StepCase{true, 1e308, -1e308, 1.7e308, 1e308, u'S', 1.7e308, 1, nullptr};
    }
    void stepping()
    {
        QFETCH(StepCase, c);
        n->setUpDown(c.upDown);
        n->setMinValue(c.min);
        n->setMaxValue(c.max);
        n->setUpDownChange(c.step);
        n->setValue(c.start);
        QSignalSpy change(n, &KelNumber::Change);
        const bool key = c.how == u'U' || c.how == u'D';
        if (key)
            enter(n);
        play(n, QString(c.how));
        if (!key) { // from another field: the click brings the focus and keeps the display form
            QCOMPARE(QApplication::focusWidget(), text1(n));
            QCOMPARE(n->UpDown1->Value(), 1);
        }
        QCOMPARE(value(n), c.value);
        QCOMPARE(change.count(), c.changes);
        if (c.shown)
            QCOMPARE(text1(n)->text(), str(c.shown));
        QCOMPARE(text1(n)->cursorPosition(), 0); // a stepped text is written whole, the caret at its start
        for (QWidget *w : {static_cast<QWidget *>(text1(n)), n->UpDown1->widget()}) { // the wheel never steps
            QWheelEvent wheel({3, 3}, w->mapToGlobal(QPointF(3, 3)), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(w, &wheel);
        }
        QCOMPARE(value(n), c.value);
    }

    // A reference value that is no number leaves the one held (found by fuzzing: NaN was kept, and
    // Changed then compared against it).
    void referencesIgnoreNonNumbers_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<double>("bad");
        for (const char *p : {"ValueOriginal", "ValueSaved"})
            for (double bad : {qQNaN(), qInf(), -qInf()})
                QTest::addRow("%s %g", p, bad) << QByteArray(p) << bad;
    }
    void referencesIgnoreNonNumbers()
    {
        QFETCH(QByteArray, property);
        QFETCH(double, bad);
        n->setValue(7.0);
        n->setValueSaved(7.0);
        n->setProperty(property, bad);
        QCOMPARE(n->property(property).toDouble(), 7.0);
        QVERIFY(!n->Changed());
        QVERIFY(!n->ChangedSaved());
    }

    // Valid judges the text as typed and changes nothing; leaving clamps it without a message.
    void valid_data()
    {
        QTest::addColumn<ValidCase>("c");
        const QString zero = u"Please enter a non-zero value in this field."_qs;
        const auto range = [](const char16_t *r) { return u"This field only accepts values from "_qs + str(r) + u'.'; };
        QTest::newRow("mandatory zero") << ValidCase{true, false, -10, 10, 2, true, u"0", zero, 0};
        QTest::newRow("zero before range") << ValidCase{true, false, 1, 1000, 0, false, u"0", zero, 1};
        QTest::newRow("optional zero") << ValidCase{false, false, -10, 10, 2, true, u"0", {}, 0};
        QTest::newRow("range") << ValidCase{true, false, 1, 1000, 0, false, u"5000", range(u"1 to 1000"), 1000};
        QTest::newRow("MinValue always grouped") << ValidCase{true, false, 1000, 5000, 0, false, u"6000", range(u"1,000 to 5000"), 5000};
        QTest::newRow("negative bounds") << ValidCase{true, false, -1500, 2500, 2, true, u"-2000", range(u"(1,500.00) to 2,500.00"), -1500};
        QTest::newRow("bounds included") << ValidCase{true, false, 1000, 1000, 0, false, u"1000", {}, 1000};
        QTest::newRow("locked") << ValidCase{true, true, 1, 1000, 0, false, u"", {}, 0};
    }
    void valid()
    {
        QFETCH(ValidCase, c);
        n->setMandatory(c.mandatory);
        n->setDecimals(qint16(c.decimals));
        n->setGroupDigits(c.group);
        n->setMinValue(c.min);
        n->setMaxValue(c.max);
        n->setLocked(c.locked);
        enter(n);
        QTest::keyClicks(text1(n), str(c.typed));
        const QString &message = c.message;
        QCOMPARE(n->Valid(false), message.isEmpty());
        QVERIFY(rec->boxes.empty());
        QCOMPARE(n->Valid(true), message.isEmpty());
        QCOMPARE(text1(n)->text(), c.locked ? u"0"_qs : str(c.typed));
        QCOMPARE(rec->boxes.size(), size_t(message.isEmpty() ? 0 : 1));
        if (!message.isEmpty())
            QCOMPARE(rec->boxes[0].title + u": "_qs + rec->boxes[0].prompt, u"Invalid Value: "_qs + message);
        enter(f->second);
        QCOMPARE(value(n), c.committed);
        QCOMPARE(rec->boxes.size(), size_t(message.isEmpty() ? 0 : 1));
        QCOMPARE(n->Changed(), c.committed != 0);
        enter(n);
        QVERIFY(!n->Changed());
        text1(n)->setText(str(c.typed)); // pasted or dropped, without a key, is read too
        QCOMPARE(n->Valid(false), message.isEmpty());
    }

    // A new field is invalid (mandatory zero) and takes the focus back; the bounds drag each other.
    void newFieldAndBounds()
    {
        n->setObjectName(u"KelNumber1"_qs);
        n->setMaxValue(-5);
        n->InitProperties(); // as constructed, like the second field
        QCOMPARE(n->Caption(), u"KelNumber1"_qs);
        for (KelNumber *k : {n, f->second}) {
            QCOMPARE(k->MinValue(), -9999999999.0);
            QCOMPARE(k->MaxValue(), 9999999999.0);
        }
        QVERIFY(!n->Valid(true));
        QCOMPARE(QApplication::focusWidget(), text1(n));
        n->setDecimals(0);
        n->setMaxValue(2.5);
        QCOMPARE(n->MaxValue(), 3.0);
        n->setMinValue(10);
        QCOMPARE(n->MaxValue(), 10.0);
        n->setMaxValue(-4);
        QCOMPARE(n->MinValue(), -4.0);
        n->setValue(50); // never clamped from code
        QCOMPARE(value(n), 50.0);
        // Bounds equal at one decimal stay in order when a finer Decimals rounds them again.
        n->setMaxValue(0);
        n->setDecimals(1);
        n->setMinValue(0.005);
        n->setDecimals(5);
        QCOMPARE(n->MaxValue(), 0.005);
        // Absent entries read as 0 for both bounds; only Value is always written.
        MemoryPropertyBag empty;
        n->setMandatory(false);
        n->ReadProperties(empty);
        QCOMPARE(n->MinValue(), 0.0);
        QCOMPARE(n->MaxValue(), 0.0);
        QVERIFY(n->Mandatory());
        n->WriteProperties(empty);
        QCOMPARE(empty.entries().size(), qsizetype(1));
        QCOMPARE(empty.value(u"Value"_qs), Variant(0.0));
    }

    void layout_data()
    {
        QTest::addColumn<LayoutCase>("c");
        QTest::newRow("spinner strip") << LayoutCase{true, 3000, 3000, 1500};
        QTest::newRow("caption clear of spinner") << LayoutCase{true, 1500, 1500, 1260};
        QTest::newRow("minimum with spinner") << LayoutCase{true, 150, 340, 100};
        QTest::newRow("minimum without") << LayoutCase{false, 30, 100, 100};
    }
    void layout()
    {
        QFETCH(LayoutCase, c);
        n->setWidth(3000);
        n->setCaptionWidth(1500);
        n->setUpDown(c.upDown);
        n->setHeight(500);
        n->setWidth(c.width);
        QCOMPARE(n->Height(), 300.0);
        QCOMPARE(n->Width(), c.expected);
        QCOMPARE(n->Label1->Width(), c.label);
        QCOMPARE(n->Text1->Left() + n->Text1->Width(), c.expected - (c.upDown ? 240 : 0));
        if (c.upDown)
            QCOMPARE(QRectF(n->UpDown1->Left(), n->UpDown1->Top(), n->UpDown1->Width(), n->UpDown1->Height()),
                     QRectF(c.expected - 240, 0, 240, 300));
    }

};

QTEST_MAIN(TestKelNumber)
#include "tst_kelnumber.moc"