#pragma once
/// \file
/// The base of every control: the container's lifecycle, focus entry and exit of the control as
/// a whole, property-changed notices, the extender's tool tip, and sizes in twips.
#include "../platform/kelexport.h"
#include "../platform/liveobjects.h"
#include "../platform/propertybag.h"

#include <QVariant>
#include <QWidget>

namespace kel {

class Child;

/// What a property read last time it was announced: `moved` is true, once, when it reads otherwise
/// now. Lets a control emit a Qt NOTIFY signal from every place that may change a value, without
/// announcing a value that did not move.
class PropertyWatch
{
public:
    /// True when `now` differs from the value last seen, which it then remembers.
    bool moved(const QVariant &now)
    {
        if (now.metaType() == m_last.metaType() && now == m_last)
            return false;
        m_last = now;
        return true;
    }

private:
    QVariant m_last;
};

/// The base of every control: what a host's form container drives and sees of it.
class KEL_EXPORT UserControl : public QWidget
{
    Q_OBJECT
public:
    /// Counts as a live object of the library until destroyed (see DllCanUnloadNow).
    explicit UserControl(QWidget *parent = nullptr);
    ~UserControl() override;

    /// A control newly placed on a form (a designer's drop): first-time defaults, no change reports.
    void InitProperties();
    /// A saved form is loaded: every persisted property is read from `bag` through its setter.
    void ReadProperties(PropertyBag &bag);
    /// The form is saved: every persisted property is written; values equal to their defaults are not stored.
    void WriteProperties(PropertyBag &bag);

    /// The control's width in twips (1/1440 inch).
    double Width() const;
    /// The control's height in twips.
    double Height() const;
    /// Resizes the control (the layout rules may then adjust it).
    void setWidth(double twips);
    /// Resizes the control (the layout rules may then adjust it).
    void setHeight(double twips);
    /// The inner width in twips (the control has no border, so Width()).
    double ScaleWidth() const { return Width(); }
    /// The inner height in twips.
    double ScaleHeight() const { return Height(); }

    /// A handle unique to this control (its native window id once it has one). Not named
    /// windowHandle(): that would hide QWidget's own.
    qint32 hWnd() const;

    /// The host extender's "ToolTipText": the control's own tool tip.
    QString ExtenderToolTipText() const { return toolTip(); }
    /// Sets the extender's tool tip; fields take it on the next show.
    void setExtenderToolTipText(const QString &text) { setToolTip(text); }

    /// In a layout: an inch wide and 300 twips high, the height fixed.
    QSize sizeHint() const override;

    /// The container's ambient UserMode: true on a running form, false on a form being designed,
    /// where a value without a type reads in the type a designer edits it with.
    bool AmbientUserMode() const { return m_userMode; }
    /// Sets AmbientUserMode.
    void setAmbientUserMode(bool userMode) { m_userMode = userMode; }

    /// Whether the focus is in one of the control's child widgets.
    bool focusInside() const { return m_focusInside; }

signals:
    /// A persisted property changed; the host's form needs saving.
    void PropertyChanged(const QString &name);

protected:
    /// Reports a persisted property as changed, by its bag name.
    void propertyChanged(const QString &name) { emit PropertyChanged(name); }

    /// The container's events, for the control to handle.
    virtual void onInitProperties() {}
    virtual void onReadProperties(PropertyBag &) {}
    virtual void onWriteProperties(PropertyBag &) {}
    virtual void onResize() {}
    virtual void onShow() {}
    virtual void onEnterFocus() {}
    virtual void onExitFocus() {}

    /// The control's own handlers of its child widgets' events: each runs before the handlers
    /// connected to the child's signal, and may delete the control. (Virtual rather than
    /// connected: a connection is an allocation, and a form holds hundreds of fields.)
    virtual void onChildKeyDown(Child *, int & /*keyCode*/, int /*shift*/) {}
    virtual void onChildKeyPress(Child *, int & /*keyAscii*/) {}
    virtual void onChildGotFocus(Child *) {}
    virtual void onChildLostFocus(Child *) {}
    virtual void onChildClick(Child *) {}
    virtual void onChildMouseDown(Child *, int /*button*/, int /*shift*/, double /*x*/, double /*y*/) {}
    virtual void onChildChange(Child *) {}

    void resizeEvent(QResizeEvent *e) override;
    void showEvent(QShowEvent *e) override;

private:
    friend class Child;
    void resizeTo(const QSize &size);
    void childFocusIn();
    void childFocusOut();

    double m_widthTwips = 0, m_heightTwips = 0;
    bool m_focusInside = false;
    bool m_userMode = true;
    qint32 m_handle;
    LiveObject m_live;
};

} // namespace kel
