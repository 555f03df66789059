#pragma once
// The base of every control: the container's lifecycle, focus entry and exit of the control as
// a whole, property-changed notices, the extender's tool tip, and sizes in twips.
#include "platform/kelexport.h"
#include "platform/liveobjects.h"
#include "platform/propertybag.h"

#include <QWidget>

namespace kel {

class Child;

class KEL_EXPORT UserControl : public QWidget
{
    Q_OBJECT
public:
    explicit UserControl(QWidget *parent = nullptr);
    ~UserControl() override;

    // Driven by the container.
    void InitProperties();                 // a control newly placed on a form
    void ReadProperties(PropertyBag &bag); // a saved form is loaded
    void WriteProperties(PropertyBag &bag);// the form is saved

    // Sizes in twips.
    double Width() const { return m_widthTwips; }
    double Height() const { return m_heightTwips; }
    void setWidth(double twips);
    void setHeight(double twips);
    double ScaleWidth() const { return m_widthTwips; }
    double ScaleHeight() const { return m_heightTwips; }

    // A handle unique to this control (its native window id once it has one). Not named
    // windowHandle(): that would hide QWidget's own.
    qint32 hWnd() const;

    // The host extender's "ToolTipText": the control's own tool tip.
    QString ExtenderToolTipText() const { return toolTip(); }
    void setExtenderToolTipText(const QString &text) { setToolTip(text); }

    bool focusInside() const { return m_focusInside; }

signals:
    // A persisted property changed; the host's form needs saving.
    void PropertyChanged(const QString &name);

protected:
    void propertyChanged(const QString &name) { emit PropertyChanged(name); }

    virtual void onInitProperties() {}
    virtual void onReadProperties(PropertyBag &) {}
    virtual void onWriteProperties(PropertyBag &) {}
    virtual void onResize() {}
    virtual void onShow() {}
    virtual void onEnterFocus() {}
    virtual void onExitFocus() {}

    void resizeEvent(QResizeEvent *e) override;
    void showEvent(QShowEvent *e) override;

private:
    friend class Child;
    void resizeTo(const QSize &size);
    void childFocusIn();
    void childFocusOut();

    double m_widthTwips = 0, m_heightTwips = 0;
    bool m_focusInside = false;
    qint32 m_handle;
    LiveObject m_live;
};

} // namespace kel
