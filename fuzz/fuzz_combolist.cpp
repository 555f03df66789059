// Combo list strings: any text loads without harm, and every list survives put, get, put; its
// text as a tag string reads back item by item through the field reader.
#include "controls/combo/combolist.h"
#include "controls/combo/kelcombo.h"
#include "reuse.h"

#include <cstdint>
#include <cstdlib>

static kel::fuzz::Reused<kel::KelCombo> reused;

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    kel::fuzz::startApplication(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QStringList parsed = kel::parseComboList(text);
    kel::KelCombo *combo = &reused.fresh();
    if (parsed.size() > kel::ComboMaxItems || (text.isEmpty() != parsed.isEmpty()))
        std::abort();

    combo->setList(text);
    if (combo->Combo1->items() != parsed)
        std::abort();
    const QString saved = combo->List();
    combo->setList(saved);
    if (combo->Combo1->items() != parsed || combo->List() != saved)
        std::abort();

    // Items taken as they are (quotes and commas included) survive the same way.
    QStringList raw = text.split(QChar(0x1F));
    combo->ListFromArray(raw);
    const QStringList loaded = combo->Combo1->items();
    combo->setList(combo->List());
    if (combo->Combo1->items() != loaded)
        std::abort();
    combo->setListTag(combo->List());
    for (int i = 1; i <= loaded.size(); ++i)
        if (combo->ListTagItem(qint16(i)) != loaded.at(i - 1))
            std::abort();

    // Typed text against the loaded list never breaks the field.
    combo->setLimitToList(size & 1);
    combo->setText(text.left(20));
    (void)combo->Text();
    (void)combo->ListIndex();
    (void)combo->ListItem();
    return 0;
}
