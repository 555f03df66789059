#include "controls/number/kelnumber.h"
#include "demoform.h"
#include "platform/propertybag.h"

namespace kel::demo {

// Number fields as a designer would have saved them, loaded through their property bags.
void addNumberFields(QWidget *form, int &y)
{
    struct Row {
        const char16_t *name, *caption;
        double value;
        qint16 decimals;
        bool group, upDown, locked;
        double min, max, step;
    };
    const Row rows[] = {
        {u"numQuantity", u"Quantity", 42, 0, false, false, false, -9999999999.0, 9999999999.0, 1},
        {u"numBalance", u"Balance", -1234.5, 2, true, false, false, -9999999999.0, 9999999999.0, 1},
        {u"numCopies", u"Copies (spinner)", 3, 0, true, true, false, 1, 99, 1},
        {u"numRate", u"Rate (locked)", 7.25, 2, true, false, true, 0, 100, 1},
        {u"numPercent", u"Percent 0 to 100", 12.5, 1, true, true, false, 0, 100, 0.5},
    };
    for (const Row &r : rows) {
        auto *n = place<KelNumber>(form, y, QString::fromUtf16(r.name));
        MemoryPropertyBag bag;
        bag.set(QStringLiteral("Caption"), QString::fromUtf16(r.caption));
        bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
        bag.set(QStringLiteral("Decimals"), r.decimals);
        bag.set(QStringLiteral("GroupDigits"), r.group);
        bag.set(QStringLiteral("UpDown"), r.upDown);
        bag.set(QStringLiteral("Locked"), r.locked);
        bag.set(QStringLiteral("Mandatory"), false);
        bag.set(QStringLiteral("MaxValue"), r.max);
        bag.set(QStringLiteral("MinValue"), r.min);
        bag.set(QStringLiteral("UpDownChange"), r.step);
        bag.set(QStringLiteral("Value"), r.value);
        n->ReadProperties(bag);
    }
}

} // namespace kel::demo
