// The example order form imported at build time and compiled by uic: the generated form and the
// form run directly from the .frm are the same.
#include "formbuilder.h"
#include "formloader.h"
#include "formstate.h"
#include "ui_legacyorders.h"

#include "forms/usercontrol.h"

#include <QMainWindow>
#include <QTest>

class TstLegacyOrders : public QObject
{
    Q_OBJECT
private slots:
    void uicFormIsTheDirectForm()
    {
        kel::classic::ImportedForm direct;
        kel::classic::Problem error;
        QVERIFY2(kel::classic::importForm(QStringLiteral(KEL_LEGACY_FRM), {}, &direct, &error), qPrintable(error.text()));
        QDir::setCurrent(QStringLiteral(KEL_LEGACY_UI_DIR)); // uic's code finds the pictures from here
        QMainWindow window;
        Ui::frmOrders ui;
        ui.setupUi(&window);
        // uic writes a text's carriage returns out of its C++ strings (QUiLoader keeps them): a
        // CR LF line break of a multi-line field arrives as LF alone.
        const QString compiled = kel::kelform::dumpProperties(&window), run = kel::kelform::dumpProperties(direct.window.get()).remove(u'\r');
        QStringList onlyCompiled = compiled.split(u'\n'), onlyRun = run.split(u'\n');
        for (const QString &line : compiled.split(u'\n'))
            if (onlyRun.removeOne(line))
                onlyCompiled.removeOne(line);
        QVERIFY2(compiled == run, qPrintable(onlyCompiled.join(u'\n') + QStringLiteral("\n--- run directly:\n") + onlyRun.join(u'\n')));
        QVERIFY(!kel::kelform::dumpProperties(&window).isEmpty());
        window.show();
        direct.window->show();
        int compared = 0;
        for (auto it = direct.carried.cbegin(); it != direct.carried.cend(); ++it) {
            const QObject *mine = it.key();
            const QObject *theirs = kel::test::named(&window, mine->objectName());
            QVERIFY2(theirs, qPrintable(mine->objectName()));
            QCOMPARE(kel::test::state(theirs), kel::test::state(mine));
            ++compared;
        }
        QVERIFY(compared > 20);
    }
};

QTEST_MAIN(TstLegacyOrders)
#include "tst_legacyorders.moc"
