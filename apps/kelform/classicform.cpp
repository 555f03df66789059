#include "classicform.h"

#include "formbuilder.h"
#include "uiwriter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <cstdio>

namespace kel::kelform {

void addClassicOptions(QCommandLineParser &cli)
{
    cli.addOption({QStringLiteral("import"), QStringLiteral("Turn the classic form <form.frm> into a Designer form (with --out)."), QStringLiteral("form.frm")});
    cli.addOption({QStringLiteral("out"), QStringLiteral("The .ui <file> that --import writes."), QStringLiteral("file")});
    cli.addOption({QStringLiteral("codepage"), QStringLiteral("The encoding of a classic form's text (default windows-1252; e.g. GBK, Shift_JIS)."), QStringLiteral("name")});
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
        std::fprintf(stderr, "kelform: --import needs --out <file.ui>\n");
        *exitCode = 2;
        return true;
    }
    classic::ImportedForm form;
    classic::Problem problem;
    if (!classic::importForm(file, options, &form, &problem)) {
        std::fprintf(stderr, "kelform: %s\n", qPrintable(problem.text()));
        *exitCode = 1;
        return true;
    }
    if (import) {
        QString error;
        if (!classic::writeUi(form, cli.value(QStringLiteral("out")), &error)) {
            std::fprintf(stderr, "kelform: %s\n", qPrintable(error));
            *exitCode = 1;
            return true;
        }
        std::fputs(qPrintable(form.report.text()), stdout);
        *exitCode = 0;
        return true;
    }
    std::fputs(qPrintable(form.report.text()), stderr);
    QWidget *window = form.window.get();
    window->show();
    if (cli.isSet(QStringLiteral("screenshot"))) {
        const QString png = cli.value(QStringLiteral("screenshot"));
        QApplication::processEvents();
        QDir().mkpath(QFileInfo(png).absolutePath());
        if (!window->grab().save(png)) {
            std::fprintf(stderr, "kelform: cannot write %s\n", qPrintable(png));
            *exitCode = 1;
            return true;
        }
        std::printf("%s\n", qPrintable(QFileInfo(png).absoluteFilePath()));
        *exitCode = 0;
        return true;
    }
    *exitCode = QApplication::exec();
    return true;
}

} // namespace kel::kelform
