#include "runform.h"

#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"

#include "platform/services.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <cstdio>

namespace kel::kelform {

void addFormOptions(QCommandLineParser &cli)
{
    cli.addOption({QStringLiteral("db"),
                   QStringLiteral("Use the SQLite file <db> instead of the one in the application data folder, or the PostgreSQL "
                                  "server postgresql://user@host:port/dbname (password from PGPASSWORD or ~/.pgpass)."),
                   QStringLiteral("db")});
    cli.addOption({QStringLiteral("screenshot"), QStringLiteral("Render the form to the PNG <file> and exit."), QStringLiteral("file")});
    cli.addOption({QStringLiteral("dump"), QStringLiteral("Print every control's persisted properties and exit.")});
    cli.addPositionalArgument(QStringLiteral("form"), QStringLiteral("The .ui form to run (default: the order-entry example)."), QStringLiteral("[form.ui]"));
}

int runForm(const QCommandLineParser &cli)
{
    const QString file = cli.positionalArguments().value(0, QStringLiteral(":/orders/orders.ui"));
    FormLoader loader;
    QString error;
    QWidget *form = loader.loadFile(file, nullptr, &error);
    if (!form) {
        std::fprintf(stderr, "kelform: %s\n", qPrintable(error));
        return 1;
    }
    if (cli.isSet(QStringLiteral("dump"))) {
        std::fputs(qPrintable(dumpProperties(form)), stdout);
        delete form;
        return 0;
    }
    QSqlDatabase db;
    if (!form->property("table").toString().isEmpty()) {
        const QString dbFile = cli.isSet(QStringLiteral("db")) ? cli.value(QStringLiteral("db")) : defaultDatabasePath();
        db = openDatabase(dbFile, &error);
        if (!db.isOpen()) {
            // Said in a dialog too: started from a desktop, nobody reads standard error.
            std::fprintf(stderr, "kelform: %s\n", qPrintable(error));
            if (!cli.isSet(QStringLiteral("screenshot")))
                services().MsgBox(error, 16, QApplication::applicationName());
            delete form;
            return 1;
        }
    }
    RecordForm window(form, db);
    if (!window.tableError().isEmpty()) {
        std::fprintf(stderr, "kelform: %s\n", qPrintable(window.tableError()));
        if (!cli.isSet(QStringLiteral("screenshot")))
            services().MsgBox(window.tableError(), 16, QApplication::applicationName());
    }
    window.show();
    if (cli.isSet(QStringLiteral("screenshot"))) {
        const QString png = cli.value(QStringLiteral("screenshot"));
        QApplication::processEvents();
        QDir().mkpath(QFileInfo(png).absolutePath());
        if (!window.grab().save(png)) {
            std::fprintf(stderr, "kelform: cannot write %s\n", qPrintable(png));
            return 1;
        }
        std::printf("%s\n", qPrintable(QFileInfo(png).absoluteFilePath()));
        return 0;
    }
    return QApplication::exec();
}

} // namespace kel::kelform
