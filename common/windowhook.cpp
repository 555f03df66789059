#include "common/windowhook.h"

#include "library/librarysettings.h"

#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QWidget>

namespace kel {

namespace {

constexpr const char *HookProperty = "KelControlsProc";

// One-pixel ring on [left, right) x [top, bottom): upper and left sides in one colour, lower and
// right in the other, as the classic edges are drawn.
void ring(QPainter &p, int left, int top, int right, int bottom, const QColor &upperLeft, const QColor &lowerRight)
{
    if (right - left < 1 || bottom - top < 1)
        return;
    p.setPen(upperLeft);
    p.drawLine(left, top, right - 2, top);
    p.drawLine(left, top, left, bottom - 2);
    p.setPen(lowerRight);
    p.drawLine(left, bottom - 1, right - 1, bottom - 1);
    p.drawLine(right - 1, top, right - 1, bottom - 1);
}

class PaintHook : public QObject
{
public:
    explicit PaintHook(QWidget *window) : QObject(window), m_window(window) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched != m_window || event->type() != QEvent::Paint)
            return false;
        // The widget paints first; the edges lie on top of whatever it drew.
        static_cast<QObject *>(m_window.data())->event(event);
        paintEdges();
        return true;
    }

private:
    void paintEdges()
    {
        const QPalette &pal = m_window->palette();
        QPainter p(m_window);
        int left = 0, top = 0, right = m_window->width(), bottom = m_window->height() - 1;
        ring(p, left, top, right, bottom, pal.color(QPalette::Dark), pal.color(QPalette::Light));
        ring(p, left + 1, top + 1, right - 1, bottom - 1, pal.color(QPalette::Shadow), pal.color(QPalette::Midlight));
        left += 2, top += 2, right -= 2, bottom -= 2;
        left = right - librarySettings().ButtonWidthPixels;
        if (left >= right)
            return; // no button width: no strip
        ring(p, left, top, right, bottom, pal.color(QPalette::Midlight), pal.color(QPalette::Shadow));
        ring(p, left + 1, top + 1, right - 1, bottom - 1, pal.color(QPalette::Light), pal.color(QPalette::Dark));
    }

    QPointer<QWidget> m_window;
};

} // namespace

void SubclassWindow(QWidget *window)
{
    if (!window || isSubclassed(window))
        return;
    auto *hook = new PaintHook(window);
    // Marked before the hook sees its first event.
    window->setProperty(HookProperty, QVariant::fromValue(quintptr(hook)));
    window->installEventFilter(hook);
    window->update();
}

bool isSubclassed(const QWidget *window)
{
    return window && window->property(HookProperty).isValid();
}

} // namespace kel
