// Writes the sample form for uic at build time: uigen <file.ui>
#include "uisample.h"

#include <QApplication>
#include <QSaveFile>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 2)
        return 2;
    QSaveFile out(QString::fromLocal8Bit(argv[1]));
    if (!out.open(QIODevice::WriteOnly) || out.write(kel::test::sampleUi().toUtf8()) < 0 || !out.commit())
        return 1;
    return 0;
}
