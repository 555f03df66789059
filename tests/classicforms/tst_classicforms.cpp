// Classic forms built into widgets and written as .ui: the library's controls against their own
// property reading from the same values, the stock controls against what the form says, the .ui
// against the direct build, and the real forms beside the repository.
#include "formbuilder.h"
#include "formloader.h"
#include "formstate.h"
#include "frmwriter.h"
#include "uiwriter.h"
#include "uisample.h"

#include "forms/usercontrol.h"
#include "kelfixture.h"

#include <QAction>
#include <QBuffer>
#include <QComboBox>
#include <QDirIterator>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMetaProperty>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace kel;
using namespace kel::classic;
using kel::test::FrmWriter;
using kel::test::state;

static QString frmNumber(double d) { return QString::number(d, 'g', 17); }

// Text in the form's own code page, so that a wrong decoding shows.
static QString localText(const QByteArray &codePage)
{
    return codePage == "GBK" ? QStringLiteral("\u540d\u79f0 \u5ba2\u6237") : QStringLiteral("Gr\u00f6\u00dfe \u00e9t\u00e9 \u20ac");
}

// The sample value, with the caption and the text field's lines in the code page.
static Variant sampleValue(const QString &cls, const PersistedProperty &p, const QByteArray &codePage)
{
    if (p.name == u"Caption")
        return localText(codePage);
    if (cls == u"KelText" && p.name == u"Text")
        return QStringLiteral("Line one\r\n") + localText(codePage);
    return p.value;
}

static QByteArray imageBytes(const char *format, QSize size, QColor colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// The widgets of `stops` in the order Tab visits them in `form`, from the first of them.
static QStringList focusChain(QWidget *form, const QList<QWidget *> &stops)
{
    QStringList names;
    for (const QWidget *w : stops)
        names << w->objectName();
    QStringList chain;
    QWidget *start = form->findChild<QWidget *>(names.first());
    QWidget *w = start;
    do {
        if (names.contains(w->objectName()) && !chain.contains(w->objectName()))
            chain << w->objectName();
        w = w->nextInFocusChain();
    } while (w != start);
    return chain;
}

class TstClassicForms : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

    // Every control of the library with a non-default value in every persisted property, two of
    // them a control array, one inside two frames; strings with line breaks go to the .frx.
    QString ourForm(const QString &name, const QByteArray &codePage, bool crlf, bool lowerNames)
    {
        FrmWriter w(name, codePage, crlf);
        w.begin(0, QStringLiteral("VB.Form"), name);
        w.prop(1, QStringLiteral("ClientWidth"), QStringLiteral("7000"));
        w.prop(1, QStringLiteral("ClientHeight"), QStringLiteral("6000"));
        w.begin(1, QStringLiteral("VB.Frame"), QStringLiteral("fraOuter"));
        w.prop(2, QStringLiteral("Width"), QStringLiteral("6500"));
        w.prop(2, QStringLiteral("Height"), QStringLiteral("5800"));
        w.begin(2, QStringLiteral("VB.Frame"), QStringLiteral("fraInner"));
        w.prop(3, QStringLiteral("Width"), QStringLiteral("6000"));
        w.prop(3, QStringLiteral("Height"), QStringLiteral("5500"));
        const QString local = localText(codePage);
        int top = 120, tab = 20;
        for (const QString &cls : kel::test::controlClasses()) {
            for (int index : cls == u"KelText" ? QList<int>{1, 0} : QList<int>{-1}) {
                w.begin(4, QStringLiteral("KelControls8.") + cls, kel::test::sampleObjectName(cls));
                for (const PersistedProperty &p : kel::test::sampleValues(cls)) {
                    const QString n = lowerNames ? p.name.toLower() : p.name;
                    const Variant v = sampleValue(cls, p, codePage);
                    switch (v.type()) {
                    case Variant::Type::Boolean: w.prop(5, n, v.toBool() ? QStringLiteral("-1  'True") : QStringLiteral("0   'False")); break;
                    case Variant::Type::String:
                        w.prop(5, n, v.toString().contains(u'\n') ? w.frxString(v.toString(), true) : FrmWriter::quoted(v.toString()));
                        break;
                    case Variant::Type::Date: w.prop(5, n, frmNumber(v.toDate().serial)); break;
                    default: w.prop(5, n, frmNumber(v.toDouble())); break;
                    }
                }
                if (index >= 0)
                    w.prop(5, QStringLiteral("Index"), QString::number(index));
                w.prop(5, QStringLiteral("Left"), QStringLiteral("150"));
                w.prop(5, QStringLiteral("Top"), QString::number(top));
                w.prop(5, QStringLiteral("Width"), QStringLiteral("4500"));
                w.prop(5, QStringLiteral("Height"), QStringLiteral("300"));
                w.prop(5, QStringLiteral("TabIndex"), QString::number(tab--));
                w.prop(5, QStringLiteral("ToolTipText"), FrmWriter::quoted(QStringLiteral("Tip ") + local));
                w.prop(5, QStringLiteral("Tag"), FrmWriter::quoted(cls));
                w.end(4);
                top += 450;
            }
        }
        w.end(2);
        w.end(1);
        w.end(0);
        return w.save(m_dir.path());
    }

    // Every stock control of the classic designer, as it saves them.
    QString stockForm()
    {
        FrmWriter w(QStringLiteral("frmStock"));
        auto control = [&](int depth, const char *cls, const char *name, std::initializer_list<std::pair<const char *, QString>> props) {
            w.begin(depth, QStringLiteral("VB.") + QLatin1String(cls), QLatin1String(name));
            for (const auto &[n, v] : props)
                w.prop(depth + 1, QLatin1String(n), v);
        };
        auto leaf = [&](int depth, const char *cls, const char *name, std::initializer_list<std::pair<const char *, QString>> props) {
            control(depth, cls, name, props);
            w.end(depth);
        };
        auto q = FrmWriter::quoted;
        control(0, "Form", "frmStock", {{"Caption", q(QStringLiteral("Stock"))}, {"ClientWidth", QStringLiteral("6000")},
                                        {"ClientHeight", QStringLiteral("4500")}, {"BackColor", QStringLiteral("&H00C0FFFF&")}});
        w.line(1, QStringLiteral("BeginProperty Font"));
        w.prop(2, QStringLiteral("Name"), q(QStringLiteral("Arial")));
        w.prop(2, QStringLiteral("Size"), QStringLiteral("9.75"));
        w.prop(2, QStringLiteral("Weight"), QStringLiteral("700"));
        w.line(1, QStringLiteral("EndProperty"));
        leaf(1, "Label", "lblTitle", {{"Alignment", QStringLiteral("2  'Center")}, {"Caption", q(QStringLiteral("Title"))},
                                      {"ForeColor", QStringLiteral("&H000000FF&")}, {"Left", QStringLiteral("150")}, {"Top", QStringLiteral("150")},
                                      {"Width", QStringLiteral("1500")}, {"Height", QStringLiteral("300")}, {"Appearance", QStringLiteral("0  'Flat")}});
        leaf(1, "CommandButton", "cmdOK", {{"Caption", q(QStringLiteral("&OK"))}, {"Default", QStringLiteral("-1  'True")}, {"TabIndex", QStringLiteral("3")}});
        leaf(1, "CommandButton", "cmdCancel", {{"Caption", q(QStringLiteral("Cancel"))}, {"Cancel", QStringLiteral("-1  'True")}, {"TabIndex", QStringLiteral("2")}});
        leaf(1, "TextBox", "txtName", {{"Text", q(QStringLiteral("Bob"))}, {"MaxLength", QStringLiteral("20")}, {"PasswordChar", q(QStringLiteral("*"))},
                                       {"Locked", QStringLiteral("-1")}, {"TabIndex", QStringLiteral("1")}, {"ToolTipText", q(QStringLiteral("Who"))}});
        leaf(1, "TextBox", "txtNotes", {{"MultiLine", QStringLiteral("-1  'True")}, {"ScrollBars", QStringLiteral("2  'Vertical")},
                                        {"Text", w.frxString(QStringLiteral("Line one\r\nLine two"), false)}, {"TabIndex", QStringLiteral("0")}});
        leaf(1, "CheckBox", "chkPaid", {{"Caption", q(QStringLiteral("Paid"))}, {"Value", QStringLiteral("1  'Checked")}});
        control(1, "Frame", "fraA", {{"Caption", q(QStringLiteral("A"))}, {"Width", QStringLiteral("2000")}, {"Height", QStringLiteral("1200")}});
        leaf(2, "OptionButton", "optA1", {{"Value", QStringLiteral("-1  'True")}});
        leaf(2, "OptionButton", "optA2", {});
        w.end(1);
        control(1, "Frame", "fraB", {{"Caption", q(QStringLiteral("B"))}});
        control(2, "Frame", "fraInner", {{"Caption", q(QStringLiteral("Inner"))}});
        leaf(3, "OptionButton", "optB1", {{"Value", QStringLiteral("-1  'True")}});
        w.end(2);
        w.end(1);
        leaf(1, "ComboBox", "cboShip", {{"Style", QStringLiteral("2  'Dropdown List")},
                                        {"List", w.frxList({QStringLiteral("Post"), QStringLiteral("Courier"), QString()})},
                                        {"ItemData", w.frxList({QStringLiteral("0"), QStringLiteral("7"), QStringLiteral("0")})}});
        leaf(1, "ListBox", "lstItems", {{"List", w.frxList({QStringLiteral("a"), QStringLiteral("b")})}});
        control(1, "PictureBox", "picLogo", {{"Picture", w.frxPicture(imageBytes("BMP", {8, 6}, Qt::red))}, {"Width", QStringLiteral("1500")}, {"Height", QStringLiteral("900")}});
        leaf(2, "Image", "imgInner", {{"Picture", w.frxPicture(imageBytes("JPEG", {5, 4}, Qt::blue))}, {"Stretch", QStringLiteral("-1")}});
        w.end(1);
        leaf(1, "HScrollBar", "hsb", {{"Max", QStringLiteral("10")}, {"Value", QStringLiteral("3")}, {"Width", QStringLiteral("1500")}, {"Height", QStringLiteral("255")}});
        leaf(1, "VScrollBar", "vsb", {{"Visible", QStringLiteral("0   'False")}});
        leaf(1, "Line", "linH", {{"X1", QStringLiteral("150")}, {"X2", QStringLiteral("1650")}, {"Y1", QStringLiteral("3000")}, {"Y2", QStringLiteral("3000")}});
        leaf(1, "Shape", "shpRound", {{"Shape", QStringLiteral("2  'Oval")}, {"Width", QStringLiteral("600")}, {"Height", QStringLiteral("300")}});
        leaf(1, "Timer", "tmrClock", {{"Interval", QStringLiteral("1000")}});
        w.begin(1, QStringLiteral("MSComctlLib.ListView"), QStringLiteral("lvwOrders"));
        w.prop(2, QStringLiteral("Width"), QStringLiteral("1500"));
        w.end(1);
        control(1, "Menu", "mnuFile", {{"Caption", q(QStringLiteral("&File"))}});
        leaf(2, "Menu", "mnuOpen", {{"Caption", q(QStringLiteral("&Open"))}, {"Shortcut", QStringLiteral("^O")}});
        leaf(2, "Menu", "mnuSep", {{"Caption", q(QStringLiteral("-"))}});
        control(2, "Menu", "mnuRecent", {{"Caption", q(QStringLiteral("Recent"))}});
        leaf(3, "Menu", "mnuItem", {{"Caption", q(QStringLiteral("One"))}, {"Index", QStringLiteral("0")}, {"Checked", QStringLiteral("-1  'True")}});
        leaf(3, "Menu", "mnuItem", {{"Caption", q(QStringLiteral("Two"))}, {"Index", QStringLiteral("1")}, {"Enabled", QStringLiteral("0")},
                                    {"Shortcut", QStringLiteral("+{F2}")}});
        w.end(2);
        w.end(1);
        w.end(0);
        w.code(QStringLiteral("Private Sub cmdOK_Click()"));
        w.code(QStringLiteral("    Unload Me"));
        w.code(QStringLiteral("End Sub"));
        return w.save(m_dir.path());
    }

private slots:
    void initTestCase()
    {
        kel::test::useRuntime();
        QVERIFY(m_dir.isValid());
    }

    void ourControls_data()
    {
        QTest::addColumn<QByteArray>("codePage");
        QTest::addColumn<bool>("crlf");
        QTest::addColumn<bool>("lowerNames");
        QTest::newRow("windows-1252, CRLF") << QByteArray("windows-1252") << true << false;
        QTest::newRow("windows-1252, LF") << QByteArray("windows-1252") << false << false;
        QTest::newRow("GBK, CRLF") << QByteArray("GBK") << true << false;
        QTest::newRow("names in lower case") << QByteArray("windows-1252") << true << true;
    }

    void ourControls()
    {
        QFETCH(QByteArray, codePage);
        QFETCH(bool, crlf);
        QFETCH(bool, lowerNames);
        const QString name = QStringLiteral("frmOurs%1").arg(QTest::currentDataTag() ? qHash(QByteArray(QTest::currentDataTag())) % 1000 : 0);
        const QString path = ourForm(name, codePage, crlf, lowerNames);
        ImportedForm form;
        Problem error;
        QVERIFY2(importForm(path, {QString::fromLatin1(codePage)}, &form, &error), qPrintable(error.text()));
        QVERIFY2(form.report.damaged.isEmpty() && form.report.placeholders.isEmpty(), qPrintable(form.report.text()));
        QWidget *inner = form.window->findChild<QGroupBox *>(QStringLiteral("fraInner"));
        QVERIFY(inner && inner->parentWidget()->objectName() == u"fraOuter");

        const QStringList classes = kel::test::controlClasses();
        QCOMPARE(inner->findChildren<UserControl *>(Qt::FindDirectChildrenOnly).size(), classes.size() + 1);
        for (const QString &cls : classes) {
            const QString objectName = kel::test::sampleObjectName(cls) + (cls == u"KelText" ? QStringLiteral("_0") : QString());
            auto *control = inner->findChild<UserControl *>(objectName);
            QVERIFY2(control, qPrintable(objectName));
            // The same values read the classic way into a control of the factory.
            MemoryPropertyBag bag;
            for (const PersistedProperty &p : kel::test::sampleValues(cls))
                bag.set(p.name, sampleValue(cls, p, codePage));
            std::unique_ptr<QObject> fresh(createObject(cls));
            auto *expected = qobject_cast<UserControl *>(fresh.get());
            expected->ReadProperties(bag);
            MemoryPropertyBag want, got;
            expected->WriteProperties(want);
            control->WriteProperties(got);
            QCOMPARE(got.entries(), want.entries());
            QCOMPARE(control->pos(), QPoint(10, control->pos().y()));
            QVERIFY(control->toolTip().startsWith(u"Tip "));
            QCOMPARE(control->property("Tag").toString(), cls);
        }
        QCOMPARE(inner->findChild<UserControl *>(QStringLiteral("kelText_1"))->property("Index").toInt(), 1);
        QCOMPARE(form.tabOrder.size(), classes.size()); // two text fields, no progress bar: it takes no focus
    }

    void stockControls_data()
    {
        QTest::addColumn<QString>("object");
        QTest::addColumn<QString>("expected"); // fragments of state(), each separated by "; "
        QTest::newRow("form") << "frmStock" << "QMainWindow; windowTitle=Stock; font=Arial/10/1";
        QTest::newRow("label") << "lblTitle" << "QLabel 10,10 100x20; text=Title; colours=#ffffc0/#ff0000; alignment=";
        QTest::newRow("default button") << "cmdOK" << "QPushButton; text=&OK; default=true";
        QTest::newRow("cancel button") << "cmdCancel" << "Cancel=true";
        QTest::newRow("text box") << "txtName" << "QLineEdit; text=Bob; maxLength=20; echoMode=Password; readOnly=true; tip=Who";
        QTest::newRow("multi-line from the .frx") << "txtNotes" << "QPlainTextEdit; plainText=Line one\nLine two";
        QTest::newRow("check box") << "chkPaid" << "QCheckBox; checked=true";
        QTest::newRow("options grouped by frame") << "optB1" << "QRadioButton; checked=true";
        QTest::newRow("other frame's option") << "optA1" << "checked=true";
        QTest::newRow("nested frame") << "fraInner" << "QGroupBox; title=Inner";
        QTest::newRow("combo list and item data") << "cboShip" << "QComboBox; item=Post item=Courier item= ; ItemData=0,7,0; currentIndex=-1";
        QTest::newRow("list box") << "lstItems" << "QListWidget; item=a item=b";
        QTest::newRow("picture box picture") << "picLogo_picture" << "QLabel; pixmap=8x6";
        QTest::newRow("image in a picture box") << "imgInner" << "QLabel; pixmap=5x4; scaledContents=true";
        QTest::newRow("scroll bar") << "hsb" << "QScrollBar; orientation=Horizontal; maximum=10; value=3";
        QTest::newRow("hidden") << "vsb" << "hidden=1";
        QTest::newRow("line") << "linH" << "QFrame 10,200 100x1";
        QTest::newRow("shape") << "shpRound" << "QFrame; border-radius: 10px";
        QTest::newRow("placeholder") << "lvwOrders" << "QLabel; MSComctlLib.ListView";
        QTest::newRow("menu") << "mnuFile" << "QMenu; title=&File";
        QTest::newRow("menu item with shortcut") << "mnuOpen" << "QAction; shortcut=Ctrl+O";
        QTest::newRow("checked item of an array") << "mnuItem_0" << "checkable=true; checked=true";
        QTest::newRow("disabled item") << "mnuItem_1" << "shortcut=Shift+F2";
    }

    void stockControls()
    {
        QFETCH(QString, object);
        QFETCH(QString, expected);
        ImportedForm form;
        Problem error;
        QVERIFY2(importForm(stockForm(), {}, &form, &error), qPrintable(error.text()));
        const QString lacks = kel::test::lacking(form.window.get(), object, expected);
        QVERIFY2(lacks.isEmpty(), qPrintable(lacks));
        if (object == u"mnuItem_1")
            QVERIFY(!qobject_cast<const QAction *>(kel::test::named(form.window.get(), object))->isEnabled());
        QVERIFY(!form.window->findChild<QObject *>(QStringLiteral("tmrClock")));
    }

    void report()
    {
        ImportedForm form;
        Problem error;
        QVERIFY2(importForm(stockForm(), {}, &form, &error), qPrintable(error.text()));
        const QString text = form.report.text();
        for (const char *fragment : {"line 109: MSComctlLib.ListView lvwOrders", "tmrClock (Interval 1000)", "cmdOK_Click"})
            QVERIFY2(text.contains(QLatin1String(fragment)), qPrintable(text));
        QVERIFY2(!text.contains(QStringLiteral("Appearance")), qPrintable(text)); // no counterpart, nothing to see
        QCOMPARE(form.report.placeholders.size(), 1);
        QCOMPARE(form.report.timers.size(), 1);
        QCOMPARE(form.report.events.size(), 1);
    }

    void uiPath_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("the library's controls") << "ours";
        QTest::newRow("stock controls and a menu") << "stock";
    }

    void uiPath()
    {
        QFETCH(QString, kind);
        const QString frm = kind == u"ours" ? ourForm(QStringLiteral("frmUi"), "windows-1252", true, false) : stockForm();
        ImportedForm direct;
        Problem error;
        QVERIFY2(importForm(frm, {}, &direct, &error), qPrintable(error.text()));
        const QString ui = m_dir.filePath(kind + QStringLiteral(".ui"));
        QString writeError;
        QVERIFY2(writeUi(direct, ui, &writeError), qPrintable(writeError));

        kel::kelform::FormLoader loader;
        QString loadError;
        std::unique_ptr<QWidget> loaded(loader.loadFile(ui, nullptr, &loadError));
        QVERIFY2(loaded, qPrintable(loadError));
        QCOMPARE(kel::kelform::dumpProperties(loaded.get()).split(u'\n'), kel::kelform::dumpProperties(direct.window.get()).split(u'\n'));
        direct.window->show();
        loaded->show();
        QCOMPARE(loaded->size(), direct.window->size());
        for (auto it = direct.carried.cbegin(); it != direct.carried.cend(); ++it) {
            const QObject *mine = it.key();
            const QObject *theirs = kel::test::named(loaded.get(), mine->objectName());
            QVERIFY2(theirs, qPrintable(mine->objectName()));
            QCOMPARE(state(theirs), state(mine));
        }
        // The tab order the form gave, in both focus chains.
        const QStringList chain = focusChain(direct.window.get(), direct.tabOrder);
        QStringList order;
        for (const QWidget *w : direct.tabOrder)
            order << w->objectName();
        QVERIFY2(chain == order, qPrintable(chain.join(u' ') + QStringLiteral(" / ") + order.join(u' ')));
        QCOMPARE(focusChain(loaded.get(), direct.tabOrder), chain);
        QProcess uic;
        uic.start(QStringLiteral(KEL_UIC), {ui});
        QVERIFY(uic.waitForFinished(30000));
        QVERIFY2(uic.exitCode() == 0 && uic.readAllStandardOutput().contains("setupUi"), uic.readAllStandardError().constData());
    }

    void badInput_data()
    {
        QTest::addColumn<QByteArray>("frm");
        QTest::addColumn<QByteArray>("frx");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("message");
        const QByteArray head = "VERSION 5.00\r\nBegin VB.Form frmBad\r\n";
        QTest::newRow("missing .frx") << head + "   Caption = $\"nothere.frx\":0000\r\nEnd\r\n" << QByteArray() << ":3:" << "cannot open \"nothere.frx\"";
        QTest::newRow("offset past the end") << head + "   Caption = $\"frmBad.frx\":0010\r\nEnd\r\n" << QByteArray("\x01\0\0\0x", 5)
                                             << "frmBad.frx: offset 0x10:" << "past the end";
        QTest::newRow("not a form") << QByteArray("VERSION 5.00\r\nBegin VB.UserControl uc\r\nEnd\r\n") << QByteArray() << ":2:" << "not a form";
        QTest::newRow("unknown class of ours") << head + "   Begin KelControls8.KelNothing x\r\n   End\r\nEnd\r\n" << QByteArray() << ":3:" << "not a control";
    }

    void badInput()
    {
        QFETCH(QByteArray, frm);
        QFETCH(QByteArray, frx);
        QFETCH(QString, where);
        QFETCH(QString, message);
        QTemporaryDir dir;
        QFile f(dir.filePath(QStringLiteral("frmBad.frm")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(frm);
        f.close();
        if (!frx.isEmpty()) {
            QFile x(dir.filePath(QStringLiteral("frmBad.frx")));
            QVERIFY(x.open(QIODevice::WriteOnly));
            x.write(frx);
        }
        ImportedForm form;
        Problem error;
        QVERIFY(!importForm(f.fileName(), {}, &form, &error));
        QVERIFY(!form.window);
        QVERIFY2(error.text().contains(where) && error.text().contains(message), qPrintable(error.text()));
    }

    void realForms_data()
    {
        QTest::addColumn<QString>("frm");
        QTest::addColumn<QString>("codePage");
        QTest::addColumn<QString>("object");
        QTest::addColumn<QString>("expected");   // fragments of state(), "; " between
        QTest::addColumn<QString>("damage");     // a damaged record's offset in the report
        const QString root = QStringLiteral(KEL_REAL_FORMS);
        if (!QDir(root).exists())
            QSKIP("the real forms are not beside the repository");
        auto row = [&](const char *tag, const char *frm, const char *cp, const char *object, const QString &expected, const char *damage = "") {
            QTest::newRow(tag) << root + u'/' + QLatin1String(frm) << QString::fromLatin1(cp) << QString::fromLatin1(object) << expected << QString::fromLatin1(damage);
        };
        row("01 lists", "01-wbloggar-Font/Font.frm", "windows-1252", "cboSize", QStringLiteral("QComboBox; item=1 item=2 item=3"));
        row("02 nesting", "02-wbloggar-Find/Find.frm", "windows-1252", "optWholeText", QStringLiteral("QRadioButton"));
        row("03 pictures", "03-wbloggar-About/About.frm", "windows-1252", "imgIcon", QStringLiteral("QLabel; pixmap="));
        row("04 damaged", "04-tannerhelland-frmHMM/frmHMM.frm", "windows-1252", "frmMain", QStringLiteral("windowTitle="), "offset 0x0: record declares 56 bytes, the file holds 55");
        row("05 menus", "05-tannerhelland-MainEditor/Main Editor.frm", "windows-1252", "VSMain", QStringLiteral("QScrollBar; orientation=Vertical"));
        row("06 long caption", "06-olimilo-FMain/FMain.frm", "windows-1252", "FMain", QStringLiteral("QMainWindow"));
        row("07 GBK", "07-learnedcandcpp-v3j02-06/v3j02-06.frm", "GBK", "Command3", QStringLiteral("QPushButton; font=\u5b8b\u4f53/11"));
        row("07 GBK caption", "07-learnedcandcpp-v3j02-06/v3j02-06.frm", "GBK", "Form1", QStringLiteral("windowTitle=\u547d\u4ee4\u6309\u94ae\u4f8b"));
        row("10 UTF-8 text, cp1252 .frx", "10-argentum-frmEligeAlineacion/frmEligeAlineacion.frm", "windows-1252", "lblDescripcion_0", QStringLiteral("QLabel"));
        row("12 truncated", "12-vbeeb-About/About.frm", "windows-1252", "Text1", QStringLiteral("QPlainTextEdit; readOnly=true"), "declares 129 bytes, the file holds 122");
    }

    void realForms()
    {
        QFETCH(QString, frm);
        QFETCH(QString, codePage);
        QFETCH(QString, object);
        QFETCH(QString, expected);
        QFETCH(QString, damage);
        ImportedForm form;
        Problem error;
        QVERIFY2(importForm(frm, {codePage}, &form, &error), qPrintable(error.text()));
        QVERIFY(form.report.converted > 0);
        const QString lacks = kel::test::lacking(form.window.get(), object, expected);
        QVERIFY2(lacks.isEmpty(), qPrintable(lacks + u'\n' + form.report.text()));
        const QString unshown = state(kel::test::named(form.window.get(), object));
        QCOMPARE(form.report.damaged.isEmpty(), damage.isEmpty());
        if (!damage.isEmpty())
            QVERIFY2(form.report.damaged.first().text().contains(damage), qPrintable(form.report.damaged.first().text()));
        form.window->show();
        QVERIFY(!form.window->grab().isNull());
        QTemporaryDir dir;
        QString writeError;
        QVERIFY2(writeUi(form, dir.filePath(QStringLiteral("real.ui")), &writeError), qPrintable(writeError));
        kel::kelform::FormLoader loader;
        std::unique_ptr<QWidget> loaded(loader.loadFile(dir.filePath(QStringLiteral("real.ui")), nullptr, &writeError));
        QVERIFY2(loaded, qPrintable(writeError));
        const QObject *theirs = kel::test::named(loaded.get(), object);
        QVERIFY(theirs);
        QCOMPARE(state(theirs), unshown);
    }
};

QTEST_MAIN(TstClassicForms)
#include "tst_classicforms.moc"
