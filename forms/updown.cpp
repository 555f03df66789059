#include "forms/updown.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSpinBox>

namespace kel {

class SpinnerWidget : public QWidget
{
public:
    explicit SpinnerWidget(UpDown *owner) : m_owner(owner)
    {
        setFocusPolicy(Qt::NoFocus);
        setAccessibleName(QStringLiteral("Up Down"));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QStyleOptionSpinBox opt;
        opt.initFrom(this);
        opt.frame = false;
        opt.buttonSymbols = QAbstractSpinBox::UpDownArrows;
        opt.subControls = QStyle::SC_SpinBoxUp | QStyle::SC_SpinBoxDown;
        opt.stepEnabled = isEnabled() ? (QAbstractSpinBox::StepUpEnabled | QAbstractSpinBox::StepDownEnabled)
                                      : QAbstractSpinBox::StepNone;
        if (m_pressed != QStyle::SC_None) {
            opt.activeSubControls = m_pressed;
            opt.state |= QStyle::State_Sunken;
        }
        // Styles place the buttons at the right of a whole spin box and may leave room for a
        // frame; shift the box so the buttons fill this widget exactly.
        opt.rect = rect();
        const QRect up = style()->subControlRect(QStyle::CC_SpinBox, &opt, QStyle::SC_SpinBoxUp, this);
        const QRect down = style()->subControlRect(QStyle::CC_SpinBox, &opt, QStyle::SC_SpinBoxDown, this);
        const QRect buttons = up.united(down);
        QPainter p(this);
        if (buttons.width() > 0 && buttons.height() > 0) {
            p.scale(qreal(width()) / buttons.width(), qreal(height()) / buttons.height());
            p.translate(-buttons.topLeft());
        }
        style()->drawComplexControl(QStyle::CC_SpinBox, &opt, &p, this);
    }

    void mousePressEvent(QMouseEvent *e) override
    {
        if (e->button() != Qt::LeftButton) {
            e->ignore();
            return;
        }
        const bool upper = e->position().y() < height() / 2.0;
        m_pressed = upper ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
        repaint();
        m_owner->pressed(upper);
    }

    void mouseReleaseEvent(QMouseEvent *) override
    {
        m_pressed = QStyle::SC_None;
        update();
    }

private:
    UpDown *m_owner;
    QStyle::SubControl m_pressed = QStyle::SC_None;
};

UpDown::UpDown(UserControl *owner, const QString &objectName)
    : Child(new SpinnerWidget(this), owner, objectName)
{
}

void UpDown::setValue(int value)
{
    m_value = qBound(0, value, 2);
}

void UpDown::pressed(bool upper)
{
    m_value = upper ? 2 : 0;
    emit Change();
}

} // namespace kel
