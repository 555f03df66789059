#include "forms/units.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace kel {

static double logicalDpi(bool x)
{
    const QScreen *s = QGuiApplication::primaryScreen();
    const double dpi = s ? (x ? s->logicalDotsPerInchX() : s->logicalDotsPerInchY()) : 96.0;
    return dpi > 0 ? dpi : 96.0;
}

double twipsPerPixelX() { return 1440.0 / logicalDpi(true); }
double twipsPerPixelY() { return 1440.0 / logicalDpi(false); }
int twipsToPixelsX(double twips) { return int(std::lround(twips / twipsPerPixelX())); }
int twipsToPixelsY(double twips) { return int(std::lround(twips / twipsPerPixelY())); }

QPalette::ColorRole systemColourRole(quint32 colour)
{
    if (!(colour & 0x80000000u))
        return QPalette::NoRole;
    switch (colour & 0xFF) {
    case 0: return QPalette::Dark;             // scroll bar
    case 1: case 2: case 3: return QPalette::Highlight; // desktop, captions
    case 4: return QPalette::Window;           // menu
    case 5: return QPalette::Base;             // window background
    case 6: return QPalette::Shadow;           // window frame
    case 7: case 8: return QPalette::Text;     // menu text, window text
    case 9: return QPalette::HighlightedText;  // caption text
    case 13: return QPalette::Highlight;
    case 14: return QPalette::HighlightedText;
    case 15: return QPalette::Button;          // button face
    case 16: return QPalette::Mid;             // button shadow
    case 17: return QPalette::NoRole;          // grey text
    case 18: return QPalette::ButtonText;
    case 20: return QPalette::Light;           // button highlight
    case 23: return QPalette::ToolTipText;
    case 24: return QPalette::ToolTipBase;
    default: return QPalette::Window;
    }
}

QColor toQColor(quint32 colour, const QPalette &p)
{
    if (!(colour & 0x80000000u))
        return QColor(int(colour & 0xFF), int((colour >> 8) & 0xFF), int((colour >> 16) & 0xFF));
    const QPalette::ColorRole role = systemColourRole(colour);
    return role == QPalette::NoRole ? p.color(QPalette::Disabled, QPalette::Text) : p.color(role);
}

} // namespace kel
