#include "library/translations.h"

#include <QCoreApplication>
#include <QTranslator>
#include <memory>

// The compiled translations live in this library's resources; naming them here keeps them in
// static builds too.
static void initTranslationResources() { Q_INIT_RESOURCE(kelcontrols8_translations); }

namespace kel {

bool installLibraryTranslations(const QLocale &locale)
{
    static std::unique_ptr<QTranslator> installed;
    initTranslationResources();
    if (installed)
        QCoreApplication::removeTranslator(installed.get());
    installed = std::make_unique<QTranslator>();
    if (!installed->load(locale, QStringLiteral("kelcontrols8"), QStringLiteral("_"), QStringLiteral(":/kelcontrols8/i18n"))) {
        installed.reset();
        return false;
    }
    return QCoreApplication::installTranslator(installed.get());
}

} // namespace kel
