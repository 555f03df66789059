#pragma once
/// \file
/// The library's own messages (the Valid message boxes and their titles) in the user's language.
#include "platform/kelexport.h"

#include <QLocale>

namespace kel {

/// Installs the library's translation for `locale` (the user's by default) into the application;
/// English, the messages' own language, needs none. A second call replaces the first. True when
/// a translation was installed.
KEL_EXPORT bool installLibraryTranslations(const QLocale &locale = QLocale());

} // namespace kel
