#include "formdatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

namespace kel::kelform {

QString defaultDatabasePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/orders.sqlite");
}

static bool createSchema(QSqlDatabase &db, QString *error)
{
    QFile schema(QStringLiteral(":/orders/schema.sql"));
    if (!schema.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("the schema is missing from the program");
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

QSqlDatabase openDatabase(const QString &file, QString *error)
{
    QSqlDatabase db = QSqlDatabase::contains() ? QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false)
                                               : QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    db.close();
    if (!db.isValid()) {
        *error = QStringLiteral("the QSQLITE driver is not installed");
        return db;
    }
    QDir().mkpath(QFileInfo(file).absolutePath());
    db.setDatabaseName(file);
    if (!db.open()) {
        *error = QStringLiteral("%1: %2").arg(file, db.lastError().text());
        return db;
    }
    QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys = ON"));
    if (db.tables().isEmpty() && !createSchema(db, error)) {
        *error = QStringLiteral("%1: %2").arg(file, *error);
        db.close();
    }
    return db;
}

} // namespace kel::kelform
