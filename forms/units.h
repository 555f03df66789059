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

// System colour nn through the palette; other values as 0x00BBGGRR.
KEL_EXPORT QColor toQColor(quint32 colour, const QPalette &palette);

} // namespace kel
