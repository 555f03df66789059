#pragma once
// A child widget of a control, seen the classic way: geometry in twips, classic colours, and
// the events KeyDown / KeyPress (with codes a handler may change or zero), GotFocus, LostFocus,
// Click, MouseDown and Change.
#include "../platform/kelexport.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

class QKeyEvent;

namespace kel {

class UserControl;

// Shift state bits of KeyDown and MouseDown.
enum ShiftMask { ShiftKey = 1, CtrlKey = 2, AltKey = 4 };

// Windows virtual-key code of a Qt key event (0 when it has none).
int virtualKeyCode(const QKeyEvent *e);
// The character a key event types (control characters included, a whole code point for a
// surrogate pair), or -1 for none.
int keyAscii(const QKeyEvent *e);
// Moves the focus on from the focus widget exactly as the user's Tab key does.
void sendTabKey();

class KEL_EXPORT Child : public QObject
{
    Q_OBJECT
public:
    Child(QWidget *widget, UserControl *owner, const QString &objectName);
    ~Child() override;

    // Which pair of palette roles carries the colours: background and text of a plain widget
    // (Window, WindowText) or of an editing one (Base, Text). A widget that paints with its own
    // background and foreground roles (a label) can show two system colours by pointing those
    // roles at them, with no palette of its own.
    enum ColourRoles { WindowRoles = 1, BaseRoles = 2, SystemColoursByRole = 4 };

    QWidget *widget() const { return m_widget; }
    UserControl *owner() const { return m_owner; }

    double Left() const { return m_left; }
    double Top() const { return m_top; }
    double Width() const { return m_width; }
    double Height() const { return m_height; }
    void Move(double left, double top, double width, double height);
    void setWidth(double twips) { Move(m_left, m_top, twips, m_height); }
    void setHeight(double twips) { Move(m_left, m_top, m_width, twips); }

    bool Visible() const;
    void setVisible(bool visible);
    bool Enabled() const;
    void setEnabled(bool enabled);
    quint32 BackColor() const { return m_back; }
    void setBackColor(quint32 colour);
    quint32 ForeColor() const { return m_fore; }
    void setForeColor(quint32 colour);
    QString ToolTipText() const;
    void setToolTipText(const QString &text);
    QString FontName() const;
    void setFontName(const QString &name);
    double FontSize() const;
    void setFontSize(double points);
    bool FontBold() const;
    void setFontBold(bool bold);

    void Refresh();
    void SetFocus();

    // Read-only that still takes the focus (field widgets); false for others.
    virtual bool Locked() const { return false; }
    virtual void setLocked(bool) {}

    // Stops raising events; the owner is going away.
    void detach();

    // Whether the focus last arrived by Tab or Backtab.
    bool arrivedByTab() const;

signals:
    void KeyDown(int &KeyCode, int Shift);
    void KeyPress(int &KeyAscii);
    void GotFocus();
    void LostFocus();
    void Click();
    void MouseDown(int Button, int Shift, double X, double Y);
    void Change();

protected:
    // Raise an event: the owner's handler first, then the signal's. False when a handler deleted
    // this child, which must then touch nothing of its own.
    bool raiseChange();
    bool raiseClick();
    // Left by the focus, before the owner's handler and the signal's.
    virtual void focusLeft() {}

    bool eventFilter(QObject *watched, QEvent *event) override;
    // Around the widget's own focus-in handling (which may select text by itself).
    virtual void beforeWidgetFocusIn() {}
    virtual void afterWidgetFocusIn(Qt::FocusReason) {}
    // A key no handler swallowed, before the widget sees it: true eats it.
    virtual bool eatsKey(int /*keyCode*/, int /*shift*/) { return false; }
    // Types `code` in place of the key the user pressed.
    virtual void typeCharacter(int code, const QKeyEvent *original);
    // The palette roles BackColor and ForeColor go to: those the widget paints with. The others
    // stay natural, so a widget in its natural colours needs no palette of its own.
    virtual int colourRoles() const { return WindowRoles | BaseRoles; }
    void applyColours();

private:
    class Alive;
    bool raise(void (UserControl::*handler)(Child *), void (Child::*signal)());
    bool handleKey(QKeyEvent *e);
    void gainLogicalFocus(Qt::FocusReason reason);
    void loseLogicalFocus();

    QPointer<QWidget> m_widget;
    UserControl *m_owner;
    double m_left = 0, m_top = 0, m_width = 0, m_height = 0;
    quint32 m_back, m_fore;
    bool m_logicalFocus = false;
    qint64 m_ourPalette = 0; // the widget's palette as applyColours last left it
    bool *m_gone = nullptr; // the innermost Alive watching this child
    bool m_detached = false; // the owner is going away: its handlers may no longer run
    bool m_retyping = false;
    bool m_pressedInside = false;
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason;
};

// A child that holds editable text with a selection: the text box, and later the combo box.
class KEL_EXPORT EditChild : public Child
{
    Q_OBJECT
public:
    using Child::Child;
    virtual QString Text() const = 0;
    virtual void setText(const QString &text) = 0;
    virtual int SelStart() const = 0;
    virtual void setSelStart(int start) = 0;
    virtual int SelLength() const = 0;
    virtual void setSelLength(int length) = 0;
    virtual QString SelText() const = 0;
    virtual void setSelText(const QString &text) = 0;

protected:
    int colourRoles() const override { return BaseRoles; }
};

} // namespace kel
