#include "forms/updown.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionSpinBox>
#include <QTimer>

namespace kel {

class SpinnerWidget : public QWidget
{
public:
    explicit SpinnerWidget(UpDown *owner) : m_owner(owner)
    {
        setFocusPolicy(Qt::NoFocus);
        setAccessibleName(QStringLiteral("Up Down"));
        m_repeat.setSingleShot(false);
        connect(&m_repeat, &QTimer::timeout, this, &SpinnerWidget::repeat);
    }

    // A click as a screen reader makes it.
    void click(bool upper) { m_owner->pressed(upper); }

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
        const bool upper = isUpper(e->position());
        m_pressed = upper ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
        m_over = true;
        repaint();
        // Held down, the button repeats as a stock spin box does: a pause, then a steady rate.
        m_repeat.start(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatThreshold, nullptr, this));
        QPointer<SpinnerWidget> self(this);
        m_owner->pressed(upper);
        if (self && !isEnabled())
            stop();
    }

    void mouseMoveEvent(QMouseEvent *e) override
    {
        // Repeats pause while the pointer is off the pressed button.
        m_over = rect().contains(e->position().toPoint()) && (isUpper(e->position()) == (m_pressed == QStyle::SC_SpinBoxUp));
    }

    void mouseReleaseEvent(QMouseEvent *) override { stop(); }
    void hideEvent(QHideEvent *) override { stop(); }
    void changeEvent(QEvent *e) override
    {
        if (e->type() == QEvent::EnabledChange && !isEnabled())
            stop();
        QWidget::changeEvent(e);
    }

private:
    bool isUpper(QPointF p) const { return p.y() < height() / 2.0; }

    void repeat()
    {
        m_repeat.setInterval(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatRate, nullptr, this));
        if (m_over && m_pressed != QStyle::SC_None)
            m_owner->pressed(m_pressed == QStyle::SC_SpinBoxUp);
    }

    void stop()
    {
        m_repeat.stop();
        if (m_pressed == QStyle::SC_None)
            return;
        m_pressed = QStyle::SC_None;
        update();
    }

    UpDown *m_owner;
    QStyle::SubControl m_pressed = QStyle::SC_None;
    bool m_over = false;
    QTimer m_repeat;
};

namespace {

// Screen readers see a spin button with increase and decrease actions.
class AccessibleSpinner : public QAccessibleWidget
{
public:
    explicit AccessibleSpinner(SpinnerWidget *w) : QAccessibleWidget(w, QAccessible::SpinBox) {}

    QStringList actionNames() const override
    {
        if (!widget()->isEnabled())
            return {};
        return {increaseAction(), decreaseAction()};
    }
    void doAction(const QString &name) override
    {
        if (widget()->isEnabled() && (name == increaseAction() || name == decreaseAction()))
            static_cast<SpinnerWidget *>(widget())->click(name == increaseAction());
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
};

QAccessibleInterface *spinnerAccessible(const QString &, QObject *object)
{
    if (auto *w = dynamic_cast<SpinnerWidget *>(object))
        return new AccessibleSpinner(w);
    return nullptr;
}

} // namespace

UpDown::UpDown(UserControl *owner, const QString &objectName)
    : Child(new SpinnerWidget(this), owner, objectName)
{
    static const bool installed = (QAccessible::installFactory(spinnerAccessible), true);
    Q_UNUSED(installed);
}

void UpDown::setValue(int value)
{
    m_value = qBound(0, value, 2);
}

void UpDown::pressed(bool upper)
{
    m_value = upper ? 2 : 0;
    raiseChange();
}

} // namespace kel
