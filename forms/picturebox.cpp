#include "forms/picturebox.h"

#include "forms/units.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kel {

class PictureWidget : public QWidget
{
public:
    PictureWidget() { setAttribute(Qt::WA_OpaquePaintEvent); }
    PictureBox *box = nullptr;

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (!box)
            return;
        QPainter p(this);
        const int b = box->m_border ? 1 : 0;
        p.drawImage(b, b, box->m_image);
        if (b) {
            p.setPen(palette().color(QPalette::Mid));
            p.drawLine(0, 0, width() - 1, 0);
            p.drawLine(0, 0, 0, height() - 1);
            p.setPen(palette().color(QPalette::Light));
            p.drawLine(width() - 1, 1, width() - 1, height() - 1);
            p.drawLine(1, height() - 1, width() - 1, height() - 1);
        }
    }
    void resizeEvent(QResizeEvent *) override
    {
        if (box)
            box->resized();
    }
};

PictureBox::PictureBox(UserControl *owner, const QString &objectName)
    : Child(new PictureWidget, owner, objectName)
{
    static_cast<PictureWidget *>(widget())->box = this;
    resized();
}

void PictureBox::Move(double left, double top, double width, double height)
{
    Child::Move(left, top, width, height);
    resized();
}

QColor PictureBox::colour(quint32 c) const { return toQColor(c, widget()->palette()); }

void PictureBox::resized()
{
    const int b = m_border ? 2 : 0;
    const QSize inner(qMax(0, widget()->width() - b), qMax(0, widget()->height() - b));
    // Drawn at the screen's own resolution, so text stays sharp on a high-density display.
    const qreal ratio = widget()->devicePixelRatioF();
    if (inner == m_scale && ratio == m_image.devicePixelRatio())
        return;
    QImage image(inner * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(colour(BackColor()));
    if (!m_image.isNull() && !image.isNull()) { // a box shrunk to nothing has no pixels to keep
        QPainter p(&image);
        p.drawImage(0, 0, m_image);
    }
    m_image = image;
    m_scale = inner;
}

void PictureBox::setBorderStyle(bool border)
{
    m_border = border;
    resized();
    widget()->update();
}

void PictureBox::Cls()
{
    m_image.fill(colour(BackColor()));
    m_printed.clear();
    m_currentX = m_currentY = 0;
}

void PictureBox::Print(const QString &text)
{
    const QPointF at(m_currentX, m_currentY);
    if (!m_image.isNull()) {
        QPainter p(&m_image);
        p.setFont(widget()->font());
        p.setPen(colour(ForeColor()));
        p.drawText(QRectF(at, QSizeF(TextWidth(text) + 1, TextHeight(text))), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text);
    }
    if (m_hasCoveredText)
        m_printed.push_back({at, text});
    m_currentX = 0;
    m_currentY += TextHeight(text);
}

void PictureBox::FillBox(double x1, double y1, double x2, double y2, quint32 fill)
{
    const QRectF box = QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized();
    if (!m_image.isNull() && !box.isEmpty()) {
        QPainter p(&m_image);
        p.fillRect(box, colour(fill));
        if (m_hasCoveredText) {
            p.setClipRect(box);
            p.setFont(widget()->font());
            p.setPen(colour(m_coveredText));
            for (const Printed &t : m_printed)
                p.drawText(QRectF(t.at, QSizeF(TextWidth(t.text) + 1, TextHeight(t.text))),
                           Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, t.text);
        }
    }
    m_currentX = x2;
    m_currentY = y2;
}

double PictureBox::TextWidth(const QString &text) const { return QFontMetricsF(widget()->font()).horizontalAdvance(text); }
double PictureBox::TextHeight(const QString &) const { return QFontMetricsF(widget()->font()).height(); }

} // namespace kel
