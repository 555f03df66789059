#include "controls/check/kelcheck.h"
#include "controls/progress/kelprogressbar.h"
#include "demoform.h"
#include "platform/propertybag.h"
#include "platform/services.h"

namespace kel::demo {

// Check fields as a designer would have saved them, and a progress bar part way through a job.
void addCheckFields(QWidget *form, int &y)
{
    struct Row { const char16_t *name, *caption; bool value, mandatory, locked, enabled; };
    const Row rows[] = {
        {u"chkNewsletter", u"Send the newsletter", true, false, false, true},
        {u"chkTerms", u"Terms accepted (required)", false, true, false, true},
        {u"chkPaid", u"Paid (locked)", true, false, true, true},
        {u"chkArchived", u"Archived (disabled)", false, false, false, false},
    };
    for (const Row &r : rows) {
        auto *c = place<KelCheck>(form, y, QString::fromUtf16(r.name));
        MemoryPropertyBag bag;
        bag.set(QStringLiteral("Caption"), QString::fromUtf16(r.caption));
        bag.set(QStringLiteral("Enabled"), r.enabled);
        bag.set(QStringLiteral("Locked"), r.locked);
        bag.set(QStringLiteral("Mandatory"), r.mandatory);
        bag.set(QStringLiteral("Value"), r.value);
        c->ReadProperties(bag);
    }

    auto *bar = place<KelProgressBar>(form, y, QStringLiteral("prgImport"));
    MemoryPropertyBag bag;
    bag.set(QStringLiteral("Max"), qint32(12000));
    bar->ReadProperties(bag);
    // A job that started four minutes ago, on a clock of our own.
    auto clock = std::make_unique<RecordingServices>();
    RecordingServices *c = clock.get();
    auto previous = setServices(std::move(clock));
    c->timer = 36000.0f;
    bar->Start();
    c->timer += 240.0f;
    bar->setValue(5100);
    setServices(std::move(previous));
}

} // namespace kel::demo
