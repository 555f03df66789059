#include "kelfixture.h"
#include "runtime/kelruntime8.h"

#include <QLineEdit>
#include <QTest>

using namespace kel;

class TestRuntime : public QObject
{
    Q_OBJECT
private slots:
    // Joining and splitting are inverses for any items, quotes, commas and empties included.
    void listRoundTrip_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("joined");
        QTest::newRow("nothing") << QStringList() << QString();
        QTest::newRow("plain") << QStringList{u"a"_qs, u"b c"_qs} << u"a,b c"_qs;
        QTest::newRow("comma") << QStringList{u"x,y"_qs, u"z"_qs} << u"\"x,y\",z"_qs;
        QTest::newRow("quotes") << QStringList{u"say \"hi\""_qs} << u"\"say \"\"hi\"\"\""_qs;
        QTest::newRow("lone quote") << QStringList{u"\"abc"_qs, u"d\""_qs} << u"\"\"\"abc\",\"d\"\"\""_qs;
        QTest::newRow("one empty") << QStringList{QString()} << u"\"\""_qs;
        QTest::newRow("empties") << QStringList{QString(), QString(), u"a"_qs, QString()} << u"\"\",,a,"_qs;
        QTest::newRow("blanks kept") << QStringList{u" a "_qs, u" "_qs} << u" a , "_qs;
    }
    void listRoundTrip()
    {
        QFETCH(QStringList, items);
        QFETCH(QString, joined);
        KelRuntime8 rt;
        QString list;
        for (const QString &i : items)
            list = rt.ListAppend(list, i);
        QCOMPARE(list, joined);
        QStringList back;
        qint32 pos = 0;
        for (QString field = rt.ReadField(list, pos, 44); pos >= 0; field = rt.ReadField(list, pos, 44))
            back << field;
        QCOMPARE(back, items);
    }

    // Tab is the one key it sends; any other says so.
    void sendKey()
    {
        QVERIFY_THROWS_EXCEPTION(RuntimeError, KelRuntime8().SendKey(13));
        QWidget w;
        auto *a = new QLineEdit(&w), *b = new QLineEdit(&w);
        b->move(0, 30);
        w.show();
        w.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        a->setFocus();
        KelRuntime8().SendKey(9);
        QCOMPARE(QApplication::focusWidget(), b);
    }
};

QTEST_MAIN(TestRuntime)
#include "tst_runtime.moc"
