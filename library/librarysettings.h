#pragma once
/// \file
/// The library-wide settings, held once for all controls.
#include "runtimeinterface.h"
#include "../platform/kelexport.h"

namespace kel {

/// The library-wide settings every control reads, held once per process.
struct LibrarySettings {
    /// The run-time object: the host's (SetRuntime), or the default one InitControls made.
    std::shared_ptr<IKelRuntime> Runtime;
    /// Until a run-time object is read, fields use the set of a full-colour display rather than
    /// all black.
    quint32 FieldBackNormal = 0x00FFFFFF;
    quint32 FieldBackLocked = 0x00F0F0FF;
    quint32 FieldBackFocus = 0x00C0FFC0;
    quint32 FieldBackFocusLocked = 0x00C0C0FF;
    /// The character code of the regional decimal separator (0 until a run-time object is read).
    qint16 DecimalSeparatorCode = 0;
    /// The regional number of decimals.
    qint16 DefaultDecimals = 0;
    /// 240 twips in screen pixels, computed by InitControls only.
    qint16 ButtonWidthPixels = 0;
};

/// The one set of settings of this process.
KEL_EXPORT LibrarySettings &librarySettings();

/// Takes `runtime` as the library's run-time object and reads the regional separator, the
/// regional digits and the field colours from it. Errors of the run-time object propagate.
KEL_EXPORT void adoptRuntime(std::shared_ptr<IKelRuntime> runtime);

// The held run-time object's region, or the process's while none is held.
QLocale regionalLocale();

/// Forgets everything (for tests and for a host that reloads the library).
KEL_EXPORT void resetLibrarySettings();

} // namespace kel
