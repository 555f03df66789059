// Two clerks on the same orders, and writes the database refuses: nothing stored is overwritten,
// nothing typed is lost. The shared cases run on SQLite and, when the test script started one, on
// a PostgreSQL server (KEL_PG).
#include "databaseaddress.h"
#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"
#include "runform.h"

#include "answering.h"

#include <QAction>
#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QLabel>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTimer>

using namespace kel;
using namespace kel::kelform;

namespace {

constexpr int Yes = 6, No = 7, Cancel = 2;

QVariant cell(const QString &connection, const QString &sql)
{
    QSqlQuery q(QSqlDatabase::database(connection));
    return q.exec(sql) && q.next() ? q.value(0) : QVariant();
}

QByteArray digest(const QString &file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256) : QByteArray();
}

const QString SavedFailed = u"The order could not be saved: %1. Your changes are still on the form."_qs;
const QString Busy = u"someone else is writing to the database right now; please try again in a moment"_qs;

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT
    test::AnsweringServices *m_services = nullptr;
    QTemporaryDir m_dir;
    QString m_where;
    QString m_file; // the SQLite database
    QStringList m_mounts;
    std::unique_ptr<RecordForm> m_a, m_b;

    QString sqliteFile() const { return m_dir.filePath(u"orders.sqlite"_qs); }

    // A fresh example database for the engine of the current row, and clerk A's and B's forms on
    // two connections of their own.
    // A QSKIP or failed QVERIFY here leaves the forms unset; the caller returns on that.
    void openEngine()
    {
        QFETCH(QString, engine);
        if (engine == u"postgresql") {
            m_where = qEnvironmentVariable("KEL_PG");
            if (m_where.isEmpty())
                QSKIP("no PostgreSQL server: KEL_PG is not set (scripts/test starts one)");
            QString error;
            QSqlDatabase setup = openDatabase(m_where, &error, {u"setup"_qs});
            QVERIFY2(setup.isOpen(), qPrintable(error));
            QSqlQuery q(setup);
            QVERIFY(q.exec(u"DROP TABLE IF EXISTS audit, orders, customers CASCADE"_qs));
            QVERIFY(q.exec(u"DROP FUNCTION IF EXISTS audit_order"_qs));
            QVERIFY2(createSchema(setup, &error), qPrintable(error));
        } else {
            m_where = m_file;
            QFile::remove(m_where);
        }
        m_a = openForm(u"a"_qs);
        m_b = openForm(u"b"_qs);
        QVERIFY(m_a && m_b);
    }
    std::unique_ptr<RecordForm> openForm(const QString &connection)
    {
        QString error;
        const QSqlDatabase db = openDatabase(m_where, &error, {connection, 200});
        if (!db.isOpen()) {
            qWarning("%s", qPrintable(error));
            return nullptr;
        }
        FormLoader loader;
        QWidget *form = loader.loadFile(u":/orders/orders.ui"_qs, nullptr, &error);
        auto window = std::make_unique<RecordForm>(form, db);
        window->show();
        return window->hasTable() ? std::move(window) : nullptr;
    }
    static QWidget *control(const std::unique_ptr<RecordForm> &f, const char *name)
    {
        return f->form()->findChild<QWidget *>(QLatin1String(name));
    }
    static void engines()
    {
        QTest::addColumn<QString>("engine");
        QTest::newRow("sqlite") << u"sqlite"_qs;
        QTest::newRow("postgresql") << u"postgresql"_qs;
    }
    // The user's edits survived a refused save: the form still holds them, still says changed,
    // and leaving it still asks.
    void verifyEditsKept(const std::unique_ptr<RecordForm> &f, const char *field, const QVariant &typed)
    {
        if (typed.typeId() == QMetaType::Double)
            QCOMPARE(control(f, field)->property("Value").toDouble(), typed.toDouble());
        else
            QCOMPARE(control(f, field)->property("Text"), typed);
        QVERIFY(f->changedSaved());
        QVERIFY(f->saveAction()->isEnabled());
        m_services->answers = {Cancel};
        QVERIFY(!f->close());
        QCOMPARE(m_services->boxes.back().prompt, u"Save changes to this record?"_qs);
        QVERIFY(f->isVisible());
    }
    QVariant stored(const QString &column, int id = 1) const
    {
        return cell(u"a"_qs, u"SELECT %1 FROM orders WHERE id = %2"_qs.arg(column).arg(id));
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void init()
    {
        m_services = test::answerBoxes();
        m_file = sqliteFile();
    }
    void cleanup()
    {
        m_a.reset();
        m_b.reset();
        for (const QString &c : QSqlDatabase::connectionNames())
            QSqlDatabase::removeDatabase(c);
        for (const QString &m : std::as_const(m_mounts))
            QProcess::execute(u"umount"_qs, {m});
        m_mounts.clear();
    }

    void sameRecordSavedTwice_data() { engines(); }
    void sameRecordSavedTwice()
    {
        openEngine();
        if (!m_a || !m_b)
            return;
        control(m_b, "unit_price")->setProperty("Value", 13.0);
        QVERIFY2(m_b->save(), qPrintable(m_services->boxes.empty() ? QString() : m_services->boxes.back().prompt));
        control(m_a, "notes")->setProperty("Text", u"Ring twice."_qs);
        QVERIFY(!m_a->save());
        QCOMPARE(m_services->boxes.back().prompt.section(u"\n\n"_qs, 0, 0), u"This order was changed by someone else since you opened it."_qs);
        QCOMPARE(stored(u"unit_price"_qs).toDouble(), 13.0);
        QCOMPARE(stored(u"notes"_qs).toString(), u"Deliver to the loading bay."_qs);
        verifyEditsKept(m_a, "notes", u"Ring twice."_qs);

        // Their version, on request, replaces the edits.
        m_services->answers = {Yes};
        QVERIFY(!m_a->save());
        QCOMPARE(control(m_a, "unit_price")->property("Value").toDouble(), 13.0);
        QCOMPARE(control(m_a, "notes")->property("Text").toString(), u"Deliver to the loading bay."_qs);
        QVERIFY(!m_a->changedSaved());
    }

    void deletedWhileEdited_data() { engines(); }
    void deletedWhileEdited()
    {
        openEngine();
        if (!m_a || !m_b)
            return;
        // A stale delete is refused too.
        control(m_a, "quantity")->setProperty("Value", 41.0);
        QVERIFY(m_a->save());
        m_services->answers = {Yes};
        QVERIFY(!m_b->deleteRecord());
        QCOMPARE(m_services->said(), u"This order was changed by someone else since you opened it. It was not deleted; their version is shown now."_qs);
        QCOMPARE(control(m_b, "quantity")->property("Value").toDouble(), 41.0);

        m_services->answers = {Yes};
        QVERIFY(m_b->deleteRecord());
        QCOMPARE(cell(u"a"_qs, u"SELECT count(*) FROM orders"_qs).toInt(), 4);
        control(m_a, "notes")->setProperty("Text", u"Keep this."_qs);
        m_services->answers = {No};
        QVERIFY(!m_a->save());
        QCOMPARE(m_services->said(), u"This order was deleted by someone else since you opened it."_qs);
        QCOMPARE(cell(u"a"_qs, u"SELECT count(*) FROM orders"_qs).toInt(), 4);
        verifyEditsKept(m_a, "notes", u"Keep this."_qs);

        m_services->answers = {Yes};
        QVERIFY(m_a->save());
        QCOMPARE(cell(u"a"_qs, u"SELECT count(*) FROM orders WHERE notes = 'Keep this.' AND quantity = 41"_qs).toInt(), 1);
        QVERIFY(m_a->currentKey().toInt() > 5);
        QVERIFY(!m_a->changedSaved());
    }

    // A write that fails after part of it is done leaves the row, and a batch, as they were.
    void failingHalfWay_data() { engines(); }
    void failingHalfWay()
    {
        openEngine();
        if (!m_a || !m_b)
            return;
        QFETCH(QString, engine);
        QSqlQuery q(QSqlDatabase::database(u"a"_qs));
        QVERIFY(q.exec(u"UPDATE orders SET notes = 'boom' WHERE id = 3"_qs));
        QVERIFY(q.exec(u"CREATE TABLE audit (note TEXT CHECK (note <> 'boom'))"_qs));
        if (engine == u"postgresql") {
            QVERIFY(q.exec(u"CREATE FUNCTION audit_order() RETURNS trigger AS $$ BEGIN INSERT INTO audit VALUES (NEW.notes); "
                           "RETURN NEW; END $$ LANGUAGE plpgsql"_qs));
            QVERIFY(q.exec(u"CREATE TRIGGER audit_orders AFTER UPDATE ON orders FOR EACH ROW EXECUTE FUNCTION audit_order()"_qs));
        } else {
            QVERIFY(q.exec(u"CREATE TRIGGER audit_orders AFTER UPDATE ON orders BEGIN INSERT INTO audit VALUES (NEW.notes); END"_qs));
        }
        control(m_a, "notes")->setProperty("Text", u"boom"_qs);
        control(m_a, "quantity")->setProperty("Value", 7.0);
        QVERIFY(!m_a->save());
        QCOMPARE(m_services->said(), SavedFailed.arg(u"the database refused one of its values"_qs));
        QCOMPARE(stored(u"quantity"_qs).toDouble(), 40.0);
        QCOMPARE(cell(u"a"_qs, u"SELECT count(*) FROM audit"_qs).toInt(), 0);
        verifyEditsKept(m_a, "notes", u"boom"_qs);

        // The batch reaches order 3 after repricing two: it all rolls back.
        const double before = stored(u"unit_price"_qs, 2).toDouble();
        m_services->answers = {Yes}; // run the batch
        QVERIFY(!m_b->runBatch());
        QCOMPARE(m_services->said(), u"The batch was not run: the database refused one of its values. Nothing was changed."_qs);
        QCOMPARE(stored(u"unit_price"_qs, 2).toDouble(), before);
        QCOMPARE(cell(u"a"_qs, u"SELECT count(*) FROM audit"_qs).toInt(), 0);
    }

    void batchRacingSave_data() { engines(); }
    void batchRacingSave()
    {
        openEngine();
        if (!m_a || !m_b)
            return;
        const double before = stored(u"unit_price"_qs).toDouble();
        control(m_b, "unit_price")->setProperty("Value", 20.0);
        // B saves while A's batch is under way and holds the rows it repriced.
        bool savedDuringBatch = true;
        QString saidDuringBatch;
        QTimer::singleShot(0, this, [&] {
            savedDuringBatch = m_b->save();
            saidDuringBatch = m_services->said();
        });
        m_services->answers = {Yes}; // run the batch
        QVERIFY(m_a->runBatch());
        QVERIFY(!savedDuringBatch);
        QCOMPARE(saidDuringBatch, SavedFailed.arg(Busy));
        QVERIFY(m_b->changedSaved());
        const double repriced = stored(u"unit_price"_qs).toDouble();
        QVERIFY2(qAbs(repriced - before * 1.05) < 0.006, qPrintable(QString::number(repriced)));

        // Once it is done, B's price would overwrite the batch's: refused, B's 20 still shown.
        m_services->answers = {No};
        QVERIFY(!m_b->save());
        QCOMPARE(m_services->said(), u"This order was changed by someone else since you opened it."_qs);
        QCOMPARE(stored(u"unit_price"_qs).toDouble(), repriced);
        verifyEditsKept(m_b, "unit_price", 20.0);
    }

    // Real SQLite files made to fail: what the user is told, and that the file keeps the record. A
    // write lock and a refused value are the batch tests' (busy while a batch runs, a trigger refusing).
    void failedSaveKeepsRecord_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QString>("reason");
        QTest::newRow("read-only") << u"sqlite"_qs << u"read-only"_qs << u"the database file is read-only"_qs;
        QTest::newRow("disk full") << u"sqlite"_qs << u"full"_qs << u"the disk is full"_qs;
    }
    void failedSaveKeepsRecord()
    {
        QFETCH(QString, failure);
        QFETCH(QString, reason);
        QString filler;
        if (failure == u"full") {
            // A tiny file system of its own, filled up once the form is open.
            const QString mount = m_dir.filePath(u"tiny"_qs);
            QDir().mkpath(mount);
            QProcess p;
            p.start(u"mount"_qs, {u"-t"_qs, u"tmpfs"_qs, u"-o"_qs, u"size=256k"_qs, u"tmpfs"_qs, mount});
            if (!p.waitForFinished() || p.exitCode() != 0)
                QSKIP(qPrintable(u"a tmpfs cannot be mounted here (mount needs root): "_qs + QString::fromLocal8Bit(p.readAllStandardError())));
            m_mounts << mount;
            m_file = mount + u"/orders.sqlite"_qs;
            filler = mount + u"/filler"_qs;
        }
        openEngine();
        if (!m_a || !m_b)
            return;
        QSqlDatabase a = QSqlDatabase::database(u"a"_qs);
        if (failure == u"read-only") {
            a.close();
            a.setConnectOptions(u"QSQLITE_OPEN_READONLY"_qs);
            QVERIFY(a.open());
        } else if (failure == u"full") {
            QFile f(filler);
            QVERIFY(f.open(QIODevice::WriteOnly));
            const QByteArray block(4096, 'x');
            while (f.write(block) == block.size() && f.flush()) {
            }
        }
        const QByteArray before = digest(m_file);
        const QString typed = u"PO-2304"_qs;
        control(m_a, "customer_ref")->setProperty("Text", typed);
        control(m_a, "notes")->setProperty("Text", QString(6000, u'n'));
        QVERIFY(!m_a->save());
        QCOMPARE(m_services->said(), SavedFailed.arg(reason));
        QVERIFY(m_services->boxes.back().prompt.contains(u"Details: "_qs));
        verifyEditsKept(m_a, "customer_ref", typed);
        // Moving away asks too; Cancel stays on the edits.
        m_services->answers = {Cancel};
        QVERIFY(!m_a->next());
        QCOMPARE(control(m_a, "customer_ref")->property("Text").toString(), typed);

        if (!filler.isEmpty())
            QFile::remove(filler);
        QCOMPARE(digest(m_file), before);
        QCOMPARE(cell(u"b"_qs, u"SELECT customer_ref || '/' || notes FROM orders WHERE id = 1"_qs).toString(),
                 u"PO-2291/Deliver to the loading bay."_qs);
        // With the cause gone the same edits are stored.
        if (failure == u"read-only") {
            a.close();
            a.setConnectOptions(QString());
            QVERIFY(a.open());
        }
        QVERIFY(m_a->save());
        QCOMPARE(stored(u"customer_ref"_qs).toString(), typed);
    }

    // Past the count limit the bar claims no total it did not count.
    void positionOnLargeTable()
    {
        m_where = m_file;
        QFile::remove(m_where);
        QString error;
        QSqlDatabase db = openDatabase(m_where, &error, {u"a"_qs});
        QVERIFY(QSqlQuery(db).exec(u"WITH RECURSIVE n(i) AS (SELECT 6 UNION ALL SELECT i + 1 FROM n WHERE i < 1505) "
                                   "INSERT INTO orders (customer_ref, customer_id, quantity, unit_price) SELECT 'R' || i, 101, 1, 1 FROM n"_qs));
        FormLoader loader;
        RecordForm form(loader.loadFile(u":/orders/orders.ui"_qs, nullptr, &error), db);
        QCOMPARE(form.positionText(), u"Record 1 of more than 1000"_qs);
        QVERIFY(form.last());
        QCOMPARE(form.positionText(), u"Record id 1505"_qs);
        QVERIFY(form.previous());
        QCOMPARE(form.currentKey().toInt(), 1504);
    }

    // What --db names: a server address reads into its parts and writes back as a URL that reads the
    // same; anything kelform would otherwise pass over or guess at is refused with a reason.
    void databaseAddresses_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("parts"); // host|port|user|database, or the file
        QTest::addColumn<QString>("error"); // how the refusal begins
        const QString malformed = u" is not a database address of the form postgresql://user@host:port/dbname"_qs;
        QTest::newRow("server") << u"postgresql://clerk@dbhost:5432/orders"_qs << u"dbhost|5432|clerk|orders"_qs << QString();
        QTest::newRow("socket folder") << u"postgresql://kel@/kel?host=/tmp/pg%20x"_qs << u"/tmp/pg x|-1|kel|kel"_qs << QString();
        QTest::newRow("default host") << u"postgresql:///tmp/pg"_qs << u"|-1||tmp/pg"_qs << QString();
        QTest::newRow("scheme in capitals") << u"POSTGRES://[::1]/d"_qs << u"::1|-1||d"_qs << QString();
        QTest::newRow("IPv6 zone with a question mark") << u"postgresql://[fe80::1%25e%3Fh]/d"_qs << u"fe80::1%e?h|-1||d"_qs << QString();
        QTest::newRow("escaped name") << u"postgresql://h/my%2Fdb%3F"_qs << u"h|-1||my/db?"_qs << QString();
        QTest::newRow("file") << u"orders.sqlite"_qs << u"orders.sqlite"_qs << QString();
        QTest::newRow("file like an address") << u"./mysql://x"_qs << u"./mysql://x"_qs << QString();
        QTest::newRow("password") << u"postgresql://u:pw@h/d"_qs << QString() << u"A password does not belong"_qs;
        QTest::newRow("parameter") << u"postgresql://h/d?sslmode=require"_qs << QString()
                                   << u"postgresql://h/d?sslmode=require: kelform does not pass the parameter \"sslmode\""_qs;
        QTest::newRow("two hosts") << u"postgresql://h/d?host=/x"_qs << QString() << u"postgresql://h/d?host=/x"_qs + malformed;
        QTest::newRow("port 0") << u"postgresql://h:0/d"_qs << QString() << u"postgresql://h:0/d"_qs + malformed;
        QTest::newRow("no database") << u"postgresql://h/"_qs << QString() << u"postgresql://h/"_qs + malformed;
        QTest::newRow("NUL in name") << u"postgresql://h/a%00b"_qs << QString() << u"postgresql://h/a%00b"_qs + malformed;
        // Names QUrl would write back as another name.
        QTest::newRow("noncharacter") << u"postgresql://h/a\uFFFEb"_qs << QString() << u"\"postgresql://h/a\uFFFEb\" names no database"_qs;
        QTest::newRow("noncharacter past the basic plane") << u"postgresql://h/a\U0003FFFFb"_qs << QString()
                                                           << u"\"postgresql://h/a\U0003FFFFb\" names no database"_qs;
        QTest::newRow("other scheme") << u"mysql://h/d"_qs << QString() << u"mysql://h/d: kelform opens SQLite files and postgresql://"_qs;
        QTest::newRow("nothing") << QString() << QString() << u"\"\" names no database"_qs;
    }
    void databaseAddresses()
    {
        QFETCH(QString, where);
        QFETCH(QString, parts);
        QFETCH(QString, error);
        QString why;
        const auto a = parseDatabaseAddress(where, &why);
        QVERIFY2(error.isEmpty() == a.has_value(), qPrintable(why));
        if (!a) {
            QVERIFY2(why.startsWith(error), qPrintable(why));
            QString opened;
            QVERIFY(!openDatabase(where, &opened, {u"refused"_qs}).isOpen());
            QCOMPARE(opened, why);
            return;
        }
        if (a->engine == DatabaseAddress::Engine::SQLite) {
            QCOMPARE(a->file, parts);
            return;
        }
        QCOMPARE(u"%1|%2|%3|%4"_qs.arg(a->host).arg(a->port).arg(a->user, a->database), parts);
        QCOMPARE(parseDatabaseAddress(a->toString(), &why), a);
    }

    // A file the user cannot write is said at open and nothing can be edited; a file that is not a
    // database is refused and left alone.
    void unusableFiles()
    {
        QFile::remove(sqliteFile());
        QString error;
        QVERIFY(openDatabase(sqliteFile(), &error, {u"setup"_qs}).isOpen());
        QSqlDatabase::removeDatabase(u"setup"_qs);
        const QByteArray before = digest(sqliteFile());
        QSqlDatabase db = openDatabase(sqliteFile(), &error, {u"a"_qs, 200, true});
        QVERIFY2(db.isOpen(), qPrintable(error));
        FormLoader loader;
        RecordForm form(loader.loadFile(u":/orders/orders.ui"_qs, nullptr, &error), db);
        form.show();
        QVERIFY(form.isReadOnly());
        QCOMPARE(form.windowTitle(), u"Orders (read-only)"_qs);
        const auto bars = form.findChildren<QLabel *>();
        QVERIFY(std::any_of(bars.begin(), bars.end(), [](QLabel *l) { return l->isVisible() && l->text().contains(u"read-only"_qs); }));
        QVERIFY(form.form()->findChild<QWidget *>(u"unit_price"_qs)->property("Locked").toBool());
        QVERIFY(!form.saveAction()->isVisible());
        QVERIFY(!form.newRecord());
        QVERIFY(form.next());
        QCOMPARE(form.positionText(), u"Record 2 of 5"_qs);
        QCOMPARE(digest(sqliteFile()), before);

        const QString junk = m_dir.filePath(u"junk.sqlite"_qs);
        QFile f(junk);
        QVERIFY(f.open(QIODevice::WriteOnly));
        for (int i = 0; i < 4096; ++i)
            f.putChar(char(QRandomGenerator::global()->bounded(256)));
        f.close();
        const QByteArray junkBefore = digest(junk);
        QVERIFY(!openDatabase(junk, &error, {u"b"_qs}).isOpen());
        QVERIFY2(error.startsWith(junk + u" is not a database kelform can open: it is damaged or not a SQLite file. It was left as it was."_qs),
                 qPrintable(error));
        QCOMPARE(digest(junk), junkBefore);

        // kelform says it in a dialog, not only on standard error.
        QCommandLineParser cli;
        addFormOptions(cli);
        QVERIFY(cli.parse({u"kelform"_qs, u"--db"_qs, junk}));
        m_services->boxes.clear();
        QCOMPARE(runForm(cli), 1);
        QCOMPARE(m_services->boxes.size(), size_t(1));
        QVERIFY(m_services->boxes.front().prompt.startsWith(junk + u" is not a database"_qs));
        QCOMPARE(digest(junk), junkBefore);
    }
};

QTEST_MAIN(TestRecords)
#include "tst_records.moc"
