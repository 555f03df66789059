// kelform's --db text: no crash, a refusal always says why, a file is taken as given, and a
// server address written back reads as the same address.
#include "databaseaddress.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using kel::kelform::DatabaseAddress;

namespace {

[[noreturn]] void fail(const char *what, const QString &where, const QString &detail)
{
    std::fprintf(stderr, "%s\n  given: %s\n  %s\n", what, qPrintable(where), qPrintable(detail));
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString where = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    QString error;
    const auto address = kel::kelform::parseDatabaseAddress(where, &error);
    if (!address) {
        if (error.isEmpty())
            fail("refused without a reason", where, {});
        return 0;
    }
    if (address->engine == DatabaseAddress::Engine::SQLite) {
        if (address->file != where || where.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive)
            || where.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive))
            fail("a file that is an address", where, address->file);
        return 0;
    }
    if (address->database.isEmpty() || address->port == 0)
        fail("a server address without a database or with port 0", where, address->toString());
    const QString written = address->toString();
    QString again;
    const auto reread = kel::kelform::parseDatabaseAddress(written, &again);
    if (!reread)
        fail("written back, refused", where, written + QLatin1String("\n  ") + again);
    if (!(*reread == *address))
        fail("written back, read differently", where,
             QStringLiteral("%1\n  host '%2' -> '%3', user '%4' -> '%5', database '%6' -> '%7', port %8 -> %9")
                     .arg(written, address->host, reread->host, address->user, reread->user, address->database, reread->database)
                     .arg(address->port)
                     .arg(reread->port));
    if (reread->toString() != written)
        fail("written twice, differently", where, written + QLatin1String("\n  ") + reread->toString());
    return 0;
}
