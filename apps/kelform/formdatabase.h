#pragma once
// The embedded database a form works on: a SQLite file, created with the example's schema and
// seed data the first time it is opened.
#include <QSqlDatabase>

namespace kel::kelform {

/// The default file: orders.sqlite in the user's application data folder.
QString defaultDatabasePath();

/// Opens `file` (created with the schema when it holds no tables) as the default connection.
/// On failure the result is not open and *error says why.
QSqlDatabase openDatabase(const QString &file, QString *error);

} // namespace kel::kelform
