#include "common/baskelcontrols.h"
#include "controls/number/kelnumber.h"
#include "controls/text/keltext.h"
#include "forms/units.h"
#include "kelfixture.h"
#include "library/kelcontrolhandler.h"

#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace kel;

namespace {

// A run-time object whose answers a test sets, counting how often it is asked.
class FakeRuntime : public KelRuntime8
{
public:
    int depth = 24;
    QString separator = u","_qs;
    qint16 digits = 3;
    int sendKeys = 0;
    int ColourDepth() override { return depth; }
    QString DecimalSeparator() override { return separator; }
    qint16 DecimalDigits() override { return digits; }
    void SendKey(int vk) override { ++sendKeys; KelRuntime8::SendKey(vk); }
};

using Form = test::TwoFieldForm<KelText>;

// Sizes in twips; the control itself ends where its field does.
struct LayoutCase { bool multi; int captionWidth, width, height; QRect label, field; bool sizedHidden; };

using SetAndExpected = std::pair<double, double>; // twips

QWidget *field(KelText *t) { return t->findChild<QWidget *>(u"Text1(0)"_qs); }

} // namespace

Q_DECLARE_METATYPE(LayoutCase)

class TestFieldFrame : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetLibrarySettings();
        test::recordServices();
        test::useRuntime();
    }

    void setRuntimeReadsSettingsEachTime_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<QList<quint32>>("backs"); // normal, locked, focus, focus and locked
        QTest::newRow("15 bits") << 15 << QList<quint32>{0x80000005u, 0x80000005u, 0x0080FF80u, 0x80000005u};
        QTest::newRow("16 bits") << 16 << QList<quint32>{0x00FFFFFFu, 0x00F0F0FFu, 0x00C0FFC0u, 0x00C0C0FFu};
    }
    void setRuntimeReadsSettingsEachTime()
    {
        QFETCH(int, depth);
        QFETCH(QList<quint32>, backs);
        KelControlHandler handler;
        auto first = std::make_shared<FakeRuntime>();
        handler.SetRuntime(first);
        auto second = std::make_shared<FakeRuntime>();
        second->depth = depth;
        second->separator = u".;"_qs;
        second->digits = 4;
        handler.SetRuntime(second);
        const LibrarySettings &s = librarySettings();
        QCOMPARE(s.Runtime.get(), second.get());
        QCOMPARE(s.DecimalSeparatorCode, qint16('.'));
        QCOMPARE(s.DefaultDecimals, qint16(4));
        QCOMPARE((QList<quint32>{s.FieldBackNormal, s.FieldBackLocked, s.FieldBackFocus, s.FieldBackFocusLocked}), backs);
    }

    // The first read creates the default run-time object once; one set before that is kept, and
    // the spinner width stays unknown.
    void defaultRuntimeCreatedOnceOnFirstRead()
    {
        resetLibrarySettings();
        QVERIFY(!librarySettings().Runtime);
        KelText t1, t2;
        t1.InitProperties();
        QVERIFY(!librarySettings().Runtime); // a new control reads nothing
        MemoryPropertyBag bag;
        t1.ReadProperties(bag);
        const auto created = librarySettings().Runtime;
        QVERIFY(std::dynamic_pointer_cast<KelRuntime8>(created));
        QCOMPARE(librarySettings().ButtonWidthPixels, qint16(16)); // 240 twips at 15 twips a pixel
        t2.ReadProperties(bag);
        QCOMPARE(librarySettings().Runtime, created);
        KelControlHandler().SetRuntime(std::make_shared<FakeRuntime>());
        QVERIFY(librarySettings().Runtime != created);

        resetLibrarySettings();
        KelControlHandler().SetRuntime(std::make_shared<FakeRuntime>());
        KelText t3;
        t3.ReadProperties(bag);
        QCOMPARE(librarySettings().ButtonWidthPixels, qint16(0));
    }

    void captionAndWidthReports()
    {
        KelText t;
        QSignalSpy changed(&t, &UserControl::PropertyChanged);
        t.setCaption(u"Name"_qs);
        t.setCaption(u"Name"_qs);
        t.setCaption(u"name"_qs);
        t.setCaptionWidth(-1);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(t.Caption(), u"name"_qs);
        t.setMandatory(false);
        QCOMPARE(t.Label1->ForeColor(), 0x80000008u);
        t.setMandatory(true);
        QCOMPARE(t.Label1->ForeColor(), 0x8000000Du);
    }

    void layout_data()
    {
        QTest::addColumn<LayoutCase>("c");
        const auto row = [](const char *name, bool multi, int caption, int w, int h, QRect label, QRect field, bool hidden = false) {
            QTest::newRow(name) << LayoutCase{multi, caption, w, h, label, field, hidden};
        };
        row("plain", false, 1500, 4500, 300, QRect(0, 0, 1500, 195), QRect(1500, 0, 3000, 300));
        row("too low", false, 1500, 4500, 150, QRect(0, 0, 1500, 195), QRect(1500, 0, 3000, 300));
        row("higher stays", false, 1500, 4500, 600, QRect(0, 0, 1500, 195), QRect(1500, 0, 3000, 600));
        row("narrower than caption", false, 1500, 900, 300, QRect(0, 0, 900, 195), QRect(900, 0, 0, 300));
        row("below 100", false, 1500, 45, 300, QRect(0, 0, 100, 195), QRect(100, 0, 0, 300));
        row("multi caption full height", true, 1500, 4500, 900, QRect(0, 0, 1500, 900), QRect(1500, 0, 3000, 900));
        // QWidget::resize before the caption, as a form loads
        row("sized hidden", false, 2349, 4500, 300, QRect(0, 0, 2349, 195), QRect(2349, 0, 2151, 300), true);
    }
    void layout()
    {
        QFETCH(LayoutCase, c);
        KelText t;
        t.setMultiLine(c.multi);
        if (c.sizedHidden)
            t.resize(twipsToPixelsX(c.width), twipsToPixelsY(c.height));
        t.setCaptionWidth(qint16(c.captionWidth));
        if (!c.sizedHidden) {
            t.setWidth(c.width);
            t.setHeight(c.height);
        }
        auto rect = [](const Child *ch) { return QRect(qRound(ch->Left()), qRound(ch->Top()), qRound(ch->Width()), qRound(ch->Height())); };
        QCOMPARE(QRect(0, 0, qRound(t.Width()), qRound(t.Height())), QRect(0, 0, c.field.right() + 1, c.field.height()));
        QCOMPARE(rect(t.Label1), c.label);
        QCOMPARE(rect(t.Text1(c.multi ? 1 : 0)), c.field);
    }

    // A size in twips that rounds to the pixels the control already has still runs the layout.
    void layoutAtSamePixels_data()
    {
        QTest::addColumn<bool>("number");
        QTest::addColumn<bool>("upDown");
        QTest::addColumn<bool>("height");
        QTest::addColumn<SetAndExpected>("setAndExpected");
        QTest::newRow("number height exactly 300") << true << false << true << qMakePair(305.0, 300.0);
        QTest::newRow("text height at least 300") << false << false << true << qMakePair(295.0, 300.0);
        QTest::newRow("number with spinner at least 340 wide") << true << true << false << qMakePair(338.0, 340.0);
    }
    void layoutAtSamePixels()
    {
        QFETCH(bool, number);
        QFETCH(bool, upDown);
        QFETCH(bool, height);
        QFETCH(SetAndExpected, setAndExpected);
        const auto [set, expected] = setAndExpected;
        QWidget window;
        FieldControl *c = number ? static_cast<FieldControl *>(new KelNumber(&window)) : new KelText(&window);
        if (number)
            static_cast<KelNumber *>(c)->setUpDown(upDown);
        c->setCaptionWidth(0);
        c->setWidth(height ? 3000 : expected);
        c->setHeight(300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        (c->*(height ? &UserControl::setHeight : &UserControl::setWidth))(set);
        QCOMPARE(height ? c->Height() : c->Width(), expected);
    }

    // The background colour is the state: focus, lock and enable move it as a table.
    void colourStates()
    {
        const LibrarySettings &s = librarySettings();
        Form f;
        QVERIFY(f.ready());
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackFocus);   // the window gave it the focus
        f.first->setLocked(true);
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackFocusLocked);
        f.first->setLocked(false);
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackFocus);
        f.second->setLocked(true);
        QCOMPARE(f.second->Text1(0)->BackColor(), s.FieldBackLocked);
        QCOMPARE(f.second->Text1(1)->BackColor(), s.FieldBackLocked);
        field(f.second)->setFocus(Qt::TabFocusReason);
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackNormal);
        QCOMPARE(f.second->Text1(0)->BackColor(), s.FieldBackFocusLocked);
        f.first->setEnabled(false);
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackLocked);
        f.first->setEnabled(true);
        QCOMPARE(f.first->Text1(0)->BackColor(), s.FieldBackNormal);
    }

    // What the field and its caption are painted in, also after the host gives its form a palette:
    // a colour of our own stays, a system colour is the form's.
    void paintedColours()
    {
        const LibrarySettings &s = librarySettings();
        Form f;
        QVERIFY(f.ready());
        QWidget *box = field(f.first), *caption = f.first->Label1->widget();
        const auto back = [](QWidget *w) { return w->palette().color(w->backgroundRole()); };
        const auto fore = [](QWidget *w) { return w->palette().color(w->foregroundRole()); };
        const QPalette app = QApplication::palette();
        f.first->setMandatory(true);
        QCOMPARE(back(box), toQColor(s.FieldBackFocus, app));
        QCOMPARE(fore(caption), app.color(QPalette::Highlight));
        field(f.second)->setFocus(Qt::TabFocusReason);
        QCOMPARE(back(box), toQColor(s.FieldBackNormal, app));
        QPalette host = app;
        host.setColor(QPalette::Base, Qt::darkBlue);
        host.setColor(QPalette::Highlight, Qt::red);
        host.setColor(QPalette::Text, Qt::yellow);
        f.window.setPalette(host);
        QCOMPARE(back(box), toQColor(s.FieldBackNormal, app));
        QCOMPARE(fore(box), QColor(Qt::yellow));
        QCOMPARE(fore(caption), QColor(Qt::red));
        f.first->setMandatory(false);
        QCOMPARE(fore(caption), QColor(Qt::yellow));
        f.first->Label1->setForeColor(0x000000FF);
        QCOMPARE(fore(caption), QColor(Qt::red));
        f.first->setEnabled(false);
        QCOMPARE(back(box), toQColor(s.FieldBackLocked, app));
    }

    void lowColourDepthOddity()
    {
        test::useRuntime(8);
        KelText t;
        t.setLocked(true);
        t.setLocked(false); // system colour == FieldBackFocusLocked, so it turns "focused"
        QCOMPARE(t.Text1(0)->BackColor(), 0x0080FF80u);
    }

    // Only a Tab into a field that asks for it selects all; leaving puts the caret home.
    void selectOnFocus()
    {
        for (const auto &[select, byTab, selLength] : {std::tuple{true, true, 5}, {true, false, 0}, {false, true, 0}}) {
            Form f;
            QVERIFY(f.ready());
            f.second->setSelectOnFocus(select);
            f.second->setText(u"hello"_qs);
            if (byTab)
                QTest::keyClick(field(f.first), Qt::Key_Tab);
            else
                QTest::mouseClick(field(f.second), Qt::LeftButton, {}, QPoint(3, 5));
            QCOMPARE(QApplication::focusWidget(), field(f.second));
            QCOMPARE(f.second->Text1(0)->SelLength(), selLength);
            QTest::keyClick(field(f.second), Qt::Key_Tab);
            QCOMPARE(f.second->Text1(0)->SelStart(), 0);
        }
    }

    void changeTracking()
    {
        Form f;
        QVERIFY(f.ready());
        f.second->setText(u"abc"_qs);
        f.second->setTextSaved(u"abc"_qs);
        QTest::keyClick(field(f.first), Qt::Key_Tab);
        QTest::keyClick(field(f.second), Qt::Key_End);
        QTest::keyClicks(field(f.second), u"d"_qs);
        QTest::keyClick(field(f.second), Qt::Key_Tab);
        QVERIFY(f.second->Changed());
        QVERIFY(f.second->ChangedSaved());
        QTest::keyClick(field(f.first), Qt::Key_Tab); // entering again resets the reference
        QVERIFY(!f.second->Changed());
        QVERIFY(f.second->ChangedSaved());
    }

    // While LostFocus runs the control still counts the focus as inside; focus moved by code while
    // the window is inactive still ends the old field's visit.
    void focusEvents()
    {
        Form f;
        QVERIFY(f.ready());
        QStringList log;
        const auto inside = [&] { log << u"inside:%1"_qs.arg(f.second->focusInside()); };
        connect(f.second->Text1(0), &Child::GotFocus, this, [&] { log << u"got"_qs; });
        connect(f.second->Text1(0), &Child::LostFocus, this, [&] { log << u"lost"_qs; inside(); });
        QTest::keyClick(field(f.first), Qt::Key_Tab);
        inside();
        QTest::keyClick(field(f.second), Qt::Key_Tab);
        inside();
        QCOMPARE(log, (QStringList{u"got"_qs, u"inside:1"_qs, u"lost"_qs, u"inside:1"_qs, u"inside:0"_qs}));

        log.clear();
        connect(f.first->Text1(0), &Child::LostFocus, this, [&] { log << u"first lost"_qs; });
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        field(f.second)->setFocus(Qt::OtherFocusReason);
        f.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&f.window));
        QCOMPARE(log, (QStringList{u"first lost"_qs, u"got"_qs}));
        QVERIFY(!f.first->focusInside());
        QCOMPARE(f.first->Text1(0)->BackColor(), librarySettings().FieldBackNormal);
    }

    // TooltipSet reaching every box is the random-use driver's check; showing takes the extender's tip.
    void tooltipOnShow()
    {
        KelText t;
        t.setExtenderToolTipText(u"From the host"_qs);
        t.show();
        QCOMPARE(t.Text1(0)->ToolTipText(), u"From the host"_qs);
    }

    // A host's handler may delete the control at once on a key or a click, and when the focus has
    // left it: nothing of ours may run on afterwards, and the form goes on working. (Change and
    // GotFocus come from inside the widget's own handling: there, as with any Qt widget, only
    // deleteLater is safe.)
    void handlerDeletesControl_data()
    {
        QTest::addColumn<QString>("event");
        QTest::addColumn<bool>("number");
        for (const char *event : {"KeyDown", "KeyPress", "LostFocus", "MouseDown", "Click"})
            for (const bool number : {false, true})
                QTest::addRow("%s %s", event, number ? "number" : "text") << QString::fromLatin1(event) << number;
    }

    void handlerDeletesControl()
    {
        QFETCH(QString, event);
        QFETCH(bool, number);
        QWidget window;
        auto *other = new QLineEdit(&window);
        other->setGeometry(0, 40, 100, 20);
        QPointer<UserControl> control;
        Child *box;
        if (number) {
            auto *n = new KelNumber(&window);
            box = n->Text1;
            control = n;
        } else {
            auto *t = new KelText(&window);
            box = t->Text1(0);
            control = t;
        }
        control->setGeometry(0, 0, 300, 20);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QWidget *w = box->widget();
        if (event == u"LostFocus")
            w->setFocus(Qt::TabFocusReason);
        const auto kill = [&] { delete control.data(); };
        if (event == u"KeyDown")
            connect(box, &Child::KeyDown, box, kill);
        else if (event == u"KeyPress")
            connect(box, &Child::KeyPress, box, kill);
        else if (event == u"LostFocus")
            connect(box, &Child::LostFocus, box, kill);
        else if (event == u"MouseDown")
            connect(box, &Child::MouseDown, box, kill);
        else
            connect(box, &Child::Click, box, kill);
        if (event == u"LostFocus")
            other->setFocus(Qt::TabFocusReason);
        else if (event == u"MouseDown")
            QTest::mousePress(w, Qt::LeftButton, {}, QPoint(5, 5));
        else if (event == u"Click")
            QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(5, 5));
        else
            QTest::keyClick(w, Qt::Key_5);
        QVERIFY(!control);
        other->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(other, u"ok"_qs);
        QCOMPARE(other->text(), u"ok"_qs);
    }
};

QTEST_MAIN(TestFieldFrame)
#include "tst_fieldframe.moc"
