#include "forms/usercontrol.h"

#include "forms/child.h"
#include "forms/qtservices.h"
#include "forms/units.h"

#include <QApplication>
#include <QResizeEvent>

namespace kel {

static qint32 nextHandle()
{
    static qint32 n = 0x10000;
    return n += 4;
}

UserControl::UserControl(QWidget *parent)
    : QWidget(parent), m_handle(nextHandle())
{
    installQtServicesIfNone();
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_widthTwips = width() * twipsPerPixelX();
    m_heightTwips = height() * twipsPerPixelY();
}

UserControl::~UserControl()
{
    // QWidget's destructor still moves the focus; no handler of ours may run by then.
    for (Child *c : findChildren<Child *>(Qt::FindDirectChildrenOnly)) {
        c->detach();
        // The derived control is gone already: no signal of a child may reach its slots.
        disconnect(c, nullptr, this, nullptr);
    }
}

QSize UserControl::sizeHint() const { return {twipsToPixelsX(1440), twipsToPixelsY(300)}; }

void UserControl::InitProperties() { onInitProperties(); }
void UserControl::ReadProperties(PropertyBag &bag) { onReadProperties(bag); }
void UserControl::WriteProperties(PropertyBag &bag) { onWriteProperties(bag); }

// QWidget::resize on a hidden widget sends no resize event until it is shown, so the pixels it
// has now win over twips they no longer match.
double UserControl::Width() const
{
    return twipsToPixelsX(m_widthTwips) == width() ? m_widthTwips : width() * twipsPerPixelX();
}

double UserControl::Height() const
{
    return twipsToPixelsY(m_heightTwips) == height() ? m_heightTwips : height() * twipsPerPixelY();
}

void UserControl::setWidth(double twips)
{
    m_widthTwips = twips;
    resizeTo(QSize(twipsToPixelsX(twips), height()));
}

void UserControl::setHeight(double twips)
{
    m_heightTwips = twips;
    resizeTo(QSize(width(), twipsToPixelsY(twips)));
}

void UserControl::resizeTo(const QSize &size)
{
    const QSize old = this->size();
    resize(size);
    // A hidden widget gets its resize event only when shown, and a size that rounds to the same
    // pixels none at all; the container's resize lays out now either way.
    if (!isVisible() || old == size) {
        QResizeEvent e(size, old);
        resizeEvent(&e);
    }
}

qint32 UserControl::hWnd() const
{
    const WId id = internalWinId();
    return id ? qint32(id) : m_handle;
}

void UserControl::resizeEvent(QResizeEvent *e)
{
    // Keep the exact twips a caller set while they still match the pixels on screen.
    if (twipsToPixelsX(m_widthTwips) != e->size().width())
        m_widthTwips = e->size().width() * twipsPerPixelX();
    if (twipsToPixelsY(m_heightTwips) != e->size().height())
        m_heightTwips = e->size().height() * twipsPerPixelY();
    QWidget::resizeEvent(e);
    onResize();
}

void UserControl::showEvent(QShowEvent *e)
{
    QWidget::showEvent(e);
    if (!e->spontaneous())
        onShow();
}

void UserControl::childFocusIn()
{
    if (m_focusInside)
        return;
    m_focusInside = true;
    onEnterFocus();
}

void UserControl::childFocusOut()
{
    const QWidget *now = QApplication::focusWidget();
    if (!m_focusInside || (now && isAncestorOf(now)))
        return;
    m_focusInside = false;
    onExitFocus();
}

} // namespace kel
