// What a screen reader makes of an entry field: the editing widget carries the caption as its
// name, what it shows as its value (numbers also as a number), "required" for a mandatory field,
// and the spinner's steps as its own actions; the control lists only what is on screen.
#include "common/fieldaccessible.h"

#include "common/fieldcontrol.h"
#include "common/spinfield.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>

namespace kel {

class AccessibleField : public QAccessibleWidget,
                        public QAccessibleValueInterface,
                        public QAccessibleTextInterface
{
public:
    // Made as soon as anything asks, possibly while the control is still being built: every
    // answer is worked out when asked.
    AccessibleField(QWidget *w, FieldControl *control) : QAccessibleWidget(w), m_control(control) {}

    // A multi-line box is one text; its viewport is no object of its own.
    int childCount() const override { return plainEdit() ? 0 : QAccessibleWidget::childCount(); }
    QAccessibleInterface *child(int index) const override { return plainEdit() ? nullptr : QAccessibleWidget::child(index); }

    QAccessible::Role role() const override
    {
        if (qobject_cast<const QComboBox *>(widget()))
            return QAccessible::ComboBox;
        if (widget()->parentWidget() != m_control)
            return QAccessible::EditableText; // a combo box's line
        if (const auto *spin = qobject_cast<const SpinField *>(m_control.data()); spin && spin->UpDown())
            return QAccessible::SpinBox;
        return QAccessible::EditableText;
    }

    void *interface_cast(QAccessible::InterfaceType t) override
    {
        if (t == QAccessible::ValueInterface && m_control && m_control->accessibleValue().isValid())
            return static_cast<QAccessibleValueInterface *>(this);
        if (t == QAccessible::TextInterface && (lineEdit() || plainEdit()))
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(t);
    }

    QString text(QAccessible::Text t) const override
    {
        if (!m_control)
            return QAccessibleWidget::text(t);
        switch (t) {
        case QAccessible::Name:
            if (const QString caption = QString(m_control->Caption()).remove(u'&'); !caption.isEmpty())
                return caption;
            break;
        case QAccessible::Value:
            return shownText();
        case QAccessible::Description: {
            // Qt has no "required" state: the description says it.
            QStringList parts;
            if (m_control->Mandatory())
                parts << QCoreApplication::translate("kel::FieldControl", "required");
            if (const QString tip = widget()->toolTip(); !tip.isEmpty())
                parts << tip;
            return parts.join(QStringLiteral(", "));
        }
        default:
            break;
        }
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        if (lineEdit() || plainEdit()) {
            s.editable = !locked();
            s.readOnly = locked();
            s.selectableText = true;
        }
        s.multiLine = plainEdit() != nullptr;
        if (const auto *combo = qobject_cast<const QComboBox *>(widget())) {
            s.hasPopup = true;
            s.expanded = combo->view()->isVisible();
        }
        return s;
    }

    // The spinner's buttons and the combo's list act through the field itself.
    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (spinner())
            names << increaseAction() << decreaseAction();
        if (qobject_cast<const QComboBox *>(widget()))
            names << showMenuAction();
        return names;
    }
    void doAction(const QString &name) override
    {
        if (QAccessibleInterface *spin = spinner(); spin && (name == increaseAction() || name == decreaseAction()))
            spin->actionInterface()->doAction(name);
        else if (auto *combo = qobject_cast<QComboBox *>(widget()); combo && name == showMenuAction())
            combo->view()->isVisible() ? combo->hidePopup() : combo->showPopup();
        else
            QAccessibleWidget::doAction(name);
    }
    QStringList keyBindingsForAction(const QString &name) const override
    {
        if (name == increaseAction())
            return {QKeySequence(Qt::Key_Up).toString(QKeySequence::NativeText)};
        if (name == decreaseAction())
            return {QKeySequence(Qt::Key_Down).toString(QKeySequence::NativeText)};
        return QAccessibleWidget::keyBindingsForAction(name);
    }

    // The value as a number, without committing what the user is typing.
    QVariant currentValue() const override { return m_control ? m_control->accessibleValue() : QVariant(); }
    void setCurrentValue(const QVariant &) override {} // edits go through the text, as typed ones do
    QVariant maximumValue() const override { return m_control ? m_control->property("MaxValue") : QVariant(); }
    QVariant minimumValue() const override { return m_control ? m_control->property("MinValue") : QVariant(); }
    QVariant minimumStepSize() const override { return m_control ? m_control->property("UpDownChange") : QVariant(); }

    // The text, selection and caret of the box the user types in.
    void selection(int index, int *start, int *end) const override
    {
        *start = *end = 0;
        if (index != 0)
            return;
        if (QLineEdit *l = lineEdit(); l && l->hasSelectedText()) {
            *start = l->selectionStart();
            *end = *start + int(l->selectedText().size());
        } else if (QPlainTextEdit *p = plainEdit()) {
            *start = p->textCursor().selectionStart();
            *end = p->textCursor().selectionEnd();
        }
    }
    int selectionCount() const override
    {
        if (QLineEdit *l = lineEdit())
            return l->hasSelectedText() ? 1 : 0;
        return plainEdit() && plainEdit()->textCursor().hasSelection() ? 1 : 0;
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { setSelection(0, cursorPosition(), cursorPosition()); }
    void setSelection(int, int start, int end) override
    {
        if (QLineEdit *l = lineEdit()) {
            l->setSelection(start, end - start);
        } else if (QPlainTextEdit *p = plainEdit()) {
            QTextCursor c = p->textCursor();
            c.setPosition(start);
            c.setPosition(end, QTextCursor::KeepAnchor);
            p->setTextCursor(c);
        }
    }
    int cursorPosition() const override
    {
        if (QLineEdit *l = lineEdit())
            return l->cursorPosition();
        return plainEdit() ? plainEdit()->textCursor().position() : 0;
    }
    void setCursorPosition(int position) override { setSelection(0, position, position); }
    QString text(int start, int end) const override { return shownText().mid(start, end - start); }
    int characterCount() const override { return int(shownText().size()); }
    QRect characterRect(int offset) const override
    {
        QRect r;
        if (QPlainTextEdit *p = plainEdit()) {
            QTextCursor c(p->document());
            c.setPosition(qBound(0, offset, p->document()->characterCount() - 1));
            r = p->cursorRect(c);
            r.moveTopLeft(p->viewport()->mapToGlobal(r.topLeft()));
        } else if (QLineEdit *l = lineEdit()) {
            const QFontMetrics fm(l->font());
            const QString t = l->displayText();
            const int x = fm.horizontalAdvance(t.left(offset));
            const QRect box = l->rect();
            r = QRect(l->mapToGlobal(QPoint(box.left() + 2 + x, box.top())),
                      QSize(fm.horizontalAdvance(t.mid(offset, 1)), box.height()));
        }
        return r;
    }
    int offsetAtPoint(const QPoint &point) const override
    {
        if (QLineEdit *l = lineEdit())
            return l->cursorPositionAt(l->mapFromGlobal(point));
        if (QPlainTextEdit *p = plainEdit())
            return p->cursorForPosition(p->viewport()->mapFromGlobal(point)).position();
        return -1;
    }
    void scrollToSubstring(int start, int) override { setCursorPosition(start); }
    QString attributes(int offset, int *start, int *end) const override
    {
        *start = *end = offset;
        return {};
    }

private:
    QLineEdit *lineEdit() const
    {
        if (auto *l = qobject_cast<QLineEdit *>(widget()))
            return l;
        const auto *combo = qobject_cast<QComboBox *>(widget());
        return combo ? combo->lineEdit() : nullptr;
    }
    QPlainTextEdit *plainEdit() const { return qobject_cast<QPlainTextEdit *>(widget()); }
    bool locked() const { return m_control && m_control->Locked(); }
    QString shownText() const
    {
        if (QLineEdit *l = lineEdit())
            return l->echoMode() == QLineEdit::Normal ? l->text() : l->displayText();
        if (QPlainTextEdit *p = plainEdit())
            return p->toPlainText();
        if (const auto *combo = qobject_cast<const QComboBox *>(widget()))
            return combo->currentText();
        return {};
    }
    QAccessibleInterface *spinner() const
    {
        const auto *spin = qobject_cast<const SpinField *>(m_control.data());
        if (!spin || !spin->UpDown() || spin->Locked())
            return nullptr;
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(spin->UpDown1->widget());
        return a && a->actionInterface() ? a : nullptr;
    }

    QPointer<FieldControl> m_control;
};

// The control itself: its caption and the field in use, nothing hidden and no spinner of its own.
class AccessibleFieldControl : public QAccessibleWidget
{
public:
    explicit AccessibleFieldControl(FieldControl *w) : QAccessibleWidget(w, QAccessible::Grouping) {}

    int childCount() const override { return int(shown().size()); }
    QAccessibleInterface *child(int index) const override
    {
        const QList<QWidget *> s = shown();
        return index >= 0 && index < s.size() ? QAccessible::queryAccessibleInterface(s[index]) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? int(shown().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
    }

private:
    QList<QWidget *> shown() const
    {
        auto *control = static_cast<FieldControl *>(widget());
        QList<QWidget *> out;
        if (!control->Label1->widget()->isHidden())
            out << control->Label1->widget();
        out << control->activeField()->widget();
        return out;
    }
};

namespace {

QAccessibleInterface *fieldFactory(const QString &key, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto *w = static_cast<QWidget *>(object);
    if (key == QLatin1String("kel::FieldControl"))
        return new AccessibleFieldControl(static_cast<FieldControl *>(w));
    // The key is the widget's most derived class: decide once, there.
    if (key != QLatin1String(object->metaObject()->className()))
        return nullptr;
    // A field's editing widget: a line, a multi-line box or a combo box right inside the control,
    // or the line a combo box types in.
    QWidget *parent = w->parentWidget();
    if (qobject_cast<QLineEdit *>(w) && qobject_cast<QComboBox *>(parent))
        parent = parent->parentWidget();
    auto *control = qobject_cast<FieldControl *>(parent);
    if (!control || !(qobject_cast<QLineEdit *>(w) || qobject_cast<QPlainTextEdit *>(w) || qobject_cast<QComboBox *>(w)))
        return nullptr;
    return new AccessibleField(w, control);
}

} // namespace

void installFieldAccessibility()
{
    static const bool installed = (QAccessible::installFactory(fieldFactory), true);
    Q_UNUSED(installed);
}

void notifyAccessible(QWidget *widget, QAccessible::Event what)
{
    if (!QAccessible::isActive() || !widget)
        return;
    QAccessibleEvent e(widget, what);
    QAccessible::updateAccessibility(&e);
}

} // namespace kel
