#include "library/librarysettings.h"

namespace kel {

LibrarySettings &librarySettings()
{
    static LibrarySettings s;
    return s;
}

void adoptRuntime(std::shared_ptr<IKelRuntime> runtime)
{
    LibrarySettings &s = librarySettings();
    s.Runtime = std::move(runtime);
    if (!s.Runtime)
        return;
    const QString sep = s.Runtime->DecimalSeparator();
    s.DecimalSeparatorCode = sep.isEmpty() ? 0 : qint16(sep.at(0).unicode());
    s.DefaultDecimals = s.Runtime->DecimalDigits();
    if (s.Runtime->ColourDepth() >= 16) {
        s.FieldBackNormal = 0x00FFFFFF;
        s.FieldBackLocked = 0x00F0F0FF;
        s.FieldBackFocus = 0x00C0FFC0;
        s.FieldBackFocusLocked = 0x00C0C0FF;
    } else {
        s.FieldBackNormal = s.FieldBackLocked = s.FieldBackFocusLocked = 0x80000005;
        s.FieldBackFocus = 0x0080FF80;
    }
}

QLocale regionalLocale()
{
    const auto &rt = librarySettings().Runtime;
    return rt ? rt->Locale() : QLocale();
}

void resetLibrarySettings() { librarySettings() = LibrarySettings{}; }

} // namespace kel
