// Short random-use pass over every control the factory makes; scripts/stress runs the long ones.
#include "kelfixture.h"
#include "randomuse.h"

#include <QTest>

using namespace kel;

class TestRandomUse : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::useRuntime();
        randomuse::installCrashReporter();
        QVERIFY(randomuse::controlClasses().contains(u"KelText"_qs));
        QVERIFY(randomuse::controlClasses().contains(u"KelNumber"_qs));
    }

    void sameSeedSameEvents()
    {
        auto text = [](quint64 seed) {
            QStringList out;
            for (const randomuse::Event &e : randomuse::generate(u"KelNumber"_qs, seed, 300))
                out << e.describe();
            return out;
        };
        QCOMPARE(text(7), text(7));
        QVERIFY(text(7) != text(8));
        QVERIFY(text(7).mid(1) != text(8).first(299)); // not one stream shifted
    }

    // A planted fault: the shrunk list must be short and still fail.
    void shrinkKeepsTheCause()
    {
        randomuse::Options o;
        o.extraCheck = [](QObject *c) { return c->property("TextRaw").toString().contains(u'q') ? u"a q"_qs : QString(); };
        const QString cls = u"KelText"_qs;
        quint64 seed = 1;
        std::vector<randomuse::Event> events;
        randomuse::Failure f;
        for (; seed <= 20 && !f.failed(); ++seed) {
            events = randomuse::generate(cls, seed, 2000);
            f = randomuse::run(cls, events, o);
        }
        QCOMPARE(f.check, u"extra"_qs);
        const auto shrunk = randomuse::shrink(cls, events, f, o, 60);
        QVERIFY2(shrunk.size() <= 3, qPrintable(randomuse::report(cls, seed - 1, f, shrunk)));
        QCOMPARE(randomuse::run(cls, shrunk, o).check, u"extra"_qs);
    }

    void controls_data()
    {
        QTest::addColumn<QString>("className");
        for (const QString &name : randomuse::controlClasses())
            QTest::newRow(name.toUtf8().constData()) << name;
    }
    void controls()
    {
        QFETCH(QString, className);
        const int count = qEnvironmentVariableIsSet("KEL_RANDOMUSE_EVENTS") ? qEnvironmentVariableIntValue("KEL_RANDOMUSE_EVENTS") : 3000;
        const randomuse::Options options;
        for (quint64 seed : {1ull, 2ull}) {
            randomuse::setPosition(seed, className);
            const auto events = randomuse::generate(className, seed, count / 2);
            const randomuse::Failure f = randomuse::run(className, events, options);
            if (f.failed()) {
                const auto shrunk = randomuse::shrink(className, events, f, options, 60);
                QFAIL(qPrintable(randomuse::report(className, seed, f, shrunk)));
            }
        }
    }
};

QTEST_MAIN(TestRandomUse)
#include "tst_randomuse.moc"
