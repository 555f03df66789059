// List strings: reading fields from any text, and joining then reading back any items.
#include "runtime/kelruntime8.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    kel::KelRuntime8 rt;
    qint32 pos = 0;
    int guard = 0;
    for (rt.ReadField(text, pos, 44); pos >= 0; rt.ReadField(text, pos, 44))
        if (++guard > text.size() + 2)
            std::abort(); // the reader must always advance
    // Items split on a private separator, joined, and read back must be the same items.
    const QStringList items = text.split(QChar(0x1F));
    QString list;
    for (const QString &i : items)
        list = rt.ListAppend(std::move(list), i);
    QStringList back;
    pos = 0;
    for (QString f = rt.ReadField(list, pos, 44); pos >= 0; f = rt.ReadField(list, pos, 44))
        back << f;
    if (back != items)
        std::abort();
    return 0;
}
