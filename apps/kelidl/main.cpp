// Prints the control library's type information as IDL, to stdout or to the given file.
#include "library/typemodel.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSaveFile>
#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"kelidl"_s);
    QCoreApplication::setApplicationVersion(kel::typemodel::library().fileVersion);

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Writes the KelControls8 type library as IDL."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(u"file"_s, u"Output file; standard output when omitted."_s, u"[file]"_s);
    parser.process(app);

    const QStringList args = parser.positionalArguments();
    if (args.size() > 1) {
        std::fputs("kelidl: too many arguments; give at most one output file\n", stderr);
        return 2;
    }

    const QByteArray idl = kel::typemodel::dumpIdl().toUtf8();
    if (args.isEmpty()) {
        const bool ok = std::fwrite(idl.constData(), 1, size_t(idl.size()), stdout) == size_t(idl.size())
                        && std::fflush(stdout) == 0;
        if (!ok)
            std::fputs("kelidl: cannot write to standard output\n", stderr);
        return ok ? 0 : 1;
    }

    // QSaveFile: a failed run never leaves a truncated IDL file behind.
    const QString path = args.first();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(idl) != idl.size() || !file.commit()) {
        std::fprintf(stderr, "kelidl: cannot write %s: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
