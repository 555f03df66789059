#include "databaseaddress.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace kel::kelform {

namespace {

// Every database message of kelform shares one context, and lupdate must see them.
struct FormDatabase {
    Q_DECLARE_TR_FUNCTIONS(FormDatabase)
};

// libpq would cut a connection parameter at a NUL and read no name with a line break in it; a
// lone surrogate or a noncharacter has no UTF-8 the server would take, nor one QUrl writes back.
bool unfit(const QString &s)
{
    for (qsizetype i = 0; i < s.size(); ++i) {
        const char16_t c = s[i].unicode();
        if (c < 0x20 || c == 0x7f)
            return true;
        char32_t u = c;
        if (QChar::isHighSurrogate(c) && i + 1 < s.size() && QChar::isLowSurrogate(s[i + 1].unicode()))
            u = QChar::surrogateToUcs4(c, s[++i].unicode());
        else if (QChar::isSurrogate(c))
            return true;
        if (QChar::isNonCharacter(u))
            return true;
    }
    return false;
}

} // namespace

QString DatabaseAddress::toString() const
{
    if (engine == Engine::SQLite)
        return file;
    QUrl url;
    url.setScheme(QStringLiteral("postgresql"));
    url.setUserName(user, QUrl::DecodedMode);
    // An empty host, not a missing one: "postgresql:/db" would read back as a file name.
    const QString none = QStringLiteral("");
    url.setHost(none);
    // A socket folder, or a name QUrl would spell differently, goes in the query, as libpq reads it.
    bool hostInQuery = !host.isEmpty();
    if (hostInQuery && !host.startsWith(u'/')) {
        url.setHost(host, QUrl::DecodedMode);
        // QUrl leaves a "?" in an IPv6 zone as it is, which then starts the query when read.
        hostInQuery = !url.isValid() || url.host() != host || QUrl(url.toString(QUrl::FullyEncoded)).host() != host;
        if (hostInQuery)
            url.setHost(none);
    }
    if (port > 0)
        url.setPort(port);
    url.setPath(u'/' + database, QUrl::DecodedMode);
    if (hostInQuery)
        url.setQuery(QStringLiteral("host=") + QString::fromLatin1(QUrl::toPercentEncoding(host)), QUrl::StrictMode);
    return url.toString(QUrl::FullyEncoded);
}

std::optional<DatabaseAddress> parseDatabaseAddress(const QString &where, QString *error)
{
    DatabaseAddress a;
    if (where.isEmpty() || unfit(where)) {
        *error = FormDatabase::tr("\"%1\" names no database: give a SQLite file or a postgresql://user@host:port/dbname address.").arg(where);
        return std::nullopt;
    }
    // "scheme://" is an address, never a file name; a file may still be written "./name".
    static const QRegularExpression scheme(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*)://"));
    const auto m = scheme.match(where);
    if (!m.hasMatch()) {
        a.file = where;
        return a;
    }
    const QString name = m.captured(1).toLower();
    if (name != u"postgresql" && name != u"postgres") {
        *error = FormDatabase::tr("%1: kelform opens SQLite files and postgresql:// addresses, not %2:// ones.").arg(where, m.captured(1));
        return std::nullopt;
    }
    const QString malformed = FormDatabase::tr("%1 is not a database address of the form postgresql://user@host:port/dbname").arg(where);
    const QUrl url(where);
    if (!url.isValid() || url.hasFragment() || url.port() == 0 || url.path().size() < 2) {
        *error = malformed;
        return std::nullopt;
    }
    if (!url.password().isEmpty()) {
        *error = FormDatabase::tr("A password does not belong on the command line: put it in ~/.pgpass or PGPASSWORD.");
        return std::nullopt;
    }
    a.engine = DatabaseAddress::Engine::PostgreSQL;
    a.host = url.host();
    a.port = url.port();
    a.user = url.userName();
    a.database = url.path().mid(1);
    // libpq takes many parameters here; one kelform passed over would be a silent surprise.
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto &[key, value] : items) {
        if (key != u"host") {
            *error = FormDatabase::tr("%1: kelform does not pass the parameter \"%2\" on to the server; leave it out.").arg(where, key);
            return std::nullopt;
        }
        if (!a.host.isEmpty() || value.isEmpty()) {
            *error = malformed;
            return std::nullopt;
        }
        a.host = value; // a socket folder
    }
    if (unfit(a.host) || unfit(a.user) || unfit(a.database)) {
        *error = malformed;
        return std::nullopt;
    }
    return a;
}

} // namespace kel::kelform
