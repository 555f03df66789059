// kelform: the demo host. Runs a .ui form (the order-entry example by default) against its
// database; --gallery shows every control instead. Exit codes: 0 done, 1 bad input (a form,
// database or picture file that cannot be read or written), 2 wrong use of the command line.
#include "classicform.h"
#include "demoform.h"
#include "runform.h"

#include <KelControls8/kelcontrols8_version.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QLabel>
#include <cstdio>
#include <memory>

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("kelform"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELCONTROLS8_VERSION_STRING));
    kel::kelform::installTranslations();
}

std::unique_ptr<QWidget> makeGallery()
{
    auto form = std::make_unique<QWidget>();
    form->setWindowTitle(QCoreApplication::translate("kelform", "KelControls8 demo form"));
    int y = 12;
    auto heading = [&](const QString &text) {
        auto *l = new QLabel(text, form.get());
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
        l->move(12, y);
        y += l->sizeHint().height() + 6;
    };
    heading(QCoreApplication::translate("kelform", "Text fields"));
    kel::demo::addTextFields(form.get(), y);
    y += 8;
    heading(QCoreApplication::translate("kelform", "Number fields"));
    kel::demo::addNumberFields(form.get(), y);
    y += 8;
    heading(QCoreApplication::translate("kelform", "Date and time fields"));
    kel::demo::addDateFields(form.get(), y);
    y += 8;
    heading(QCoreApplication::translate("kelform", "Combo fields"));
    kel::demo::addComboFields(form.get(), y);
    y += 8;
    heading(QCoreApplication::translate("kelform", "Check fields and progress"));
    kel::demo::addCheckFields(form.get(), y);
    form->resize(320, y + 12);
    return form;
}

} // namespace

int main(int argc, char **argv)
{
    using namespace kel::kelform;
    // The command line is read before any window system is touched: help, version and wrong use
    // need none, and a dump or a picture is drawn offscreen.
    QCommandLineParser cli;
    const QString gallery = QStringLiteral("gallery");
    {
        QCoreApplication core(argc, argv);
        nameApplication();
        cli.setApplicationDescription(QCoreApplication::translate("kelform", "Shows a form of KelControls8 controls.") + u'\n'
                                      + QCoreApplication::translate("kelform", "Exit status: 0 done, 1 a form, database or file could not be read or written, "
                                                                               "2 wrong use of the command line."));
        const QCommandLineOption help = cli.addHelpOption();
        const QCommandLineOption version = cli.addVersionOption();
        cli.addOption(QCommandLineOption(gallery, QCoreApplication::translate("kelform", "Show the gallery of every control.")));
        addFormOptions(cli);
        addClassicOptions(cli);
        QString error;
        if (!cli.parse(QCoreApplication::arguments()))
            error = cli.errorText();
        else if (cli.positionalArguments().size() > (cli.isSet(gallery) ? 0 : 1))
            error = QCoreApplication::translate("kelform", "Too many arguments.");
        if (!error.isEmpty()) {
            std::fprintf(stderr, "kelform: %s\n%s\n", qPrintable(error), qPrintable(QCoreApplication::translate("kelform", "Try 'kelform --help'.")));
            return UsageError;
        }
        if (cli.isSet(help))
            cli.showHelp(Done);
        if (cli.isSet(version))
            cli.showVersion();
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            if (cli.isSet(QStringLiteral("dump")) || cli.isSet(QStringLiteral("import")) || !screenshotFile(cli).isEmpty()) {
                qputenv("QT_QPA_PLATFORM", "offscreen");
            } else if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
                std::fprintf(stderr, "kelform: %s\n", qPrintable(QCoreApplication::translate("kelform", "no display to show the form on; --screenshot and --dump need none")));
                return BadInput;
            }
        }
    }

    QApplication app(argc, argv);
    nameApplication();
    if (int rc = Done; runClassic(cli, &rc))
        return rc;
    if (!cli.isSet(gallery))
        return runForm(cli);
    const std::unique_ptr<QWidget> form = makeGallery();
    if (const QString png = screenshotFile(cli); !png.isEmpty())
        return saveScreenshot(form.get(), png);
    form->show();
    return QApplication::exec();
}
