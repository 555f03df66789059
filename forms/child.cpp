#include "forms/child.h"

#include "forms/units.h"
#include "forms/usercontrol.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>

namespace kel {

namespace {
struct ColourRolePair {
    int bit;
    QPalette::ColorRole back, fore;
};
constexpr ColourRolePair colourRolePairs[] = {{Child::WindowRoles, QPalette::Window, QPalette::WindowText},
                                              {Child::BaseRoles, QPalette::Base, QPalette::Text}};
} // namespace

int virtualKeyCode(const QKeyEvent *e)
{
    const int k = e->key();
    const bool pad = e->modifiers() & Qt::KeypadModifier;
    if (k >= Qt::Key_A && k <= Qt::Key_Z)
        return k;
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return pad ? 96 + (k - Qt::Key_0) : k;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24)
        return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: case Qt::Key_Backtab: return 9;
    case Qt::Key_Return: case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_Asterisk: return pad ? 106 : 0;
    case Qt::Key_Plus: return pad ? 107 : 187;
    case Qt::Key_Equal: return 187;
    case Qt::Key_Minus: return pad ? 109 : 189;
    case Qt::Key_Period: return pad ? 110 : 190;
    case Qt::Key_Comma: return pad ? 110 : 188;
    case Qt::Key_Slash: return pad ? 111 : 191;
    case Qt::Key_Semicolon: return 186;
    case Qt::Key_QuoteLeft: return 192;
    case Qt::Key_BracketLeft: return 219;
    case Qt::Key_Backslash: return 220;
    case Qt::Key_BracketRight: return 221;
    case Qt::Key_Apostrophe: return 222;
    default: return 0;
    }
}

int keyAscii(const QKeyEvent *e)
{
    const int k = e->key();
    const Qt::KeyboardModifiers m = e->modifiers();
    if ((m & Qt::ControlModifier) && !(m & Qt::AltModifier) && k >= Qt::Key_A && k <= Qt::Key_Z)
        return k - Qt::Key_A + 1;
    switch (k) {
    case Qt::Key_Return: case Qt::Key_Enter: return 13;
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Delete: case Qt::Key_Tab: case Qt::Key_Backtab: return -1;
    default: break;
    }
    const QString t = e->text();
    if (t.size() == 2 && t[0].isHighSurrogate() && t[1].isLowSurrogate())
        return int(QChar::surrogateToUcs4(t[0], t[1]));
    if (t.size() != 1 || t[0].isSurrogate() || t[0].unicode() == 127)
        return -1;
    return t[0].unicode();
}

void sendTabKey()
{
    if (QWidget *w = QApplication::focusWidget()) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QApplication::sendEvent(w, &press);
    }
}

namespace {
// The child that holds the focus as far as the form is concerned; one for the application,
// as there is one keyboard focus.
QPointer<Child> &logicalFocus()
{
    static QPointer<Child> c;
    return c;
}
} // namespace

Child::Child(QWidget *widget, UserControl *owner, const QString &objectName)
    : QObject(owner), m_widget(widget), m_owner(owner), m_back(0x80000005), m_fore(0x80000008)
{
    widget->setParent(owner);
    // Only the widget is named: a name costs each object an allocation, and a form holds hundreds.
    widget->setObjectName(objectName);
    widget->installEventFilter(this);
}

// Whether a child outlived what a handler did meanwhile: cheaper than a QPointer on a path that
// runs for every keystroke and every pair of a trim.
class Child::Alive
{
public:
// GCC cannot see that the destructor takes the address back whenever the child lives on.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
#endif
    explicit Alive(Child *c) : m_child(c), m_outer(c->m_gone) { c->m_gone = &m_gone; }
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
    ~Alive()
    {
        if (!m_gone)
            m_child->m_gone = m_outer;
        else if (m_outer)
            *m_outer = true;
    }
    Alive(const Alive &) = delete;
    Alive &operator=(const Alive &) = delete;
    explicit operator bool() const { return !m_gone; }

private:
    Child *m_child;
    bool *m_outer;
    bool m_gone = false;
};

Child::~Child()
{
    if (m_gone)
        *m_gone = true;
}

bool Child::raise(void (UserControl::*handler)(Child *), void (Child::*signal)())
{
    Alive alive(this);
    if (!m_detached)
        (m_owner->*handler)(this);
    if (alive)
        (this->*signal)();
    return bool(alive);
}

bool Child::raiseChange() { return raise(&UserControl::onChildChange, &Child::Change); }
bool Child::raiseClick() { return raise(&UserControl::onChildClick, &Child::Click); }

void Child::detach()
{
    m_detached = true;
    if (m_widget)
        m_widget->removeEventFilter(this);
    if (logicalFocus() == this)
        logicalFocus() = nullptr;
    m_logicalFocus = false;
}

void Child::gainLogicalFocus(Qt::FocusReason reason)
{
    // Focus moved by code while the window was inactive: the old holder never saw a FocusOut.
    if (Child *old = logicalFocus(); old && old != this)
        old->loseLogicalFocus();
    logicalFocus() = this;
    m_logicalFocus = true;
    m_focusReason = reason;
    Alive alive(this);
    m_owner->childFocusIn();
    if (alive && !m_detached)
        m_owner->onChildGotFocus(this);
    if (alive)
        emit GotFocus();
}

void Child::loseLogicalFocus()
{
    if (!m_logicalFocus)
        return;
    m_logicalFocus = false;
    if (logicalFocus() == this)
        logicalFocus() = nullptr;
    Alive alive(this);
    focusLeft();
    if (alive && !m_detached)
        m_owner->onChildLostFocus(this);
    if (alive)
        emit LostFocus();
    if (alive)
        m_owner->childFocusOut();
}

void Child::Move(double left, double top, double width, double height)
{
    m_left = left;
    m_top = top;
    m_width = qMax(0.0, width);
    m_height = qMax(0.0, height);
    if (m_widget)
        m_widget->setGeometry(twipsToPixelsX(m_left), twipsToPixelsY(m_top), twipsToPixelsX(m_width), twipsToPixelsY(m_height));
}

bool Child::Visible() const { return m_widget && !m_widget->isHidden(); }
void Child::setVisible(bool v) { if (m_widget) m_widget->setVisible(v); }
// The child's own flag, not whether a disabled parent greys it.
bool Child::Enabled() const { return m_widget && !m_widget->testAttribute(Qt::WA_ForceDisabled); }
void Child::setEnabled(bool e) { if (m_widget) m_widget->setEnabled(e); }

void Child::setBackColor(quint32 c)
{
    m_back = c;
    applyColours();
}

void Child::setForeColor(quint32 c)
{
    m_fore = c;
    applyColours();
}

namespace {
// A form colours hundreds of widgets with the same few pairs: each palette is built once and
// shared (QPalette is implicitly shared). Only the roles set here are marked, so whatever else a
// widget inherits from its form still comes through.
QPalette colouredPalette(const QPalette &base, const QColor &back, const QColor &fore, int roles)
{
    struct Key {
        qint64 base;
        QRgb back, fore;
        int roles;
        bool operator<(const Key &o) const
        {
            return std::tie(base, back, fore, roles) < std::tie(o.base, o.back, o.fore, o.roles);
        }
    };
    static std::map<Key, QPalette> built;
    const Key key{base.cacheKey(), back.rgba(), fore.rgba(), roles};
    if (const auto it = built.find(key); it != built.end())
        return it->second;
    if (built.size() > 64)
        built.clear(); // palettes of a theme gone by
    QPalette p = base;
    p.setResolveMask(0);
    for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const ColourRolePair &pair : colourRolePairs) {
            if (!(roles & pair.bit))
                continue;
            p.setColor(group, pair.back, back);
            if (group != QPalette::Disabled)
                p.setColor(group, pair.fore, fore);
        }
    }
    return built.emplace(key, p).first->second;
}
} // namespace

void Child::applyColours()
{
    if (!m_widget)
        return;
    const int roles = colourRoles();
    const QPalette &now = m_widget->palette();
    if (roles & SystemColoursByRole) {
        const QPalette::ColorRole back = systemColourRole(m_back), fore = systemColourRole(m_fore);
        const bool byRole = back != QPalette::NoRole && fore != QPalette::NoRole;
        // Each role change re-sends the widget a palette change, which comes back here.
        if (m_widget->backgroundRole() != (byRole ? back : QPalette::Window))
            m_widget->setBackgroundRole(byRole ? back : QPalette::Window);
        if (m_widget->foregroundRole() != (byRole ? fore : QPalette::WindowText))
            m_widget->setForegroundRole(byRole ? fore : QPalette::WindowText);
        if (byRole) {
            if (m_widget->testAttribute(Qt::WA_SetPalette) && now.cacheKey() == m_ourPalette)
                m_widget->setPalette(QPalette());
            return;
        }
    }
    // System colours are the form's where its host gave it a palette, as a caption's are.
    const QWidget *parent = m_widget->parentWidget();
    const QPalette base = parent && !parent->palette().isCopyOf(QApplication::palette(parent)) ? parent->palette()
                                                                                              : QApplication::palette(m_widget);
    const QColor back = toQColor(m_back, base), fore = toQColor(m_fore, base);
    // setPalette re-polishes the widget and gives it a palette of its own; skip it when the widget
    // already shows these colours.
    const bool shown = std::all_of(std::begin(colourRolePairs), std::end(colourRolePairs), [&](const auto &pair) {
        return !(roles & pair.bit)
                || (now.color(QPalette::Active, pair.back) == back && now.color(QPalette::Active, pair.fore) == fore);
    });
    if (shown)
        return;
    const QPalette ours = colouredPalette(base, back, fore, roles);
    if (m_widget->testAttribute(Qt::WA_SetPalette) && now.cacheKey() != m_ourPalette) {
        // A palette someone else gave the widget keeps its other roles.
        QPalette p = now;
        for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            for (const ColourRolePair &pair : colourRolePairs)
                for (auto role : {pair.back, pair.fore})
                    if (ours.isBrushSet(group, role))
                        p.setBrush(group, role, ours.brush(group, role));
        m_widget->setPalette(p);
        return;
    }
    m_widget->setPalette(ours);
    m_ourPalette = m_widget->palette().cacheKey();
}

QString Child::ToolTipText() const { return m_widget ? m_widget->toolTip() : QString(); }
void Child::setToolTipText(const QString &t) { if (m_widget) m_widget->setToolTip(t); }

QString Child::FontName() const { return m_widget ? m_widget->font().family() : QString(); }
double Child::FontSize() const { return m_widget ? m_widget->font().pointSizeF() : 0; }
bool Child::FontBold() const { return m_widget && m_widget->font().bold(); }

void Child::setFontName(const QString &name)
{
    if (!m_widget || name.isEmpty())
        return;
    QFont f = m_widget->font();
    if (f.family() == name)
        return; // a font set again re-lays out the widget
    f.setFamily(name);
    m_widget->setFont(f);
}

void Child::setFontSize(double points)
{
    if (!m_widget || points <= 0)
        return;
    QFont f = m_widget->font();
    if (f.pointSizeF() == points)
        return;
    f.setPointSizeF(points);
    m_widget->setFont(f);
}

void Child::setFontBold(bool bold)
{
    if (!m_widget)
        return;
    QFont f = m_widget->font();
    if (f.bold() == bold)
        return;
    f.setBold(bold);
    m_widget->setFont(f);
}

void Child::Refresh() { if (m_widget) m_widget->repaint(); }

void Child::SetFocus()
{
    if (!m_widget)
        return;
    m_widget->activateWindow();
    m_widget->setFocus(Qt::OtherFocusReason);
}

bool Child::arrivedByTab() const
{
    return m_focusReason == Qt::TabFocusReason || m_focusReason == Qt::BacktabFocusReason;
}

void Child::typeCharacter(int code, const QKeyEvent *original)
{
    const char32_t ucs = char32_t(code);
    const QString text = QString::fromUcs4(&ucs, 1);
    int key = original->key();
    if (code < 0x10000 && (QChar(code).isLetterOrNumber() || QChar(code).isPunct() || QChar(code).isSymbol() || code == ' '))
        key = QChar(code).toUpper().unicode();
    QKeyEvent retyped(QEvent::KeyPress, key, original->modifiers() & ~Qt::ControlModifier, text);
    m_retyping = true;
    QApplication::sendEvent(m_widget, &retyped);
    m_retyping = false;
}

bool Child::handleKey(QKeyEvent *e)
{
    if (m_retyping || e->key() == Qt::Key_Tab || e->key() == Qt::Key_Backtab)
        return false; // Tab belongs to the form's navigation
    int code = virtualKeyCode(e);
    if (code) {
        const Qt::KeyboardModifiers m = e->modifiers();
        const int shift = (m & Qt::ShiftModifier ? ShiftKey : 0) | (m & Qt::ControlModifier ? CtrlKey : 0)
                | (m & Qt::AltModifier ? AltKey : 0);
        Alive alive(this);
        if (!m_detached)
            m_owner->onChildKeyDown(this, code, shift);
        if (alive)
            emit KeyDown(code, shift);
        if (!alive || code == 0 || !m_widget)
            return true;
        if (eatsKey(code, shift))
            return true;
    }
    int ascii = keyAscii(e);
    if (ascii < 0)
        return false;
    const int typed = ascii;
    Alive alive(this);
    if (!m_detached)
        m_owner->onChildKeyPress(this, ascii);
    if (alive)
        emit KeyPress(ascii);
    if (!alive || ascii == 0 || !m_widget)
        return true;
    if (ascii == typed)
        return false;
    typeCharacter(ascii, e);
    return true;
}

bool Child::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_widget)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(static_cast<QKeyEvent *>(event));
    case QEvent::PaletteChange:
        // The form's palette changed: a colour the widget showed by inheriting it may be gone.
        applyColours();
        return false;
    case QEvent::FocusIn: {
        const auto *fe = static_cast<QFocusEvent *>(event);
        // The widget settles its own selection first, so our handlers have the last word.
        beforeWidgetFocusIn();
        static_cast<QObject *>(m_widget.data())->event(event);
        afterWidgetFocusIn(fe->reason());
        if (!m_logicalFocus) // else the window came back: the field never lost the focus
            gainLogicalFocus(fe->reason());
        return true;
    }
    case QEvent::FocusOut: {
        const auto *fe = static_cast<QFocusEvent *>(event);
        static_cast<QObject *>(m_widget.data())->event(event);
        if (fe->reason() != Qt::ActiveWindowFocusReason && fe->reason() != Qt::PopupFocusReason)
            loseLogicalFocus();
        return true;
    }
    case QEvent::MouseButtonPress: {
        const auto *me = static_cast<QMouseEvent *>(event);
        const Qt::KeyboardModifiers m = me->modifiers();
        const int shift = (m & Qt::ShiftModifier ? ShiftKey : 0) | (m & Qt::ControlModifier ? CtrlKey : 0)
                | (m & Qt::AltModifier ? AltKey : 0);
        const int button = me->button() == Qt::LeftButton ? 1 : me->button() == Qt::RightButton ? 2 : 4;
        m_pressedInside = true;
        const double x = me->position().x() * twipsPerPixelX(), y = me->position().y() * twipsPerPixelY();
        Alive alive(this);
        if (!m_detached)
            m_owner->onChildMouseDown(this, button, shift, x, y);
        if (alive)
            emit MouseDown(button, shift, x, y);
        return !alive; // a deleted widget takes no press
    }
    case QEvent::MouseButtonRelease: {
        const auto *me = static_cast<QMouseEvent *>(event);
        if (m_pressedInside && me->button() == Qt::LeftButton && m_widget->rect().contains(me->position().toPoint())) {
            m_pressedInside = false;
            Alive alive(this);
            // Let the widget finish the click before the handler sees it.
            static_cast<QObject *>(m_widget.data())->event(event);
            if (alive)
                raiseClick();
            return true;
        }
        m_pressedInside = false;
        return false;
    }
    default:
        return false;
    }
}

} // namespace kel
