#include "controls/check/kelcheck.h"
#include "forms/units.h"
#include "kelfixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>

using namespace kel;

static QCheckBox *box(KelCheck *c) { return c->findChild<QCheckBox *>(QStringLiteral("Check1")); }
static void click(KelCheck *c) { QTest::mouseClick(box(c), Qt::LeftButton, {}, QPoint(8, box(c)->height() / 2)); }

using Form = test::TwoFieldForm<KelCheck>;

struct StateCase { bool enabled, locked, mandatory, lockFirst; quint32 colour; };
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
        KelCheck *c = f.first;
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
        QCOMPARE(QApplication::focusWidget(), box(f.second));

        // Focus entry takes the current state as the original.
        click(c);
        QVERIFY(c->Changed());
        box(f.second)->setFocus(Qt::TabFocusReason);
        box(c)->setFocus(Qt::TabFocusReason);
        QVERIFY(!c->Changed());

        // Grey is not checked; the user's click from grey checks.
        c->Check1->setValue(2);
        QVERIFY(!c->Value());
        click(c);
        QVERIFY(c->Value() && c->Valid());
        QCOMPARE(change.count(), 5);
    }

    // Locked and Enabled in either order: only a disabled box is greyed, the text colour follows
    // the state, and a field that takes no input is passed over by Tab.
    void lockedAndDisabled_data()
    {
        QTest::addColumn<StateCase>("c");
        QTest::newRow("plain") << StateCase{true, false, false, false, 0x80000008};
        QTest::newRow("mandatory") << StateCase{true, false, true, false, 0x8000000D};
        QTest::newRow("locked, then enabled") << StateCase{true, true, true, true, 0x8000000D};
        QTest::newRow("enabled, then locked") << StateCase{true, true, true, false, 0x8000000D};
        QTest::newRow("disabled, then unlocked") << StateCase{false, false, true, false, 0x80000011};
        QTest::newRow("locked, then disabled") << StateCase{false, true, true, true, 0x80000011};
    }
    void lockedAndDisabled()
    {
        QFETCH(StateCase, c);
        const bool takesInput = c.enabled && !c.locked;
        Form f;
        QVERIFY(f.ready());
        KelCheck *field = f.second;
        const auto lock = [&] { field->setLocked(c.locked); };
        const auto enable = [&] { field->setEnabled(c.enabled); };
        c.lockFirst ? (lock(), enable()) : (enable(), lock());
        field->setMandatory(c.mandatory);
        QSignalSpy change(field, &KelCheck::Change);
        click(field);
        QTest::keyClick(box(field), Qt::Key_Space);
        QCOMPARE(change.count(), takesInput ? 2 : 0);
        QVERIFY(!field->Value());
        // An assistive technology is a user too.
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(box(field));
        QVERIFY(a && a->actionInterface());
        a->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(change.count(), takesInput ? 3 : 0);
        QCOMPARE(field->Value(), takesInput);
        field->setValue(false);
        QCOMPARE(box(field)->isEnabled(), c.enabled);
        QCOMPARE(box(field)->palette().color(QPalette::Active, QPalette::WindowText), toQColor(c.colour, QApplication::palette()));
        box(f.first)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(box(f.first), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), box(takesInput ? f.second : f.first));
        // Locking the field that has the focus sends the focus on.
        if (takesInput) {
            field->setLocked(true);
            QCOMPARE(QApplication::focusWidget(), box(f.first));
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
