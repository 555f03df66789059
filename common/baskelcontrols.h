#pragma once
// Library-wide set-up shared by every control.
#include "../library/librarysettings.h"
#include "../platform/kelexport.h"

namespace kel {

// Creates the default run-time object when none is held (reading the separator, the digits and
// the colours from it), and in every case computes ButtonWidthPixels.
KEL_EXPORT void InitControls();

} // namespace kel
