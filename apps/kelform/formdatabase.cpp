#include "formdatabase.h"

#include "databaseaddress.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

namespace kel::kelform {

namespace {

// Every database message of kelform shares one context, and lupdate must see them.
struct FormDatabase {
    Q_DECLARE_TR_FUNCTIONS(FormDatabase)
};

} // namespace

QString defaultDatabasePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/orders.sqlite");
}

bool createSchema(QSqlDatabase &db, QString *error)
{
    const bool postgres = db.driverName() == QLatin1String("QPSQL");
    QFile schema(postgres ? QStringLiteral(":/orders/schema-postgresql.sql") : QStringLiteral(":/orders/schema.sql"));
    if (!schema.open(QIODevice::ReadOnly)) {
        *error = FormDatabase::tr("the schema is missing from the program");
        return false;
    }
    db.transaction();
    QSqlQuery q(db);
    // One statement per exec: statements end with ";" at the end of a line.
    const QStringList statements = QString::fromUtf8(schema.readAll()).split(QStringLiteral(";\n"), Qt::SkipEmptyParts);
    for (const QString &s : statements) {
        QString sql;
        for (const QString &line : s.split(u'\n'))
            if (!line.trimmed().startsWith(QLatin1String("--")))
                sql += line + u'\n';
        if (sql.trimmed().isEmpty())
            continue;
        if (!q.exec(sql)) {
            *error = q.lastError().text();
            db.rollback();
            return false;
        }
    }
    return db.commit();
}

QSqlDatabase openDatabase(const QString &where, QString *error, const DatabaseOptions &options)
{
    const auto address = parseDatabaseAddress(where, error);
    if (!address)
        return QSqlDatabase();
    const bool postgres = address->engine == DatabaseAddress::Engine::PostgreSQL;
    const QString driver = postgres ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE");
    if (QSqlDatabase::contains(options.connection)) {
        QSqlDatabase old = QSqlDatabase::database(options.connection, false);
        old.close();
        if (old.driverName() != driver) {
            old = QSqlDatabase();
            QSqlDatabase::removeDatabase(options.connection);
        }
    }
    QSqlDatabase db = QSqlDatabase::contains(options.connection) ? QSqlDatabase::database(options.connection, false)
                                                                 : QSqlDatabase::addDatabase(driver, options.connection);
    if (!db.isValid()) {
        *error = postgres ? FormDatabase::tr("PostgreSQL's Qt driver is not installed (Debian package libqt6sql6-psql)")
                          : FormDatabase::tr("SQLite's Qt driver is not installed (Debian package libqt6sql6-sqlite)");
        return db;
    }
    if (postgres) {
        db.setHostName(address->host);
        if (address->port > 0)
            db.setPort(address->port);
        db.setUserName(address->user);
        db.setDatabaseName(address->database);
        db.setConnectOptions(QStringLiteral("connect_timeout=10;application_name=kelform;options='-c lock_timeout=%1'").arg(options.waitMs));
    } else {
        QDir().mkpath(QFileInfo(where).absolutePath());
        db.setDatabaseName(where);
        QStringList connect{QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(options.waitMs)};
        // A file this user may not write is opened read-only rather than failing at the first save.
        if (options.readOnly || (QFileInfo::exists(where) && !QFileInfo(where).isWritable()))
            connect << QStringLiteral("QSQLITE_OPEN_READONLY");
        db.setConnectOptions(connect.join(u';'));
    }
    if (!db.open()) {
        *error = FormDatabase::tr("%1 could not be opened: %2").arg(where, db.lastError().text());
        return db;
    }
    QSqlQuery q(db);
    if (!postgres) {
        // SQLite opens any file; the first read tells a database from a damaged or foreign file,
        // and nothing is written before it.
        if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) || !q.next()) {
            *error = FormDatabase::tr("%1 is not a database kelform can open: it is damaged or not a SQLite file. It was left as it was.").arg(where)
                     + QStringLiteral("\n\n") + FormDatabase::tr("Details: %1").arg(q.lastError().text());
            q = QSqlQuery();
            db.close();
            return db;
        }
        q.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
    }
    if (db.tables().isEmpty() && !createSchema(db, error)) {
        *error = FormDatabase::tr("%1: the example's tables could not be made: %2").arg(where, *error);
        q = QSqlQuery();
        db.close();
    }
    return db;
}

} // namespace kel::kelform
