#include "forms/checkbox.h"

#include "forms/units.h"

#include <QCheckBox>
#include <QEvent>
#include <QKeyEvent>

namespace kel {

namespace {

// The user toggles between checked and unchecked only; grey is set by code.
class ClassicCheckBox : public QCheckBox
{
public:
    ClassicCheckBox() { setTristate(true); }

protected:
    void nextCheckState() override { setCheckState(checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked); }
};

bool isInput(const QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: case QEvent::MouseButtonRelease: case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: case QEvent::Shortcut: case QEvent::ShortcutOverride:
        return true;
    case QEvent::KeyPress: case QEvent::KeyRelease: {
        const int key = static_cast<const QKeyEvent *>(event)->key();
        return key != Qt::Key_Tab && key != Qt::Key_Backtab;
    }
    default:
        return false;
    }
}

} // namespace

CheckBox::CheckBox(UserControl *owner, const QString &objectName)
    : Child(new ClassicCheckBox, owner, objectName), m_box(static_cast<QCheckBox *>(widget())),
      m_focusPolicy(m_box->focusPolicy())
{
    connect(m_box, &QCheckBox::stateChanged, this, &Child::Click);
}

int CheckBox::Value() const
{
    switch (m_box->checkState()) {
    case Qt::Checked: return 1;
    case Qt::PartiallyChecked: return 2;
    default: return 0;
    }
}

void CheckBox::setValue(int value)
{
    static const Qt::CheckState states[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
    if (value >= 0 && value <= 2)
        m_box->setCheckState(states[value]);
}

QString CheckBox::Caption() const { return m_box->text(); }
void CheckBox::setCaption(const QString &caption) { m_box->setText(caption); }

void CheckBox::setAcceptsInput(bool accepts)
{
    if (accepts == m_acceptsInput)
        return;
    if (!accepts && m_box->hasFocus())
        sendTabKey();
    m_acceptsInput = accepts;
    m_box->setFocusPolicy(accepts ? m_focusPolicy : Qt::NoFocus);
    if (!accepts && m_box->hasFocus())
        m_box->clearFocus(); // nowhere else to go
}

double CheckBox::PreferredHeight() const { return m_box->sizeHint().height() * twipsPerPixelY(); }

bool CheckBox::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_box && isInput(event)) {
        if (!m_acceptsInput)
            return true;
        // The state change raises Click; a release must not raise it twice.
        if (event->type() == QEvent::MouseButtonRelease)
            return false;
    }
    return Child::eventFilter(watched, event);
}

} // namespace kel
