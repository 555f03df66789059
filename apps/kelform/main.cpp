// kelform: the demo host. Runs a .ui form (the order-entry example by default) against its
// database; --gallery shows every control instead, and with --png FILE renders it to FILE.
#include "demoform.h"
#include "runform.h"

#include <KelControls8/kelcontrols8_version.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPixmap>
#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelform"));
    QApplication::setApplicationVersion(QStringLiteral(KELCONTROLS8_VERSION_STRING));
    QCommandLineParser cli;
    cli.setApplicationDescription(QStringLiteral("Shows a form of KelControls8 controls."));
    cli.addHelpOption();
    cli.addVersionOption();
    const QCommandLineOption png(QStringLiteral("png"), QStringLiteral("Render the form to <file> and exit."), QStringLiteral("file"));
    cli.addOption(png);
    const QCommandLineOption gallery(QStringLiteral("gallery"), QStringLiteral("Show the gallery of every control."));
    cli.addOption(gallery);
    kel::kelform::addFormOptions(cli);
    cli.process(app);
    if (!cli.isSet(gallery) && !cli.isSet(png))
        return kel::kelform::runForm(cli);

    QWidget form;
    form.setWindowTitle(QStringLiteral("KelControls8 demo form"));
    int y = 12;
    auto heading = [&](const QString &text) {
        auto *l = new QLabel(text, &form);
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
        l->move(12, y);
        y += l->sizeHint().height() + 6;
    };
    heading(QStringLiteral("Text fields"));
    kel::demo::addTextFields(&form, y);
    y += 8;
    const int beforeNumbers = y;
    heading(QStringLiteral("Number fields"));
    const int afterHeading = y;
    kel::demo::addNumberFields(&form, y);
    if (y == afterHeading)
        y = beforeNumbers; // no number fields yet: drop the heading's room
    y += 8;
    heading(QStringLiteral("Date and time fields"));
    kel::demo::addDateFields(&form, y);
    y += 8;
    heading(QStringLiteral("Combo fields"));
    kel::demo::addComboFields(&form, y);
    y += 8;
    heading(QStringLiteral("Check fields and progress"));
    kel::demo::addCheckFields(&form, y);
    form.resize(320, y + 12);

    if (cli.isSet(png)) {
        const QString file = cli.value(png);
        form.show();
        QApplication::processEvents();
        QDir().mkpath(QFileInfo(file).absolutePath());
        if (!form.grab().save(file)) {
            std::fprintf(stderr, "kelform: cannot write %s\n", qPrintable(file));
            return 1;
        }
        std::printf("%s\n", qPrintable(QFileInfo(file).absoluteFilePath()));
        return 0;
    }
    form.show();
    return app.exec();
}
