#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "demoform.h"
#include "platform/dayserial.h"
#include "platform/propertybag.h"

namespace kel::demo {

// Date and time fields as a designer would have saved them, loaded through their property bags.
void addDateFields(QWidget *form, int &y)
{
    struct Row {
        bool time;
        const char16_t *name, *caption, *format;
        qint16 daysFlag;
        Variant value, min, max;
    };
    const Row rows[] = {
        {false, u"datToday", u"Today", u"dd/mm/yyyy", Allow, u"Now", {}, {}},
        {false, u"datBirth", u"Birthday", u"dd mmm yyyy", BirthDay, u"14071985", {}, {}},
        {false, u"datPeriod", u"Period from", u"dd/mm/yyyy", FirstDay, u"Now", {}, {}},
        {true, u"timStart", u"Start time", u"hh:mm:ss", 0, u"08:30:15", {}, {}},
        {false, u"datWindow", u"In March 2013", u"dd/mm/yyyy", Allow, u"15032013", Date{*DateSerial(2013, 3, 1)},
         Date{*DateSerial(2013, 3, 31)}},
    };
    for (const Row &r : rows) {
        DateTimeField *field = r.time ? static_cast<DateTimeField *>(place<KelTime>(form, y, QString::fromUtf16(r.name)))
                                      : place<KelDate>(form, y, QString::fromUtf16(r.name));
        MemoryPropertyBag bag;
        bag.set(QStringLiteral("Caption"), QString::fromUtf16(r.caption));
        bag.set(QStringLiteral("CaptionWidth"), qint16(1500));
        bag.set(QStringLiteral("Format"), QString::fromUtf16(r.format));
        if (!r.time)
            bag.set(QStringLiteral("DaysFlag"), r.daysFlag);
        if (!r.min.isEmpty()) {
            bag.set(QStringLiteral("MinValue"), r.min);
            bag.set(QStringLiteral("MaxValue"), r.max);
        }
        bag.set(QStringLiteral("Value"), r.value);
        field->ReadProperties(bag);
    }
}

} // namespace kel::demo
