#pragma once
// What `kelform --db` names: a SQLite file, or a PostgreSQL server by a URL. Kept apart from the
// database code so that the fuzz target reads addresses exactly as kelform does.
#include <QString>
#include <optional>

namespace kel::kelform {

struct DatabaseAddress {
    enum class Engine { SQLite, PostgreSQL };
    Engine engine = Engine::SQLite;
    QString file;     ///< SQLite: the file as given
    QString host;     ///< PostgreSQL: host name, address or socket folder; empty: libpq's default
    int port = -1;    ///< -1: libpq's default
    QString user;     ///< empty: the login name
    QString database;

    /// Text that reads back as this address: the file, or a postgresql:// URL.
    QString toString() const;
    bool operator==(const DatabaseAddress &) const = default;
};

/// Reads `where`. A URL with a password, a parameter libpq would take but kelform does not pass
/// on, a second host, no database name, or a scheme other than postgresql:// is refused: then the
/// result is empty and *error says why. Anything else without "scheme://" is a SQLite file.
std::optional<DatabaseAddress> parseDatabaseAddress(const QString &where, QString *error);

} // namespace kel::kelform
