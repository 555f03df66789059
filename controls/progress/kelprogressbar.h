#pragma once
// A painted progress bar: the share of Min..Max done as a filled bar, the percentage in the
// middle and, optionally, the estimated time left. Cheap to feed every item of a long job: a
// Value that moves the bar by less than a pixel draws nothing.
#include "../../forms/picturebox.h"
#include "../../forms/usercontrol.h"
#include "../../platform/kelexport.h"

namespace kel {

class KEL_EXPORT KelProgressBar : public UserControl
{
    Q_OBJECT
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled DESIGNABLE false)
    Q_PROPERTY(qint32 Max READ Max WRITE setMax)
    Q_PROPERTY(qint32 Min READ Min WRITE setMin)
    Q_PROPERTY(bool ShowTime READ ShowTime WRITE setShowTime)
    Q_PROPERTY(qint32 Value READ Value WRITE setValue USER true DESIGNABLE false)

public:
    /// A new control, a child of parent; the container sets its properties next.
    explicit KelProgressBar(QWidget *parent = nullptr);

    /// The picture the bar and its text are drawn on.
    PictureBox *const Picture1;

    /// The control's own enabled state (not saved with the form).
    bool Enabled() const { return !testAttribute(Qt::WA_ForceDisabled); }
    /// Sets Enabled.
    void setEnabled(bool enabled);
    /// The last value of the job; Min follows it down when it is set below Min.
    qint32 Max() const { return m_max; }
    /// Sets Max.
    void setMax(qint32 max);
    /// The first value of the job; Max follows it up when it is set above Max.
    qint32 Min() const { return m_min; }
    /// Sets Min.
    void setMin(qint32 min);
    /// Appends the estimated time left once more than 10 seconds have passed since Start.
    bool ShowTime() const { return m_showTime; }
    /// Sets ShowTime.
    void setShowTime(bool show);
    /// Always within Min..Max.
    qint32 Value() const { return m_value; }
    /// Clamps into Min..Max and redraws only when the bar grows or shrinks by a pixel or the
    /// time text is due.
    void setValue(qint32 value);

    /// Begins a job: Value becomes Min (nothing is drawn) and the clock starts.
    Q_INVOKABLE void Start();
    /// Clears the picture.
    Q_INVOKABLE void Clear() { Picture1->Cls(); Picture1->Refresh(); }
    /// Repaints the picture as last drawn.
    Q_INVOKABLE void Refresh() { Picture1->Refresh(); }

    /// The text last drawn ("42% (3 minutes remaining)"), also what screen readers hear.
    QString Text() const { return m_text; }

protected:
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onResize() override;
    void onShow() override;

private:
    void rangeChanged();
    QString timeText();
    void draw(qint64 barWidth);
    void redraw();

    qint32 m_min = 1;
    qint32 m_max = 100;
    qint32 m_value = 1;
    bool m_showTime = true;
    qint64 m_rangeSize = 100; // wider than the range itself: Max - Min + 1 may not fit 32 bits
    qint64 m_lastBarWidth = -1;
    double m_startTime = 0;
    double m_nextTimeUpdate = 0;
    double m_share = -1; // of the last drawing; below 0 before the first
    QString m_text;
};

} // namespace kel
