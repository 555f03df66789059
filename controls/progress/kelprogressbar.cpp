#include "controls/progress/kelprogressbar.h"

#include "common/fieldcontrol.h"
#include "forms/units.h"
#include "platform/format.h"
#include "platform/services.h"

#include <QAccessible>
#include <QAccessibleValueInterface>
#include <QAccessibleWidget>
#include <cmath>

namespace kel {

namespace {

const std::vector<Persisted> &persisted()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Min"), qint32(1), qint32(1)},
        {QStringLiteral("Max"), qint32(100), qint32(100)},
        {QStringLiteral("ShowTime"), true, true},
    };
    return table;
}

// A painted bar means nothing to a screen reader unless it is told what the bar is.
class AccessibleProgressBar : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleProgressBar(QWidget *w) : QAccessibleWidget(w, QAccessible::ProgressBar) {}

    void *interface_cast(QAccessible::InterfaceType t) override
    {
        if (t == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(t);
    }
    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value)
            return bar()->Text();
        QString s = QAccessibleWidget::text(t);
        if (t == QAccessible::Name && s.isEmpty())
            s = bar()->toolTip().isEmpty() ? QStringLiteral("Progress") : bar()->toolTip();
        return s;
    }
    QVariant currentValue() const override { return bar()->Value(); }
    void setCurrentValue(const QVariant &) override {}
    QVariant maximumValue() const override { return bar()->Max(); }
    QVariant minimumValue() const override { return bar()->Min(); }
    QVariant minimumStepSize() const override { return 1; }

private:
    KelProgressBar *bar() const { return static_cast<KelProgressBar *>(widget()); }
};

QAccessibleInterface *accessibleFactory(const QString &key, QObject *object)
{
    if (key == QLatin1String("kel::KelProgressBar") && object && object->isWidgetType())
        return new AccessibleProgressBar(static_cast<QWidget *>(object));
    return nullptr;
}

} // namespace

KelProgressBar::KelProgressBar(QWidget *parent)
    : UserControl(parent), Picture1(new PictureBox(this, QStringLiteral("Picture1")))
{
    static const bool accessible = (QAccessible::installFactory(accessibleFactory), true);
    Q_UNUSED(accessible);
    Picture1->setBackColor(0x80000005);
    Picture1->setForeColor(0x8000000D);
    Picture1->setCoveredTextColor(0x8000000E);
    onResize();
}

void KelProgressBar::setEnabled(bool enabled)
{
    propertyChanged(QStringLiteral("Enabled"));
    UserControl::setEnabled(enabled);
    Picture1->setEnabled(enabled);
}

void KelProgressBar::setMin(qint32 min)
{
    m_min = min;
    propertyChanged(QStringLiteral("Min"));
    if (m_max < m_min)
        m_max = m_min;
    rangeChanged();
}

void KelProgressBar::setMax(qint32 max)
{
    m_max = max;
    propertyChanged(QStringLiteral("Max"));
    if (m_min > m_max)
        m_min = m_max;
    rangeChanged();
}

void KelProgressBar::rangeChanged()
{
    m_lastBarWidth = -1;
    m_rangeSize = qint64(m_max) - m_min + 1;
    m_value = qBound(m_min, m_value, m_max); // shown at the next Value

}

void KelProgressBar::setShowTime(bool show)
{
    m_showTime = show;
    propertyChanged(QStringLiteral("ShowTime"));
}

void KelProgressBar::Start()
{
    m_value = m_min;
    m_startTime = services().Timer();
    m_nextTimeUpdate = float(m_startTime) + 10.0f;
}

void KelProgressBar::setValue(qint32 value)
{
    qint64 position;
    if (value >= m_min && value <= m_max) {
        m_value = value;
        position = qint64(value) - m_min + 1;
    } else if (value > m_max) {
        m_value = m_max;
        position = m_rangeSize;
    } else {
        m_value = m_min;
        position = 0;
    }
    const double share = double(position) / double(m_rangeSize);
    // The default rounding mode rounds halves to even.
    const qint64 barWidth = qint64(std::nearbyint(share * Picture1->ScaleWidth()));
    if (barWidth == m_lastBarWidth && !(m_showTime && services().Timer() > float(m_nextTimeUpdate)))
        return;
    m_lastBarWidth = barWidth;
    m_share = share;
    m_text = QString::number(qint64(std::nearbyint(share * 100))) + u'%';
    if (m_showTime)
        m_text += timeText();
    draw(barWidth);
}

QString KelProgressBar::timeText()
{
    const double elapsed = double(services().Timer()) - m_startTime;
    QString text;
    float wait = 10.0f;
    // Value 0 gives no estimate rather than a division by zero.
    if (elapsed > 10 && m_value != 0) {
        const double remaining = double(m_rangeSize) / m_value * elapsed - elapsed;
        if (remaining >= 91) {
            text = QStringLiteral(" (") + FormatNumber(remaining / 60, QStringLiteral("#,##0"), runtimeRegion())
                    + QStringLiteral(" minutes remaining)");
            wait = 60.0f;
        } else if (remaining >= 1) {
            text = QStringLiteral(" (") + FormatNumber(remaining, QStringLiteral("#0"), runtimeRegion())
                    + QStringLiteral(" seconds remaining)");
        }
    }
    m_nextTimeUpdate = services().Timer() + wait;
    return text;
}

void KelProgressBar::draw(qint64 barWidth)
{
    PictureBox *p = Picture1;
    p->Cls();
    p->setCurrentX(double(qint64(std::nearbyint(p->ScaleWidth() - p->TextWidth(m_text))) / 2));
    p->setCurrentY(double(qint64(std::nearbyint(p->ScaleHeight() - p->TextHeight(m_text))) / 2));
    p->Print(m_text);
    p->FillBox(0, 0, double(barWidth), p->ScaleHeight(), p->ForeColor());
    p->Refresh();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, m_value);
        QAccessible::updateAccessibility(&event);
    }
}

// A new size or font shows the last drawing again rather than a stretched or stale one.
void KelProgressBar::redraw()
{
    if (m_share < 0)
        return;
    const qint64 barWidth = qint64(std::nearbyint(m_share * Picture1->ScaleWidth()));
    if (m_lastBarWidth >= 0)
        m_lastBarWidth = barWidth;
    draw(barWidth);
}

void KelProgressBar::onReadProperties(PropertyBag &bag) { readThroughSetters(this, bag, persisted()); }
void KelProgressBar::onWriteProperties(PropertyBag &bag) { writeFromGetters(this, bag, persisted()); }

void KelProgressBar::onResize()
{
    Picture1->Move(0, 0, ScaleWidth(), ScaleHeight());
    redraw();
}

void KelProgressBar::onShow()
{
    takeFieldFont(Picture1);
    Picture1->setToolTipText(ExtenderToolTipText());
    redraw();
}

} // namespace kel
