#include "controls/number/kelnumber.h"
#include "kelfixture.h"
#include "library/dispatch.h"
#include "library/typemodel.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace kel;

namespace {

using Form = test::TwoFieldForm<KelNumber>;

QLineEdit *text1(KelNumber *n) { return n->findChild<QLineEdit *>(u"Text1"_qs); }
double value(KelNumber *n) { return n->Value().toDouble(); }
void enter(KelNumber *n) { text1(n)->setFocus(Qt::TabFocusReason); }
// Shown and active, the focus parked in the second field.
bool ready(Form &f)
{
    if (!f.ready())
        return false;
    enter(f.second);
    return QApplication::focusWidget() == text1(f.second);
}
QString str(const char16_t *s) { return QString::fromUtf16(s); }

struct ValueCase { int decimals; bool group; Variant input; double value; const char16_t *shown, *edited; };
struct KeyCase { int decimals; double number; int caret; bool insert, locked; const char16_t *keys, *text; int selStart, selLength, beeps; };
struct StepCase { bool upDown; double start, min, max, step; const char *how; double value; int changes; const char16_t *shown; };
struct ValidCase { bool mandatory, locked; double min, max; int decimals; bool group; const char16_t *typed, *message; };

} // namespace

Q_DECLARE_METATYPE(ValueCase)
Q_DECLARE_METATYPE(KeyCase)
Q_DECLARE_METATYPE(StepCase)
Q_DECLARE_METATYPE(ValidCase)

class TestKelNumber : public QObject
{
    Q_OBJECT
    RecordingServices *rec = nullptr;

private slots:
    void init()
    {
        test::useRuntime();
        rec = test::recordServices();
    }

    // Set from code: rounded, display form in red for negatives; editing form in black while
    // focused; display form again on leaving. Non-numeric input is ignored.
    void valueAndForms_data()
    {
        QTest::addColumn<ValueCase>("c");
        QTest::newRow("negative grouped") << ValueCase{2, true, -1234.5, -1234.5, u"(1,234.50)", u"-1234.5"};
        QTest::newRow("ungrouped") << ValueCase{2, false, 1234.5, 1234.5, u"1234.50", u"1234.5"};
        QTest::newRow("binary below half") << ValueCase{2, true, 2.675, 2.68, u"2.68", u"2.68"};
        QTest::newRow("no fraction kept") << ValueCase{0, true, 2.5, 3, u"3", u"3"};
        QTest::newRow("regional count, no leading zero") << ValueCase{-1, true, 0.5, 0.5, u"0.50", u".5"};
        QTest::newRow("grouped text") << ValueCase{2, true, u"1,234.567"_qs, 1234.57, u"1,234.57", u"1234.57"};
        QTest::newRow("sixteen places") << ValueCase{16, true, 0.1, 0.1, u"0.1000000000000000", u".1"};
        QTest::newRow("bound") << ValueCase{3, true, -9999999999.0, -9999999999.0, u"(9,999,999,999.000)", u"-9999999999"};
        QTest::newRow("Empty is zero, edits empty") << ValueCase{2, true, Variant(), 0, u"0.00", u""};
        QTest::newRow("text ignored") << ValueCase{2, true, u"abc"_qs, 5, u"5.00", u"5"};
        QTest::newRow("Null ignored") << ValueCase{2, true, Null, 5, u"5.00", u"5"};
    }
    void valueAndForms()
    {
        QFETCH(ValueCase, c);
        Form f;
        QVERIFY(ready(f));
        KelNumber *n = f.first;
        n->setDecimals(qint16(c.decimals));
        n->setGroupDigits(c.group);
        n->setValue(5.0);
        n->setValue(c.input);
        const quint32 rest = c.value < 0 ? 0x0000FF : 0;
        QCOMPARE(n->Value(), Variant(c.value));
        QCOMPARE(n->ValueOriginal(), c.value);
        QCOMPARE(text1(n)->text(), str(c.shown));
        QCOMPARE(n->Text1->ForeColor(), rest);
        enter(n);
        QCOMPARE(text1(n)->text(), str(c.edited));
        QCOMPARE(n->Text1->ForeColor(), 0u);
        enter(f.second);
        QCOMPARE(text1(n)->text(), str(c.shown));
        QCOMPARE(n->Text1->ForeColor(), rest);
        QCOMPARE(value(n), c.value);
    }

    void decimalsOutOfRangeIgnored()
    {
        KelNumber n;
        n.setDecimals(3);
        n.setValue(1.2345);
        QSignalSpy reported(&n, &UserControl::PropertyChanged);
        n.setDecimals(17);
        n.setDecimals(-2);
        QCOMPARE(n.Decimals(), qint16(3));
        QCOMPARE(text1(&n)->text(), u"1.235"_qs);
        QCOMPARE(reported.count(), 0);
        n.setDecimals(-1); // the regional two: rounded and shown again
        QCOMPARE(text1(&n)->text(), u"1.24"_qs);
    }

    void keyFilter_data()
    {
        QTest::addColumn<KeyCase>("c");
        QTest::newRow("minus twice keeps one") << KeyCase{2, 12, 2, true, false, u"--", u"-12", 1, 2, 0};
        QTest::newRow("separator to caret") << KeyCase{2, 12.34, 1, true, false, u".", u"1.34", 2, 2, 0};
        QTest::newRow("separator at caret") << KeyCase{2, 12.34, 3, true, false, u".", u"12.34", 3, 2, 0};
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
        Form f;
        QVERIFY(ready(f));
        KelNumber *n = f.first;
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

    void keypadSeparatorTypesRegionalOne()
    {
        test::useRuntime(24, 2, QLocale(QLocale::German, QLocale::Germany));
        Form f;
        QVERIFY(ready(f));
        enter(f.first);
        QTest::keyClicks(text1(f.first), u"12"_qs);
        QTest::keyClick(text1(f.first), Qt::Key_Period, Qt::KeypadModifier);
        QTest::keyClicks(text1(f.first), u"5"_qs);
        QCOMPARE(text1(f.first)->text(), u"12,5"_qs);
        enter(f.second);
        QCOMPARE(value(f.first), 12.5);
    }

    void insertTogglesAndEnterMovesOn()
    {
        Form f;
        QVERIFY(ready(f));
        enter(f.first);
        QTest::keyClick(text1(f.first), Qt::Key_Insert);
        QVERIFY(f.first->InsertMode());
        QTest::keyClicks(text1(f.first), u"7"_qs);
        QTest::keyClick(text1(f.first), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), text1(f.second));
        QCOMPARE(value(f.first), 7.0);
    }

    // Up/Down keys and the spinner halves; a step clamped back to the same value raises nothing.
    void stepping_data()
    {
        QTest::addColumn<StepCase>("c");
        QTest::newRow("Up key") << StepCase{true, 5, -100, 100, 1, "up", 6, 1, u"6.00"};
        QTest::newRow("Down key below zero") << StepCase{true, 0.5, -100, 100, 1, "down", -0.5, 1, u"(0.50)"};
        QTest::newRow("Up at MaxValue") << StepCase{true, 10, 0, 10, 1, "up", 10, 0, u"10.00"};
        QTest::newRow("Down lands on MinValue") << StepCase{true, 1.5, 1, 10, 1, "down", 1, 1, u"1.00"};
        QTest::newRow("keys idle without spinner") << StepCase{false, 5, 0, 10, 1, "up", 5, 0, u"5"};
        QTest::newRow("upper half") << StepCase{true, 5, 0, 10, 2, "upper", 7, 1, u"7.00"};
        QTest::newRow("lower half, fraction") << StepCase{true, 5, 0, 10, 0.25, "lower", 4.75, 1, u"4.75"};
        QTest::newRow("upper half at MaxValue") << StepCase{true, 10, 0, 10, 1, "upper", 10, 0, u"10.00"};
    }
    void stepping()
    {
        QFETCH(StepCase, c);
        Form f;
        QVERIFY(ready(f));
        KelNumber *n = f.first;
        n->setUpDown(c.upDown);
        n->setMinValue(c.min);
        n->setMaxValue(c.max);
        n->setUpDownChange(c.step);
        n->setValue(c.start);
        QSignalSpy change(n, &KelNumber::Change);
        QWidget *spin = n->findChild<QWidget *>(u"UpDown1"_qs);
        const QByteArray how(c.how);
        if (how == "up" || how == "down") {
            enter(n);
            QTest::keyClick(text1(n), how == "up" ? Qt::Key_Up : Qt::Key_Down);
        } else { // from another field: the click brings the focus and keeps the display form
            QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(spin->width() / 2, how == "upper" ? 2 : spin->height() - 3));
            QCOMPARE(QApplication::focusWidget(), text1(n));
            QCOMPARE(n->UpDown1->Value(), 1);
        }
        QCOMPARE(value(n), c.value);
        QCOMPARE(change.count(), c.changes);
        QCOMPARE(text1(n)->text(), str(c.shown));
        for (QWidget *w : {static_cast<QWidget *>(text1(n)), spin}) { // the wheel never steps
            QWheelEvent wheel({3, 3}, w->mapToGlobal(QPointF(3, 3)), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(w, &wheel);
        }
        QCOMPARE(value(n), c.value);
    }

    void commitClampsSilentlyOnLeaving()
    {
        Form f;
        QVERIFY(ready(f));
        f.first->setMinValue(10);
        f.first->setMaxValue(20);
        f.first->setValue(15);
        enter(f.first);
        text1(f.first)->selectAll();
        QTest::keyClicks(text1(f.first), u"5"_qs);
        enter(f.second);
        QCOMPARE(value(f.first), 10.0);
        QVERIFY(rec->boxes.empty());
        QVERIFY(f.first->Changed());
        enter(f.first);
        QVERIFY(!f.first->Changed());
        // Text changed without a key (pasted from the menu, dropped) counts too.
        text1(f.first)->setText(u"17"_qs);
        QCOMPARE(value(f.first), 17.0);
        QCOMPARE(text1(f.first)->text(), u"17.00"_qs);
    }

    void valid_data()
    {
        QTest::addColumn<ValidCase>("c");
        const char16_t *zero = u"Please enter a non-zero value in this field.";
        QTest::newRow("mandatory zero") << ValidCase{true, false, -10, 10, 2, true, u"0", zero};
        QTest::newRow("zero before range") << ValidCase{true, false, 1, 1000, 0, false, u"0", zero};
        QTest::newRow("optional zero") << ValidCase{false, false, -10, 10, 2, true, u"0", u""};
        QTest::newRow("range") << ValidCase{true, false, 1, 1000, 0, false, u"5000",
                                            u"This field only accepts values from 1 to 1000."};
        QTest::newRow("MinValue always grouped") << ValidCase{true, false, 1000, 5000, 0, false, u"6000",
                                                              u"This field only accepts values from 1,000 to 5000."};
        QTest::newRow("negative bounds") << ValidCase{true, false, -1500, 2500, 2, true, u"-2000",
                                                      u"This field only accepts values from (1,500.00) to 2,500.00."};
        QTest::newRow("bounds included") << ValidCase{true, false, 1, 1000, 0, false, u"1000", u""};
        QTest::newRow("locked") << ValidCase{true, true, 1, 1000, 0, false, u"", u""};
    }
    void valid()
    {
        QFETCH(ValidCase, c);
        Form f;
        QVERIFY(ready(f));
        KelNumber *n = f.first;
        n->setMandatory(c.mandatory);
        n->setDecimals(qint16(c.decimals));
        n->setGroupDigits(c.group);
        n->setMinValue(c.min);
        n->setMaxValue(c.max);
        n->setLocked(c.locked);
        enter(n);
        QTest::keyClicks(text1(n), str(c.typed));
        const QString message = str(c.message);
        QCOMPARE(n->Valid(false), message.isEmpty());
        QVERIFY(rec->boxes.empty());
        QCOMPARE(n->Valid(true), message.isEmpty());
        QCOMPARE(text1(n)->text(), c.locked ? u"0"_qs : str(c.typed)); // Valid changes nothing
        QCOMPARE(rec->boxes.size(), size_t(message.isEmpty() ? 0 : 1));
        if (!message.isEmpty()) {
            QCOMPARE(rec->boxes[0].prompt, message);
            QCOMPARE(rec->boxes[0].style, 64);
            QCOMPARE(rec->boxes[0].title, u"Invalid Value"_qs);
        }
    }

    void validPutsFocusBack()
    {
        Form f;
        QVERIFY(ready(f));
        QVERIFY(!f.first->Valid(true)); // mandatory zero, as a new field is
        QCOMPARE(QApplication::focusWidget(), text1(f.first));
    }

    void boundsDragEachOther()
    {
        KelNumber n;
        n.setDecimals(0);
        n.setMaxValue(2.5);
        QCOMPARE(n.MaxValue(), 3.0);
        n.setMinValue(10);
        QCOMPARE(n.MaxValue(), 10.0);
        n.setMaxValue(-4);
        QCOMPARE(n.MinValue(), -4.0);
        n.setValue(50); // never clamped from code
        QCOMPARE(value(&n), 50.0);
    }

    void layout_data()
    {
        QTest::addColumn<bool>("upDown");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("expectedWidth");
        QTest::addColumn<double>("labelWidth");
        QTest::newRow("spinner strip") << true << 3000.0 << 3000.0 << 1500.0;
        QTest::newRow("caption clear of spinner") << true << 1500.0 << 1500.0 << 1260.0;
        QTest::newRow("minimum with spinner") << true << 150.0 << 340.0 << 100.0;
        QTest::newRow("minimum without") << false << 30.0 << 100.0 << 100.0;
    }
    void layout()
    {
        QFETCH(bool, upDown);
        QFETCH(double, width);
        QFETCH(double, expectedWidth);
        QFETCH(double, labelWidth);
        KelNumber n;
        n.setWidth(3000);
        n.setCaptionWidth(1500);
        n.setUpDown(upDown);
        n.setHeight(500);
        n.setWidth(width);
        QCOMPARE(n.Height(), 300.0);
        QCOMPARE(n.Width(), expectedWidth);
        QCOMPARE(n.Label1->Width(), labelWidth);
        QCOMPARE(n.Text1->Left() + n.Text1->Width(), expectedWidth - (upDown ? 240 : 0));
        if (upDown)
            QCOMPARE(QRectF(n.UpDown1->Left(), n.UpDown1->Top(), n.UpDown1->Width(), n.UpDown1->Height()),
                     QRectF(expectedWidth - 240, 0, 240, 300));
    }

    void newControl()
    {
        KelNumber n;
        n.setObjectName(u"KelNumber1"_qs);
        n.InitProperties();
        QCOMPARE(n.Caption(), u"KelNumber1"_qs);
        QCOMPARE(text1(&n)->text(), u"0"_qs);
        QCOMPARE(n.MinValue(), -9999999999.0);
        QCOMPARE(n.MaxValue(), 9999999999.0);
        QVERIFY(!n.InsertMode());
        QVERIFY(!n.Valid());
    }

    void persistence()
    {
        const std::vector<std::pair<QString, Variant>> set = { // in the order they are written
            {u"Caption"_qs, u"Amount"_qs}, {u"CaptionWidth"_qs, qint16(900)}, {u"Decimals"_qs, qint16(3)},
            {u"Enabled"_qs, false}, {u"FontBold"_qs, true}, {u"GroupDigits"_qs, false}, {u"InsertMode"_qs, true},
            {u"Locked"_qs, true}, {u"Mandatory"_qs, false}, {u"MaxValue"_qs, 500.125}, {u"MinValue"_qs, -20.5},
            {u"SelectOnFocus"_qs, true}, {u"UpDown"_qs, true}, {u"UpDownChange"_qs, 0.5}, {u"Value"_qs, 12.345},
        };
        KelNumber saved, loaded;
        saved.setWidth(4000);
        loaded.setWidth(4000);
        for (const auto &[name, v] : set)
            QVERIFY2(dispatchPut(&saved, name, v), qPrintable(name));
        MemoryPropertyBag bag;
        saved.WriteProperties(bag);
        QCOMPARE(bag.entries().size(), qsizetype(set.size()));
        for (size_t i = 0; i < set.size(); ++i)
            QCOMPARE(bag.entries()[qsizetype(i)].first, set[i].first);
        loaded.ReadProperties(bag);
        for (const auto &[name, v] : set)
            QVERIFY2(dispatchGet(&loaded, name) == dispatchGet(&saved, name), qPrintable(name));
        QCOMPARE(text1(&loaded)->text(), u"12.345"_qs);

        // Absent entries read as 0 for both bounds; only Value is always written.
        MemoryPropertyBag empty;
        KelNumber bare;
        bare.ReadProperties(empty);
        QCOMPARE(bare.MinValue(), 0.0);
        QCOMPARE(bare.MaxValue(), 0.0);
        QVERIFY(bare.Mandatory());
        bare.WriteProperties(empty);
        QCOMPARE(empty.entries().size(), qsizetype(1));
        QCOMPARE(empty.value(u"Value"_qs), Variant(0.0));
    }

    void everyMemberReachableByDispatch()
    {
        const typemodel::ClassInfo *cls = typemodel::findClass(u"KelNumber");
        QVERIFY(cls);
        KelNumber n;
        n.setCaption(u"Amount"_qs);
        n.Label1->Tag = u"old"_qs;
        for (const typemodel::Member &m : cls->members) {
            std::vector<Variant> args;
            if (m.access == typemodel::Access::Method) {
                if (!m.args.empty())
                    args.push_back(u"tip"_qs);
                QVERIFY2(dispatchInvoke(&n, m.dispid, DispatchKind::Method, args).ok, qPrintable(m.name));
                continue;
            }
            const bool byRef = m.name == u"ChangedCaption";
            if (byRef)
                args.push_back(QString());
            const DispatchResult got = dispatchInvoke(&n, m.dispid, DispatchKind::PropertyGet, args);
            QVERIFY2(got.ok, qPrintable(got.error));
            if (byRef)
                QCOMPARE(args[0], Variant(u"Amount"_qs));
            if (m.access == typemodel::Access::ReadOnly)
                continue;
            std::vector<Variant> put{got.value};
            QVERIFY2(dispatchInvoke(&n, m.dispid, DispatchKind::PropertyPut, put).ok, qPrintable(m.name));
        }
        QCOMPARE(n.Text1->ToolTipText(), u"tip"_qs);
    }
};

QTEST_MAIN(TestKelNumber)
#include "tst_kelnumber.moc"
