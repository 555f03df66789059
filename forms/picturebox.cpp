#include "forms/picturebox.h"

#include "forms/units.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kel {

namespace {
// More commands than this since the last clear are turned into pixels.
constexpr size_t MaxCommands = 32;
} // namespace

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
        box->render(p, QPoint(b, b));
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
    m_cleared = colour(BackColor());
    resized();
}

void PictureBox::Move(double left, double top, double width, double height)
{
    Child::Move(left, top, width, height);
    resized();
}

QColor PictureBox::colour(quint32 c) const { return toQColor(c, widget()->palette()); }

void PictureBox::render(QPainter &p, QPoint origin) const
{
    p.save();
    p.translate(origin);
    p.setClipRect(QRect(QPoint(0, 0), m_scale));
    if (m_image.isNull())
        p.fillRect(QRect(QPoint(0, 0), m_scale), m_cleared);
    else
        p.drawImage(0, 0, m_image);
    for (const Command &c : m_commands) {
        if (!c.fill) {
            p.setFont(c.font);
            p.setPen(c.colour);
            p.drawText(c.rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, c.text);
            continue;
        }
        p.fillRect(c.rect, c.colour);
        if (c.covered.empty())
            continue;
        p.save();
        p.setClipRect(c.rect, Qt::IntersectClip);
        p.setFont(c.font);
        p.setPen(c.coveredColour);
        for (const auto &[rect, text] : c.covered)
            p.drawText(rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text);
        p.restore();
    }
    p.restore();
}

QImage PictureBox::Image() const
{
    if (!m_commands.empty() || m_image.isNull()) {
        const qreal ratio = widget()->devicePixelRatioF();
        QImage image(m_scale * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        if (!image.isNull()) {
            QPainter p(&image);
            render(p, QPoint(0, 0));
        }
        return image;
    }
    return m_image;
}

// The commands become pixels; what is drawn from then on goes over them.
void PictureBox::flatten()
{
    const QImage image = Image();
    m_image = image;
    m_commands.clear();
}

void PictureBox::resized()
{
    const int b = m_border ? 2 : 0;
    const QSize inner(qMax(0, widget()->width() - b), qMax(0, widget()->height() - b));
    // Drawn at the screen's own resolution, so text stays sharp on a high-density display.
    const qreal ratio = widget()->devicePixelRatioF();
    const qreal had = m_image.isNull() ? ratio : m_image.devicePixelRatio();
    if (inner == m_scale && ratio == had)
        return;
    // A clear picture simply grows; a drawing keeps its pixels where they were, as a retained one does.
    if (m_image.isNull() && m_commands.empty() && m_cleared == colour(BackColor())) {
        m_scale = inner;
        return;
    }
    if (!m_commands.empty() || m_image.isNull())
        flatten();
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
    m_image = QImage();
    m_commands.clear();
    m_cleared = colour(BackColor());
    m_printed.clear();
    m_currentX = m_currentY = 0;
}

void PictureBox::Print(const QString &text)
{
    const QPointF at(m_currentX, m_currentY);
    m_commands.push_back({QRectF(at, QSizeF(TextWidth(text) + 1, TextHeight(text))), text, widget()->font(),
                          colour(ForeColor()), QColor(), false, {}});
    if (m_hasCoveredText)
        m_printed.push_back({at, text});
    m_currentX = 0;
    m_currentY += TextHeight(text);
    if (m_commands.size() > MaxCommands)
        flatten();
}

void PictureBox::FillBox(double x1, double y1, double x2, double y2, quint32 fill)
{
    const QRectF box = QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized();
    if (!box.isEmpty()) {
        Command c{box, QString(), widget()->font(), colour(fill), colour(m_coveredText), true, {}};
        if (m_hasCoveredText)
            for (const Printed &t : m_printed)
                c.covered.emplace_back(QRectF(t.at, QSizeF(TextWidth(t.text) + 1, TextHeight(t.text))), t.text);
        m_commands.push_back(std::move(c));
        if (m_commands.size() > MaxCommands)
            flatten();
    }
    m_currentX = x2;
    m_currentY = y2;
}

double PictureBox::TextWidth(const QString &text) const { return QFontMetricsF(widget()->font()).horizontalAdvance(text); }
double PictureBox::TextHeight(const QString &) const { return QFontMetricsF(widget()->font()).height(); }

} // namespace kel
