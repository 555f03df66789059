#pragma once
// Twips and classic colours on Qt: lengths in the API are twips, colours 0x00BBGGRR with
// 0x800000nn naming system colour nn.
#include "../platform/kelexport.h"

#include <QColor>
#include <QPalette>

namespace kel {

KEL_EXPORT double twipsPerPixelX();
KEL_EXPORT double twipsPerPixelY();
KEL_EXPORT int twipsToPixelsX(double twips);
KEL_EXPORT int twipsToPixelsY(double twips);

// The palette role that holds system colour nn in the active group; NoRole for a colour given as
// 0x00BBGGRR or held by no role (grey text is the disabled group's).
KEL_EXPORT QPalette::ColorRole systemColourRole(quint32 colour);
// System colour nn through the palette; other values as 0x00BBGGRR.
KEL_EXPORT QColor toQColor(quint32 colour, const QPalette &palette);

} // namespace kel
