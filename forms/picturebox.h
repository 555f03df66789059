#pragma once
// The picture box with persistent drawing: what is drawn stays until cleared. It is kept as the
// few commands drawn since the last clear, and turned into a retained image only when they pile
// up or the box is resized over a drawing, so a form of progress bars holds no pixels of its own.
// Its scale is in pixels, with (0, 0) at the top left of the inside.
#include "child.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <vector>

class QPainter;

namespace kel {

class PictureWidget;

class KEL_EXPORT PictureBox : public Child
{
    Q_OBJECT
public:
    PictureBox(UserControl *owner, const QString &objectName);

    // Resizes the drawing at once, shown or not (a hidden widget hears of its size late).
    void Move(double left, double top, double width, double height);

    // The drawing area inside the border.
    double ScaleWidth() const { return m_scale.width(); }
    double ScaleHeight() const { return m_scale.height(); }

    double CurrentX() const { return m_currentX; }
    void setCurrentX(double x) { m_currentX = x; }
    double CurrentY() const { return m_currentY; }
    void setCurrentY(double y) { m_currentY = y; }

    // Clears the drawing to the back colour and puts the current position at (0, 0).
    void Cls();
    // Prints at the current position in the fore colour; the position moves to the start of
    // the next line.
    void Print(const QString &text);
    // A box from (x1, y1) to (x2, y2), filled with `colour`; the current position moves to
    // (x2, y2).
    void FillBox(double x1, double y1, double x2, double y2, quint32 colour);
    double TextWidth(const QString &text) const;
    double TextHeight(const QString &text) const;

    // Text printed since the last Cls and then covered by a filled box is drawn again where
    // it is covered in this colour, so it stays readable. None by default.
    void setCoveredTextColor(quint32 colour) { m_coveredText = colour; m_hasCoveredText = true; }
    // A one-pixel sunken frame around the drawing area (the classic fixed single border).
    bool BorderStyle() const { return m_border; }
    void setBorderStyle(bool border);

    // What is on the picture now, without the border (in device pixels).
    QImage Image() const;

private:
    friend class PictureWidget;
    void resized();
    QColor colour(quint32 c) const;
    // Draws the picture with its inside's top left at `origin`.
    void render(QPainter &p, QPoint origin) const;
    void flatten();

    // A drawing command since the last clear: a text printed, or a box filled (and the texts
    // printed before it drawn again inside it in the covered-text colour).
    struct Command {
        QRectF rect;
        QString text;
        QFont font;
        QColor colour, coveredColour;
        bool fill = false;
        std::vector<std::pair<QRectF, QString>> covered;
    };
    QColor m_cleared;        // the fill under everything, when there is no image
    QImage m_image;          // what was drawn before the commands, once they were flattened
    std::vector<Command> m_commands;
    QSize m_scale;
    double m_currentX = 0, m_currentY = 0;
    bool m_border = true;
    bool m_hasCoveredText = false;
    quint32 m_coveredText = 0;
    struct Printed { QPointF at; QString text; };
    std::vector<Printed> m_printed;
};

} // namespace kel
