#pragma once
// The drop-down combo box: an edit field over a list of items. Items are plain text in list order
// (never sorted, duplicates kept). Qt's own completion and insertion are off: what the user types
// stays as typed unless the owner completes it.
#include "child.h"
#include "../platform/kelexport.h"

#include <QStringList>
#include <memory>

class QComboBox;
class QLineEdit;

class QAbstractItemView;

namespace kel {

class ComboItemModel;

// Case-insensitive prefix look-up over a list, built once and answered in logarithmic time
// without allocating.
class KEL_EXPORT PrefixIndex
{
public:
    void build(const QStringList &items);
    void clear();
    bool isBuilt() const { return m_built; }
    /// The first item in list order that begins with `prefix` regardless of case, or -1.
    int find(QStringView prefix) const;

private:
    QStringView entry(size_t i) const { return QStringView(m_pool.data() + m_start[i], m_start[i + 1] - m_start[i]); }

    bool m_built = false;
    std::vector<char16_t> m_pool;  // the case-folded items one after another, in sorted order
    std::vector<qsizetype> m_start; // where each sorted entry starts in the pool, and the end
    std::vector<quint64> m_key;      // each sorted entry's first four code units, packed, for a compact search
    std::vector<std::vector<int>> m_first; // m_first[k][i]: lowest list index in sorted [i, i + 2^k)
};

class KEL_EXPORT ComboBox : public EditChild
{
    Q_OBJECT
public:
    ComboBox(UserControl *owner, const QString &objectName);
    ~ComboBox() override;

    QComboBox *comboBox() const;

    /// The edit field's text; setting it selects no item and never cuts the text.
    QString Text() const override;
    void setText(const QString &text) override;
    int SelStart() const override;
    void setSelStart(int start) override;
    int SelLength() const override;
    void setSelLength(int length) override;
    QString SelText() const override;
    void setSelText(const QString &text) override;
    /// Read-only field and list; still takes the focus.
    bool Locked() const override { return m_locked; }
    void setLocked(bool locked) override;

    /// Number of items.
    int ListCount() const { return int(m_items.size()); }
    /// Item i (0-based), or "" out of range.
    QString List(int i) const { return i >= 0 && i < m_items.size() ? m_items.at(i) : QString(); }
    const QStringList &items() const { return m_items; }
    /// The selected item (0-based), -1 when none or when the text was edited away from it.
    int ListIndex() const { return m_listIndex; }
    /// Selects item i and shows its text; -1 (or out of range) selects none and keeps the text.
    void setListIndex(int i);

    /// Appends an item.
    void AddItem(const QString &item);
    /// Replaces every item at once.
    void setItems(QStringList items);
    /// Removes every item and empties the field.
    void ResetContent();
    /// Off: item changes are gathered and shown when drawing is turned on again.
    void setRedraw(bool on);
    /// The first item in list order beginning with `prefix` regardless of case, or -1.
    int FindString(QStringView prefix) const;

    /// Most characters the user may type or paste; 0 for no limit. Text set by code is never cut.
    int MaxLength() const { return m_maxLength; }
    void setMaxLength(int length);
    /// Width of the dropped list in pixels; it is never narrower than the field.
    int DroppedWidth() const { return m_droppedWidth; }
    void setDroppedWidth(int pixels);
    /// The dropped list's view, built on first need (most combos on a form are never opened).
    QAbstractItemView *listView();
    /// Opens or closes the list.
    void ShowDropDown(bool show);
    bool DroppedDown() const;
    /// With the extended interface, Down opens the list instead of stepping through it.
    bool ExtendedUI() const { return m_extendedUI; }
    void setExtendedUI(bool on) { m_extendedUI = on; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool eatsKey(int keyCode, int shift) override;
    // A field left while its list is open (the focus moved by code) closes the list.
    void focusLeft() override { ShowDropDown(false); }

private:
    // Whether w lies in the dropped list's window.
    bool inList(const QWidget *w) const;
    void flush();
    void followText(const QString &text);
    void picked(int index);

    QComboBox *m_combo;
    bool m_viewBuilt = false;
    QLineEdit *m_edit;
    ComboItemModel *m_model;
    QStringList m_items;
    mutable PrefixIndex m_index;
    int m_listIndex = -1;
    int m_quiet = 0;           // our own changes to the widget: no notifications
    bool m_redraw = true;
    bool m_dirty = false;      // items changed while drawing was off
    bool m_locked = false;
    bool m_extendedUI = false;
    bool m_settingByCode = false;
    int m_maxLength = 0;
    int m_droppedWidth = 0;
};

} // namespace kel
