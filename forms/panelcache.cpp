#include "forms/panelcache.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>


namespace kel {

namespace {

// Everything goes to whatever style the application has now; only the line edit's panel is
// drawn once per look and size and then copied.
class CachingStyle : public QStyle
{
public:
    static QStyle *base() { return QApplication::style(); }

    void polish(QWidget *w) override { base()->polish(w); }
    void unpolish(QWidget *w) override { base()->unpolish(w); }
    void polish(QApplication *a) override { base()->polish(a); }
    void unpolish(QApplication *a) override { base()->unpolish(a); }
    void polish(QPalette &p) override { base()->polish(p); }
    QRect itemTextRect(const QFontMetrics &fm, const QRect &r, int flags, bool enabled, const QString &text) const override
    {
        return base()->itemTextRect(fm, r, flags, enabled, text);
    }
    QRect itemPixmapRect(const QRect &r, int flags, const QPixmap &pixmap) const override
    {
        return base()->itemPixmapRect(r, flags, pixmap);
    }
    void drawItemText(QPainter *p, const QRect &r, int flags, const QPalette &pal, bool enabled, const QString &text,
                      QPalette::ColorRole role) const override
    {
        base()->drawItemText(p, r, flags, pal, enabled, text, role);
    }
    void drawItemPixmap(QPainter *p, const QRect &r, int alignment, const QPixmap &pixmap) const override
    {
        base()->drawItemPixmap(p, r, alignment, pixmap);
    }
    QPalette standardPalette() const override { return base()->standardPalette(); }
    void drawPrimitive(PrimitiveElement pe, const QStyleOption *opt, QPainter *p, const QWidget *w) const override
    {
        if (pe != PE_PanelLineEdit || !drawCached(opt, p, w, [pe](const QStyleOption *o, QPainter *pp, const QWidget *ww) {
                base()->drawPrimitive(pe, o, pp, ww);
            }))
            base()->drawPrimitive(pe, opt, p, w);
    }
    void drawControl(ControlElement ce, const QStyleOption *opt, QPainter *p, const QWidget *w) const override
    {
        base()->drawControl(ce, opt, p, w);
    }
    QRect subElementRect(SubElement se, const QStyleOption *opt, const QWidget *w) const override
    {
        return base()->subElementRect(se, opt, w);
    }
    void drawComplexControl(ComplexControl cc, const QStyleOptionComplex *opt, QPainter *p, const QWidget *w) const override
    {
        // An editable combo's frame and button hold no text: the line edit draws that.
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(opt);
        if (cc != CC_ComboBox || !combo || !combo->editable
            || !drawCached(opt, p, w, [cc](const QStyleOption *o, QPainter *pp, const QWidget *ww) {
                   base()->drawComplexControl(cc, static_cast<const QStyleOptionComplex *>(o), pp, ww);
               }))
            base()->drawComplexControl(cc, opt, p, w);
    }
    SubControl hitTestComplexControl(ComplexControl cc, const QStyleOptionComplex *opt, const QPoint &pt,
                                     const QWidget *w) const override
    {
        return base()->hitTestComplexControl(cc, opt, pt, w);
    }
    QRect subControlRect(ComplexControl cc, const QStyleOptionComplex *opt, SubControl sc, const QWidget *w) const override
    {
        return base()->subControlRect(cc, opt, sc, w);
    }
    int pixelMetric(PixelMetric m, const QStyleOption *opt, const QWidget *w) const override
    {
        return base()->pixelMetric(m, opt, w);
    }
    QSize sizeFromContents(ContentsType ct, const QStyleOption *opt, const QSize &size, const QWidget *w) const override
    {
        return base()->sizeFromContents(ct, opt, size, w);
    }
    int styleHint(StyleHint sh, const QStyleOption *opt, const QWidget *w, QStyleHintReturn *r) const override
    {
        return base()->styleHint(sh, opt, w, r);
    }
    QPixmap standardPixmap(StandardPixmap sp, const QStyleOption *opt, const QWidget *w) const override
    {
        return base()->standardPixmap(sp, opt, w);
    }
    QIcon standardIcon(StandardPixmap sp, const QStyleOption *opt, const QWidget *w) const override
    {
        return base()->standardIcon(sp, opt, w);
    }
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap, const QStyleOption *opt) const override
    {
        return base()->generatedIconPixmap(mode, pixmap, opt);
    }
    int layoutSpacing(QSizePolicy::ControlType c1, QSizePolicy::ControlType c2, Qt::Orientation o,
                      const QStyleOption *opt, const QWidget *w) const override
    {
        return base()->layoutSpacing(c1, c2, o, opt, w);
    }

private:
    // False when the panel is not plain enough to be copied (a textured brush, a transformed painter).
    template<class Draw>
    bool drawCached(const QStyleOption *opt, QPainter *p, const QWidget *w, Draw draw) const
    {
        const QPalette &pal = opt->palette;
        const QPalette::ColorGroup g = pal.currentColorGroup();
        static constexpr QPalette::ColorRole roles[] = {QPalette::Base, QPalette::Window, QPalette::Highlight,
                                                         QPalette::Text, QPalette::WindowText, QPalette::Button,
                                                         QPalette::Light, QPalette::Dark, QPalette::Mid,
                                                         QPalette::Shadow};
        if (opt->rect.isEmpty() || p->transform().type() > QTransform::TxTranslate)
            return false;
        const qreal dpr = p->device()->devicePixelRatio();
        // The key holds the numbers themselves, two code units each: formatting them costs more
        // than the copy it saves.
        QString key = QStringLiteral("kelpanel");
        key.reserve(64);
        const auto add = [&key](quint64 v) {
            for (int i = 0; i < 4; ++i, v >>= 16)
                key += QChar(char16_t(v & 0xFFFF));
        };
        add(quintptr(base()));
        add(quint64(opt->rect.width()) << 32 | quint32(opt->rect.height()));
        add(quint64(uint(opt->state)) << 32 | quint32(opt->direction));
        add(quint64(dpr * 1000));
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(opt)) {
            add(1); // which kind of option: a frame and a combo never share a key
            add(quint64(quint32(frame->lineWidth)) << 32 | quint32(frame->midLineWidth));
            add(uint(frame->features));
        }
        if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(opt)) {
            add(2);
            add(quint64(uint(combo->subControls)) << 32 | uint(combo->activeSubControls));
            add(combo->frame);
        }
        for (QPalette::ColorRole r : roles) {
            const QBrush &b = pal.brush(g, r);
            if (b.style() != Qt::SolidPattern)
                return false;
            add(b.color().rgba64());
        }
        QPixmap pm;
        if (!QPixmapCache::find(key, &pm)) {
            pm = QPixmap(opt->rect.size() * dpr);
            pm.setDevicePixelRatio(dpr);
            pm.fill(Qt::transparent);
            QPainter pp(&pm);
            pp.setRenderHints(p->renderHints());
            pp.translate(-opt->rect.topLeft());
            draw(opt, &pp, w);
            pp.end();
            QPixmapCache::insert(key, pm);
        }
        p->drawPixmap(opt->rect.topLeft(), pm);
        return true;
    }
};

CachingStyle *cachingStyle()
{
    // Lives as long as the application; widgets refer to it until they go.
    static QPointer<CachingStyle> style;
    if (!style) {
        style = new CachingStyle;
        style->setParent(qApp);
    }
    return style;
}

} // namespace

void useCachedPanel(QWidget *edit)
{
    if (!qApp || edit->testAttribute(Qt::WA_SetStyle))
        return;
    edit->setStyle(cachingStyle());
}

} // namespace kel
