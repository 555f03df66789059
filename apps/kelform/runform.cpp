#include "runform.h"

#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <cstdio>

namespace kel::kelform {

void addFormOptions(QCommandLineParser &cli)
{
    cli.addOption({QStringLiteral("db"), QStringLiteral("Use the database <file> instead of the one in the application data folder."), QStringLiteral("file")});
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
            std::fprintf(stderr, "kelform: %s\n", qPrintable(error));
            delete form;
            return 1;
        }
    }
    RecordForm window(form, db);
    if (!window.tableError().isEmpty())
        std::fprintf(stderr, "kelform: %s\n", qPrintable(window.tableError()));
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
