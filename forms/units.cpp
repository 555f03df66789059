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

QColor toQColor(quint32 colour, const QPalette &p)
{
    if (colour & 0x80000000u) {
        switch (colour & 0xFF) {
        case 0: return p.color(QPalette::Dark);             // scroll bar
        case 1: case 2: case 3: return p.color(QPalette::Highlight); // desktop, captions
        case 4: return p.color(QPalette::Window);           // menu
        case 5: return p.color(QPalette::Base);             // window background
        case 6: return p.color(QPalette::Shadow);           // window frame
        case 7: case 8: return p.color(QPalette::Text);     // menu text, window text
        case 9: return p.color(QPalette::HighlightedText);  // caption text
        case 13: return p.color(QPalette::Highlight);
        case 14: return p.color(QPalette::HighlightedText);
        case 15: return p.color(QPalette::Button);          // button face
        case 16: return p.color(QPalette::Mid);             // button shadow
        case 17: return p.color(QPalette::Disabled, QPalette::Text);
        case 18: return p.color(QPalette::ButtonText);
        case 20: return p.color(QPalette::Light);           // button highlight
        case 23: return p.color(QPalette::ToolTipText);
        case 24: return p.color(QPalette::ToolTipBase);
        default: return p.color(QPalette::Window);
        }
    }
    return QColor(int(colour & 0xFF), int((colour >> 8) & 0xFF), int((colour >> 16) & 0xFF));
}

} // namespace kel
