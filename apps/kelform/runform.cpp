#include "runform.h"

#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"
#include "library/translations.h"

#include "platform/services.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QPixmap>
#include <QTranslator>
#include <cstdio>
#include <memory>
#include <vector>

namespace kel::kelform {

namespace {

void complain(const QString &what) { std::fprintf(stderr, "kelform: %s\n", qPrintable(what)); }

} // namespace

void installTranslations()
{
    installLibraryTranslations();
    static std::vector<std::unique_ptr<QTranslator>> installed;
    installed.clear(); // a translator removes itself when destroyed
    for (const auto &[name, dir] : {std::pair{QStringLiteral("kelform"), QStringLiteral(":/kelform/i18n")},
                                    {QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)}}) {
        auto t = std::make_unique<QTranslator>();
        if (t->load(QLocale(), name, QStringLiteral("_"), dir) && QCoreApplication::installTranslator(t.get()))
            installed.push_back(std::move(t));
    }
}

void addFormOptions(QCommandLineParser &cli)
{
    cli.addOption({QStringLiteral("db"),
                   QCoreApplication::translate("kelform", "Use the SQLite file <db> instead of the one in the application data folder, or the PostgreSQL "
                                                          "server postgresql://user@host:port/dbname (password from PGPASSWORD or ~/.pgpass)."),
                   QStringLiteral("db")});
    cli.addOption({{QStringLiteral("screenshot"), QStringLiteral("png")}, QCoreApplication::translate("kelform", "Render the form (or the gallery) to the PNG <file> and exit; no window opens."), QStringLiteral("file")});
    cli.addOption({QStringLiteral("dump"), QCoreApplication::translate("kelform", "Print every control's persisted properties and exit.")});
    cli.addPositionalArgument(QStringLiteral("form"), QCoreApplication::translate("kelform", "The .ui form to run (default: the order-entry example)."), QStringLiteral("[form.ui]"));
}

QString screenshotFile(const QCommandLineParser &cli)
{
    return cli.isSet(QStringLiteral("screenshot")) ? cli.value(QStringLiteral("screenshot")) : QString();
}

int saveScreenshot(QWidget *window, const QString &file)
{
    window->setAttribute(Qt::WA_DontShowOnScreen);
    // A laid-out window whole, at its natural size, even where that exceeds a small virtual screen.
    if (window->layout())
        window->resize(window->sizeHint().expandedTo(window->minimumSizeHint()));
    window->show();
    QApplication::processEvents();
    QDir().mkpath(QFileInfo(file).absolutePath());
    if (!window->grab().save(file, "PNG")) {
        complain(QCoreApplication::translate("kelform", "cannot write %1").arg(file));
        return BadInput;
    }
    std::printf("%s\n", qPrintable(QFileInfo(file).absoluteFilePath()));
    return Done;
}

int runForm(const QCommandLineParser &cli)
{
    const QString file = cli.positionalArguments().value(0, QStringLiteral(":/orders/orders.ui"));
    FormLoader loader;
    QString error;
    QWidget *form = loader.loadFile(file, nullptr, &error);
    if (!form) {
        complain(error);
        return BadInput;
    }
    if (cli.isSet(QStringLiteral("dump"))) {
        std::fputs(qPrintable(dumpProperties(form)), stdout);
        delete form;
        return Done;
    }
    QSqlDatabase db;
    if (!form->property("table").toString().isEmpty()) {
        const QString dbFile = cli.isSet(QStringLiteral("db")) ? cli.value(QStringLiteral("db")) : defaultDatabasePath();
        db = openDatabase(dbFile, &error);
        if (!db.isOpen()) {
            complain(error);
            // Said in a dialog too: started from a desktop, nobody reads standard error.
            if (screenshotFile(cli).isEmpty())
                services().MsgBox(error, 16, QApplication::applicationName());
            delete form;
            return BadInput;
        }
    }
    RecordForm window(form, db);
    if (!window.tableError().isEmpty()) {
        complain(window.tableError());
        if (screenshotFile(cli).isEmpty())
            services().MsgBox(window.tableError(), 16, QApplication::applicationName());
    }
    if (const QString png = screenshotFile(cli); !png.isEmpty())
        return saveScreenshot(&window, png);
    window.show();
    return QApplication::exec();
}

} // namespace kel::kelform
