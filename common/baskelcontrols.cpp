#include "common/baskelcontrols.h"

#include "forms/units.h"
#include "runtime/kelruntime8.h"

#include <cmath>

namespace kel {

void InitControls()
{
    LibrarySettings &s = librarySettings();
    if (!s.Runtime)
        adoptRuntime(std::make_shared<KelRuntime8>());
    s.ButtonWidthPixels = qint16(std::lround(240.0 / twipsPerPixelX()));
}

} // namespace kel
