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

class TestKelCheck : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::recordServices();
        test::useRuntime();
    }

    void changeTracking()
    {
        Form f;
        QVERIFY(f.ready());
        KelCheck *c = f.fields[0];
        QSignalSpy change(c, &KelCheck::Change);
        c->setValue(true);
        c->setValueSaved(true);
        QVERIFY(c->Value() && !c->Changed() && !c->ChangedSaved());
        QCOMPARE(change.count(), 0);

        click(c);
        QVERIFY(!c->Value() && c->Changed() && c->ChangedSaved());
        QCOMPARE(change.count(), 1);
        QTest::keyClick(box(c), Qt::Key_Space);
        QVERIFY(c->Value() && !c->Changed());
        QCOMPARE(change.count(), 2);

        // Focus entry takes the current state as the original.
        c->setValue(false);
        box(c)->setFocus(Qt::OtherFocusReason);
        box(f.fields[1])->setFocus(Qt::TabFocusReason);
        click(c);
        QVERIFY(c->Changed());
        box(f.fields[1])->setFocus(Qt::TabFocusReason);
        box(c)->setFocus(Qt::TabFocusReason);
        QVERIFY(c->Value() && !c->Changed());

        // Grey is not checked, and the user's click from grey checks.
        c->Check1->setValue(2);
        QVERIFY(!c->Value());
        click(c);
        QVERIFY(c->Value());
        QVERIFY(c->Valid());
    }

    void enterMovesOnWithoutToggling()
    {
        Form f;
        QVERIFY(f.ready());
        QSignalSpy change(f.fields[0], &KelCheck::Change);
        box(f.fields[0])->setFocus(Qt::TabFocusReason);
        QTest::keyClick(box(f.fields[0]), Qt::Key_Return);
        QVERIFY(!f.fields[0]->Value());
        QCOMPARE(change.count(), 0);
        QCOMPARE(QApplication::focusWidget(), box(f.fields[1]));
    }

    void lockedAndDisabled_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("locked");
        QTest::addColumn<bool>("mandatory");
        QTest::addColumn<bool>("takesInput");
        QTest::addColumn<quint32>("colour");
        QTest::newRow("plain") << true << false << false << true << 0x80000008u;
        QTest::newRow("mandatory") << true << false << true << true << 0x8000000Du;
        QTest::newRow("locked") << true << true << false << false << 0x80000008u;
        QTest::newRow("locked mandatory") << true << true << true << false << 0x8000000Du;
        QTest::newRow("disabled") << false << false << true << false << 0x80000011u;
        QTest::newRow("disabled locked") << false << true << true << false << 0x80000011u;
    }
    void lockedAndDisabled()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, locked);
        QFETCH(bool, mandatory);
        QFETCH(bool, takesInput);
        QFETCH(quint32, colour);
        Form f;
        QVERIFY(f.ready());
        KelCheck *c = f.fields[1];
        // Set in both orders on the two outer fields: the result must not depend on it.
        for (KelCheck *k : {f.fields[1], f.fields[2]}) {
            if (k == f.fields[1]) {
                k->setLocked(locked);
                k->setEnabled(enabled);
            } else {
                k->setEnabled(enabled);
                k->setLocked(locked);
            }
            k->setMandatory(mandatory);
        }
        QCOMPARE(c->Enabled(), enabled);
        QCOMPARE(c->Locked(), locked);
        QSignalSpy change(c, &KelCheck::Change);
        click(c);
        QTest::keyClick(box(c), Qt::Key_Space);
        QCOMPARE(change.count(), takesInput ? 2 : 0);
        QCOMPARE(c->Value(), false);

        // Only a disabled box is greyed; the text colour follows the state.
        QCOMPARE(box(c)->isEnabled(), enabled);
        QCOMPARE(c->Check1->ForeColor(), colour);
        QCOMPARE(box(c)->palette().color(QPalette::Active, QPalette::WindowText), toQColor(colour, QApplication::palette()));
        QCOMPARE(f.fields[2]->Check1->ForeColor(), colour);
        QCOMPARE(box(f.fields[2])->isEnabled(), enabled);

        // Tab passes over fields that take no input (both below), back to the first.
        box(f.fields[0])->setFocus(Qt::TabFocusReason);
        QTest::keyClick(box(f.fields[0]), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), box(takesInput ? c : f.fields[0]));
    }

    void lockingTheFocusedFieldMovesOn()
    {
        Form f;
        QVERIFY(f.ready());
        box(f.fields[1])->setFocus(Qt::TabFocusReason);
        f.fields[1]->setLocked(true);
        QCOMPARE(QApplication::focusWidget(), box(f.fields[2]));
        f.fields[1]->setLocked(false);
        QTest::keyClick(box(f.fields[2]), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), box(f.fields[1]));
    }

    void heightAndCentring_data()
    {
        QTest::addColumn<double>("height");
        QTest::newRow("taller") << 500.0;
        QTest::newRow("lower") << 120.0;
    }
    void heightAndCentring()
    {
        QFETCH(double, height);
        KelCheck c;
        c.setWidth(2000);
        c.setHeight(height);
        QCOMPARE(c.Height(), 300.0);
        QCOMPARE(c.height(), twipsToPixelsY(300));
        QVERIFY(c.Check1->Height() > 0 && c.Check1->Height() <= 300);
        QCOMPARE(c.Check1->Top(), (300 - c.Check1->Height()) / 2);
        QCOMPARE(c.Check1->Width(), 2000.0);
    }

    void persistence()
    {
        // A new control starts unchecked, so it saves an explicit False; checked is the default.
        KelCheck fresh;
        fresh.InitProperties();
        QVERIFY(!fresh.Value());
        MemoryPropertyBag saved;
        fresh.WriteProperties(saved);
        QCOMPARE(saved.entries().size(), 1);
        QCOMPARE(saved.value(u"Value"_qs), Variant(false));

        MemoryPropertyBag empty;
        KelCheck loaded;
        loaded.ReadProperties(empty);
        QVERIFY(loaded.Value() && loaded.ValueOriginal() && !loaded.Changed());
        QVERIFY(loaded.Mandatory() && loaded.Enabled() && !loaded.Locked());

        KelCheck a;
        a.setCaption(u"Paid, \"in full\""_qs);
        a.setFontBold(true);
        a.setEnabled(false);
        a.setLocked(true);
        a.setMandatory(false);
        a.setValue(true);
        MemoryPropertyBag bag;
        a.WriteProperties(bag);
        KelCheck b;
        QSignalSpy reported(&b, &UserControl::PropertyChanged);
        b.ReadProperties(bag);
        for (const char *p : {"Caption", "FontBold", "Enabled", "Locked", "Mandatory", "Value"})
            QCOMPARE(b.property(p), a.property(p));
        QStringList names;
        for (const auto &args : reported)
            names << args.at(0).toString();
        // Caption and FontBold go to the check box without a report.
        QCOMPARE(names, (QStringList{u"Enabled"_qs, u"Locked"_qs, u"Mandatory"_qs}));
        MemoryPropertyBag again;
        b.WriteProperties(again);
        QCOMPARE(again.entries(), bag.entries());

        QSignalSpy same(&b, &UserControl::PropertyChanged);
        b.setCaption(b.Caption());
        QCOMPARE(same.count(), 0);
    }
};

QTEST_MAIN(TestKelCheck)
#include "tst_kelcheck.moc"
