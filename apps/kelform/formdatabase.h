#pragma once
// The database a form works on: an embedded SQLite file, created with the example's schema and
// seed data the first time it is opened, or a PostgreSQL server named by a URL.
#include <QSqlDatabase>

namespace kel::kelform {

/// The default file: orders.sqlite in the user's application data folder.
QString defaultDatabasePath();

struct DatabaseOptions {
    /// The Qt SQL connection to use (made or reopened).
    QString connection = QLatin1String(QSqlDatabase::defaultConnection);
    /// How long a write waits for another user's lock before it gives up.
    int waitMs = 5000;
    /// Open a SQLite file read-only.
    bool readOnly = false;
};

/// Opens `where`, a SQLite file or "postgresql://user@host:port/dbname" (the password comes from
/// PGPASSWORD or ~/.pgpass, never from the URL). A database without tables gets the example's
/// schema and seed data. On failure the result is not open and *error says why in plain words,
/// and a file that is not a database is left as it was.
QSqlDatabase openDatabase(const QString &where, QString *error, const DatabaseOptions &options = {});

/// Creates the example's tables and seed data in `db`, for its engine, in one transaction.
bool createSchema(QSqlDatabase &db, QString *error);

} // namespace kel::kelform
