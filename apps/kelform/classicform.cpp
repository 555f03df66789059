#include "classicform.h"

#include "formbuilder.h"
#include "runform.h"
#include "uiwriter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>

namespace kel::kelform {

void addClassicOptions(QCommandLineParser &cli)
{
    cli.addOption({QStringLiteral("import"), QCoreApplication::translate("kelform", "Turn the classic form <form.frm> into a Designer form (with --out)."), QStringLiteral("form.frm")});
    cli.addOption({QStringLiteral("out"), QCoreApplication::translate("kelform", "The .ui <file> that --import writes."), QStringLiteral("file")});
    cli.addOption({QStringLiteral("codepage"), QCoreApplication::translate("kelform", "The encoding of a classic form's text (default windows-1252; e.g. GBK, Shift_JIS)."), QStringLiteral("name")});
}

bool runClassic(const QCommandLineParser &cli, int *exitCode)
{
    const bool import = cli.isSet(QStringLiteral("import"));
    const QString file = import ? cli.value(QStringLiteral("import")) : cli.positionalArguments().value(0);
    if (!import && !file.endsWith(QStringLiteral(".frm"), Qt::CaseInsensitive))
        return false;
    classic::ImportOptions options;
    if (cli.isSet(QStringLiteral("codepage")))
        options.codePage = cli.value(QStringLiteral("codepage"));
    if (import && !cli.isSet(QStringLiteral("out"))) {
        std::fprintf(stderr, "kelform: %s\n", qPrintable(QCoreApplication::translate("kelform", "--import needs --out <file.ui>")));
        *exitCode = UsageError;
        return true;
    }
    classic::ImportedForm form;
    classic::Problem problem;
    if (!classic::importForm(file, options, &form, &problem)) {
        std::fprintf(stderr, "kelform: %s\n", qPrintable(problem.text()));
        *exitCode = BadInput;
        return true;
    }
    if (import) {
        QString error;
        if (!classic::writeUi(form, cli.value(QStringLiteral("out")), &error)) {
            std::fprintf(stderr, "kelform: %s\n", qPrintable(error));
            *exitCode = BadInput;
            return true;
        }
        std::fputs(qPrintable(form.report.text()), stdout);
        *exitCode = Done;
        return true;
    }
    std::fputs(qPrintable(form.report.text()), stderr);
    QWidget *window = form.window.get();
    if (const QString png = screenshotFile(cli); !png.isEmpty()) {
        *exitCode = saveScreenshot(window, png);
        return true;
    }
    window->show();
    *exitCode = QApplication::exec();
    return true;
}

} // namespace kel::kelform
