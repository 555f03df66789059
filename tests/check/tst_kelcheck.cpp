#include "controls/check/kelcheck.h"
#include "forms/units.h"
#include "kelfixture.h"

#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>

using namespace kel;

static QCheckBox *box(KelCheck *c) { return c->findChild<QCheckBox *>(QStringLiteral("Check1")); }
static void click(KelCheck *c) { QTest::mouseClick(box(c), Qt::LeftButton, {}, QPoint(8, box(c)->height() / 2)); }

// Three check fields one under the other, so that Tab has somewhere to go past the middle one.
struct Form {
    QWidget window;
    KelCheck *fields[3];
    Form()
    {
        for (int i = 0; i < 3; ++i) {
            fields[i] = new KelCheck(&window);
            fields[i]->setGeometry(0, i * 30, 200, 20);
            fields[i]->setCaption(QStringLiteral("Field %1").arg(i));
        }
        window.resize(220, 100);
        window.show();
        window.activateWindow();
    }
    bool ready() { return QTest::qWaitForWindowActive(&window); }
};

struct StateCase { bool enabled, locked, mandatory; quint32 colour; };
Q_DECLARE_METATYPE(StateCase)

class TestKelCheck : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::recordServices();
        test::useRuntime();
    }

    void changeTrackingAndKeys()
    {
        Form f;
        QVERIFY(f.ready());
        KelCheck *c = f.fields[0];
        QSignalSpy change(c, &KelCheck::Change);
        c->setValue(true);
        c->setValueSaved(true);
        QVERIFY(c->Value() && !c->Changed() && !c->ChangedSaved());
        click(c);
        QVERIFY(!c->Value() && c->Changed() && c->ChangedSaved());
        QTest::keyClick(box(c), Qt::Key_Space);
        QVERIFY(c->Value() && !c->Changed());
        QCOMPARE(change.count(), 2);

        // Enter moves on like Tab and never toggles.
        QTest::keyClick(box(c), Qt::Key_Return);
        QVERIFY(c->Value());
        QCOMPARE(QApplication::focusWidget(), box(f.fields[1]));

        // Focus entry takes the current state as the original.
        click(c);
        QVERIFY(c->Changed());
        box(f.fields[1])->setFocus(Qt::TabFocusReason);
        box(c)->setFocus(Qt::TabFocusReason);
        QVERIFY(!c->Changed());

        // Grey is not checked; the user's click from grey checks.
        c->Check1->setValue(2);
        QVERIFY(!c->Value());
        click(c);
        QVERIFY(c->Value() && c->Valid());
        QCOMPARE(change.count(), 5);
    }

    void lockedAndDisabled_data()
    {
        QTest::addColumn<StateCase>("c");
        QTest::newRow("plain") << StateCase{true, false, false, 0x80000008};
        QTest::newRow("mandatory") << StateCase{true, false, true, 0x8000000D};
        QTest::newRow("locked keeps its colour") << StateCase{true, true, true, 0x8000000D};
        QTest::newRow("disabled greys") << StateCase{false, true, true, 0x80000011};
    }
    void lockedAndDisabled()
    {
        QFETCH(StateCase, c);
        const auto [enabled, locked, mandatory, colour] = c;
        const bool takesInput = enabled && !locked;
        Form f;
        QVERIFY(f.ready());
        // The two lower fields get the same settings in opposite orders.
        f.fields[1]->setLocked(locked);
        f.fields[1]->setEnabled(enabled);
        f.fields[2]->setEnabled(enabled);
        f.fields[2]->setLocked(locked);
        for (KelCheck *field : {f.fields[1], f.fields[2]}) {
            field->setMandatory(mandatory);
            QSignalSpy change(field, &KelCheck::Change);
            click(field);
            QTest::keyClick(box(field), Qt::Key_Space);
            QCOMPARE(change.count(), takesInput ? 2 : 0);
            QVERIFY(!field->Value());
            // Only a disabled box is greyed; the text colour follows the state.
            QCOMPARE(box(field)->isEnabled(), enabled);
            QCOMPARE(box(field)->palette().color(QPalette::Active, QPalette::WindowText), toQColor(colour, QApplication::palette()));
        }
        // Tab passes over fields that take no input.
        box(f.fields[0])->setFocus(Qt::TabFocusReason);
        QTest::keyClick(box(f.fields[0]), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), box(f.fields[takesInput ? 1 : 0]));
        // Locking the field that has the focus sends the focus on.
        if (takesInput) {
            f.fields[1]->setLocked(true);
            QCOMPARE(QApplication::focusWidget(), box(f.fields[2]));
        }
    }

    void heightAndCentring()
    {
        KelCheck c;
        c.setWidth(2000);
        for (double height : {500.0, 120.0}) {
            c.setHeight(height);
            QCOMPARE(c.Height(), 300.0);
            QCOMPARE(c.height(), twipsToPixelsY(300));
            QVERIFY(c.Check1->Height() > 0 && c.Check1->Height() <= 300);
            QCOMPARE(c.Check1->Top(), (300 - c.Check1->Height()) / 2);
        }
    }

    void persistence()
    {
        // A new control starts unchecked and saves an explicit False; an empty bag loads checked.
        KelCheck fresh, loaded;
        fresh.InitProperties();
        MemoryPropertyBag saved, empty;
        fresh.WriteProperties(saved);
        QCOMPARE(saved.entries(), (QList<QPair<QString, Variant>>{{u"Value"_qs, false}}));
        loaded.ReadProperties(empty);
        QVERIFY(loaded.Value() && !loaded.Changed() && loaded.Mandatory() && loaded.Enabled() && !loaded.Locked());

        // Caption and FontBold go to the check box without a report.
        KelCheck a, b;
        a.setCaption(u"Paid, \"in full\""_qs);
        a.setFontBold(true);
        a.setEnabled(false);
        a.setLocked(true);
        a.setMandatory(false);
        MemoryPropertyBag bag;
        a.WriteProperties(bag);
        QCOMPARE(bag.entries().size(), 6);
        QSignalSpy reported(&b, &UserControl::PropertyChanged);
        b.ReadProperties(bag);
        b.setCaption(b.Caption());
        QStringList names;
        for (const auto &args : reported)
            names << args.at(0).toString();
        QCOMPARE(names, (QStringList{u"Enabled"_qs, u"Locked"_qs, u"Mandatory"_qs}));
    }
};

QTEST_MAIN(TestKelCheck)
#include "tst_kelcheck.moc"
