#include "controls/kelcontrols8.h"

#include "controls/check/kelcheck.h"
#include "controls/combo/kelcombo.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "controls/number/kelnumber.h"
#include "controls/progress/kelprogressbar.h"
#include "controls/text/keltext.h"
#include "library/kelcontrolhandler.h"

namespace kel {

void registerKelControls8()
{
    static const bool once = [] {
        ClassFactory::registerClass(QStringLiteral("KelText"), [](QWidget *p) { return new KelText(p); });
        ClassFactory::registerClass(QStringLiteral("KelNumber"), [](QWidget *p) { return new KelNumber(p); });
        ClassFactory::registerClass(QStringLiteral("KelDate"), [](QWidget *p) { return new KelDate(p); });
        ClassFactory::registerClass(QStringLiteral("KelTime"), [](QWidget *p) { return new KelTime(p); });
        ClassFactory::registerClass(QStringLiteral("KelCombo"), [](QWidget *p) { return new KelCombo(p); });
        ClassFactory::registerClass(QStringLiteral("KelCheck"), [](QWidget *p) { return new KelCheck(p); });
        ClassFactory::registerClass(QStringLiteral("KelProgressBar"), [](QWidget *p) { return new KelProgressBar(p); });
        ClassFactory::registerClass(QStringLiteral("KelControlHandler"), [](QWidget *p) { return new KelControlHandler(p); });
        return true;
    }();
    Q_UNUSED(once);
}

QObject *createObject(const QString &className, QWidget *parent, QString *error)
{
    registerKelControls8();
    return ClassFactory::create(className, parent, error);
}

} // namespace kel
