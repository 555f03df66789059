#include "controls/text/keltext.h"
#include "demoform.h"
#include "platform/propertybag.h"

namespace kel::demo {

// Text fields as a designer would have saved them, loaded through their property bags.
void addTextFields(QWidget *form, int &y)
{
    struct Row { const char16_t *name, *caption, *text; bool multi, locked, mandatory; const char16_t *password; };
    const Row rows[] = {
        {u"txtName", u"Name", u"Ada Lovelace", false, false, false, u""},
        {u"txtNotes", u"Notes", u"First line\r\nSecond line", true, false, false, u""},
        {u"txtPassword", u"Password", u"secret", false, false, false, u"*"},
        {u"txtAccount", u"Account", u"ACC-00042 (locked)", false, true, false, u""},
        {u"txtCity", u"City (required)", u"", false, false, true, u""},
    };
    for (const Row &r : rows) {
        auto *t = place<KelText>(form, y, QString::fromUtf16(r.name));
        MemoryPropertyBag bag;
        bag.set(QStringLiteral("Caption"), QString::fromUtf16(r.caption));
        bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
        bag.set(QStringLiteral("Text"), QString::fromUtf16(r.text));
        bag.set(QStringLiteral("MultiLine"), r.multi);
        bag.set(QStringLiteral("Locked"), r.locked);
        bag.set(QStringLiteral("Mandatory"), r.mandatory);
        bag.set(QStringLiteral("PasswordChar"), QString::fromUtf16(r.password));
        t->ReadProperties(bag);
        if (r.multi) {
            t->setHeight(900);
            y += t->height() - 20;
        }
    }
}

} // namespace kel::demo
