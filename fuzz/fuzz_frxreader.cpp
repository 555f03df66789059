// Any bytes as a .frx, every kind of record read at offsets taken from the input: a record
// is read, reported as cut short, or refused with its offset.
#include "frxreader.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QGuiApplication(*argc, *argv); // fonts need one
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const kel::classic::FrxFile frx(QStringLiteral("fuzz.frx"), QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)),
                                    data[0] & 1 ? QStringLiteral("GBK") : QStringLiteral("windows-1252"));
    for (size_t i = 1; i < size && i < 9; ++i) {
        const quint32 offset = data[i] % (size + 4);
        kel::classic::Problem error, damage;
        QString text;
        QStringList list;
        QByteArray picture;
        QFont font;
        bool ok = false;
        switch (data[i] % 5) {
        case 0: ok = frx.readLongString(offset, &text, &error, &damage); break;
        case 1: ok = frx.readShortString(offset, &text, &error, &damage); break;
        case 2: ok = frx.readList(offset, &list, &error, &damage); break;
        case 3: ok = frx.readPicture(offset, &picture, &error, &damage); break;
        default: ok = frx.readFont(offset, &font, &error, &damage); break;
        }
        if (!ok && error.offset != offset)
            std::abort();
    }
    return 0;
}
