#pragma once
// Twips and classic colours on Qt: lengths in the API are twips, colours 0x00BBGGRR with
// 0x800000nn naming system colour nn.
#include <QColor>
#include <QPalette>

namespace kel {

double twipsPerPixelX();
double twipsPerPixelY();
int twipsToPixelsX(double twips);
int twipsToPixelsY(double twips);

// System colour nn through the palette; other values as 0x00BBGGRR.
QColor toQColor(quint32 colour, const QPalette &palette);

} // namespace kel
