#include "controls/combo/kelcombo.h"
#include "demoform.h"
#include "platform/propertybag.h"

namespace kel::demo {

// Combo fields as a designer would have saved them, loaded through their property bags.
void addComboFields(QWidget *form, int &y)
{
    QStringList customers;
    for (int i = 1; i <= 32767; ++i)
        customers << QStringLiteral("Customer %1").arg(i, 5, 10, QLatin1Char('0'));
    struct Row {
        const char16_t *name, *caption;
        QString list, tags;
        const char16_t *text;
        bool limit, locked;
    };
    const Row rows[] = {
        {u"cboCountry", u"Country", QStringLiteral("Austria,Belgium,Denmark,\"Korea, Republic of\",Österreich,Sweden"),
         QStringLiteral("AT,BE,DK,KR,AT,SE"), u"Denmark", true, false},
        {u"cboColour", u"Colour (free)", QStringLiteral("Red,Green,Blue"), QString(), u"Teal", false, false},
        {u"cboCustomer", u"Customer (32,767)", customers.join(u','), QString(), u"Customer 01234", true, false},
        {u"cboTerms", u"Terms (locked)", QStringLiteral("Net 30,Net 60"), QString(), u"Net 30", true, true},
    };
    for (const Row &r : rows) {
        auto *c = place<KelCombo>(form, y, QString::fromUtf16(r.name));
        MemoryPropertyBag bag;
        bag.set(QStringLiteral("Caption"), QString::fromUtf16(r.caption));
        bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
        bag.set(QStringLiteral("List"), r.list);
        bag.set(QStringLiteral("ListTag"), r.tags);
        bag.set(QStringLiteral("LimitToList"), r.limit);
        bag.set(QStringLiteral("Locked"), r.locked);
        bag.set(QStringLiteral("Mandatory"), false);
        bag.set(QStringLiteral("Text"), QString::fromUtf16(r.text));
        c->ReadProperties(bag);
    }
}

} // namespace kel::demo
