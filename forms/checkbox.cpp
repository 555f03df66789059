#include "forms/checkbox.h"

#include "forms/units.h"

#include <QApplication>
#include <QCheckBox>
#include <QHash>
#include <QStyle>
#include <QEvent>
#include <QKeyEvent>

#include <unordered_map>
#include <utility>

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
    connect(m_box, &QCheckBox::stateChanged, this, [this] {
        if (m_restoring)
            return;
        // Input is refused by every route, also those that reach the box without an event
        // (an assistive technology's toggle action): the state goes back.
        if (!m_acceptsInput && !m_settingByCode) {
            m_restoring = true;
            setValue(m_state);
            m_restoring = false;
            return;
        }
        m_state = Value();
        raiseClick();
    });
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
    if (value < 0 || value > 2)
        return;
    const bool outer = std::exchange(m_settingByCode, true);
    m_box->setCheckState(states[value]);
    m_settingByCode = outer;
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

double CheckBox::PreferredHeight() const
{
    // The height of the hint depends on the style, the font and how many lines the caption has,
    // not on its words; measuring the text at every resize of every box on a form adds up. A
    // style sheet may size each box its own way, so then each is measured.
    if (!qApp->styleSheet().isEmpty() || m_box->style() != QApplication::style() || !m_box->icon().isNull())
        return m_box->sizeHint().height() * twipsPerPixelY();
    const QString text = m_box->text();
    // Keyed by the font itself: building its text key at every resize cost more than measuring.
    struct Key {
        QFont font;
        qsizetype lines;
        const QStyle *style;
        bool operator==(const Key &) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key &k, size_t seed = 0) const noexcept { return qHashMulti(seed, k.font, k.lines, k.style); }
    };
    static std::unordered_map<Key, int, KeyHash> measured;
    const Key key{m_box->font(), text.isEmpty() ? 0 : text.count(u'\n') + 1, m_box->style()};
    auto it = measured.find(key);
    if (it == measured.end()) {
        if (measured.size() > 256)
            measured.clear();
        it = measured.emplace(key, m_box->sizeHint().height()).first;
    }
    return it->second * twipsPerPixelY();
}

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
