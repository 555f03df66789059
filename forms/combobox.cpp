#include "forms/combobox.h"

#include "forms/lengthvalidator.h"
#include "forms/panelcache.h"

#include <QAbstractListModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QValidator>
#include <QVarLengthArray>

#include <algorithm>
#include <bit>
#include <cstring>

namespace kel {

namespace {

// Folds as QString::toCaseFolded does, into a buffer that usually stays on the stack.
template<class Out>
void fold(QStringView text, Out &out)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            const char32_t folded = QChar::toCaseFolded(QChar::surrogateToUcs4(c, text[i + 1]));
            out.push_back(QChar::highSurrogate(folded));
            out.push_back(QChar::lowSurrogate(folded));
            ++i;
        } else {
            out.push_back(c.toCaseFolded().unicode());
        }
    }
}

// Code-unit order, as QString compares.
inline bool less(QStringView a, QStringView b)
{
    const qsizetype n = qMin(a.size(), b.size());
    const char16_t *x = a.utf16(), *y = b.utf16();
    for (qsizetype i = 0; i < n; ++i)
        if (x[i] != y[i])
            return x[i] < y[i];
    return a.size() < b.size();
}

inline bool begins(QStringView s, QStringView prefix)
{
    return s.size() >= prefix.size() && std::memcmp(s.utf16(), prefix.utf16(), size_t(prefix.size()) * 2) == 0;
}

// The first position in [a, b) where `holds` turns false (it holds for a prefix of the range).
template<class Pred>
size_t firstFailing(size_t a, size_t b, Pred holds)
{
    while (a < b) {
        const size_t mid = a + (b - a) / 2;
        if (holds(mid))
            a = mid + 1;
        else
            b = mid;
    }
    return a;
}

// The first four code units, high to low; shorter texts pad with 0, so order is kept.
inline quint64 packed(QStringView s)
{
    quint64 k = 0;
    for (qsizetype i = 0; i < 4; ++i)
        k = (k << 16) | (i < s.size() ? s.utf16()[i] : 0);
    return k;
}

} // namespace

void PrefixIndex::clear()
{
    m_built = false;
    m_pool.clear();
    m_start.clear();
    m_key.clear();
    m_first.clear();
}

void PrefixIndex::build(const QStringList &items)
{
    const int n = int(items.size());
    std::vector<char16_t> pool;
    std::vector<qsizetype> start;
    start.reserve(n + 1);
    for (const QString &item : items) {
        start.push_back(qsizetype(pool.size()));
        fold(item, pool);
    }
    start.push_back(qsizetype(pool.size()));
    auto folded = [&](int i) { return QStringView(pool.data() + start[i], start[i + 1] - start[i]); };
    std::vector<int> order(n);
    for (int i = 0; i < n; ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return less(folded(a), folded(b)); });

    m_pool.clear();
    m_pool.reserve(pool.size());
    m_start.clear();
    m_start.reserve(n + 1);
    for (int i : order) {
        m_start.push_back(qsizetype(m_pool.size()));
        const QStringView f = folded(i);
        m_pool.insert(m_pool.end(), f.utf16(), f.utf16() + f.size());
    }
    m_start.push_back(qsizetype(m_pool.size()));
    m_key.resize(n);
    for (int i = 0; i < n; ++i)
        m_key[i] = packed(entry(i));
    // Sparse table: the lowest list index over any run of sorted entries in two look-ups.
    m_first.assign(1, std::move(order));
    for (int k = 1; (1 << k) <= n; ++k) {
        const std::vector<int> &prev = m_first[k - 1];
        std::vector<int> level(n - (1 << k) + 1);
        for (size_t i = 0; i < level.size(); ++i)
            level[i] = std::min(prev[i], prev[i + (1 << (k - 1))]);
        m_first.push_back(std::move(level));
    }
    m_built = true;
}

int PrefixIndex::find(QStringView prefix) const
{
    const size_t n = m_start.empty() ? 0 : m_start.size() - 1;
    if (n == 0)
        return -1;
    QVarLengthArray<char16_t, 64> buffer;
    fold(prefix, buffer);
    const QStringView p(buffer.constData(), buffer.size());
    // Entries beginning with p form one run in sorted order, [lo, hi): first narrowed by the
    // packed keys alone, then, for a longer p, by the texts within that run.
    const qsizetype head = qMin<qsizetype>(p.size(), 4);
    const quint64 low = packed(p.left(head));
    const quint64 high = head == 0 ? ~quint64(0) : low | ((quint64(1) << (16 * (4 - head))) - 1);
    size_t lo = size_t(std::lower_bound(m_key.begin(), m_key.end(), low) - m_key.begin());
    size_t hi = size_t(std::upper_bound(m_key.begin() + lo, m_key.end(), high) - m_key.begin());
    if (p.size() > 4 && lo < hi) {
        lo = firstFailing(lo, hi, [&](size_t i) { return less(entry(i), p); });
        hi = firstFailing(lo, hi, [&](size_t i) { return begins(entry(i), p); });
    }
    if (lo == hi)
        return -1;
    const size_t length = hi - lo;
    const int k = std::bit_width(length) - 1;
    return std::min(m_first[k][lo], m_first[k][hi - (size_t(1) << k)]);
}

// The items as the list view sees them; no copy, no per-item objects.
class ComboItemModel : public QAbstractListModel
{
public:
    ComboItemModel(const QStringList *items, QObject *parent) : QAbstractListModel(parent), m_items(items) {}
    int rowCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : int(m_items->size()); }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid() || index.row() >= m_items->size() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return {};
        return m_items->at(index.row());
    }
    void beginReset() { beginResetModel(); }
    void endReset() { endResetModel(); }
    void beginAppend(int row) { beginInsertRows({}, row, row); }
    void endAppend() { endInsertRows(); }

private:
    const QStringList *m_items;
};


namespace {
// Builds its list view when the list first drops down: most combos on a form are never opened.
class LazyListCombo : public QComboBox
{
public:
    explicit LazyListCombo(ComboBox *owner) : m_owner(owner) {}
    void showPopup() override
    {
        m_owner->listView();
        QComboBox::showPopup();
    }

private:
    ComboBox *m_owner;
};
} // namespace

QAbstractItemView *ComboBox::listView()
{
    if (!m_viewBuilt) {
        m_viewBuilt = true;
        auto *view = new QListView;
        view->setUniformItemSizes(true);
        view->setLayoutMode(QListView::SinglePass);
        m_combo->setView(view);
        view->setMinimumWidth(m_droppedWidth);
    }
    return m_combo->view();
}

ComboBox::ComboBox(UserControl *owner, const QString &objectName)
    : EditChild(new LazyListCombo(this), owner, objectName)
{
    m_combo = static_cast<QComboBox *>(widget());
    // The model goes in before the list is built for the editing, so no view ever holds another.
    m_model = new ComboItemModel(&m_items, this);
    m_combo->setModel(m_model);
    m_combo->setCurrentIndex(-1);
    // setEditable(true) would build a completer over the model only for it to be dropped below; a
    // line edit that comes with one gets none. Its palette is set as setEditable sets it.
    m_edit = new QLineEdit(m_combo);
    m_edit->setCompleter(new QCompleter(m_edit)); // deleted by setCompleter(nullptr)
    m_edit->setPalette(m_combo->palette());
    m_combo->setLineEdit(m_edit);
    m_combo->setEditable(true);
    useCachedPanel(m_combo);
    m_combo->setCompleter(nullptr);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setDuplicatesEnabled(true);
    // Neither the size hint nor the list's width may be measured over thousands of items.
    m_combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_combo->setMinimumContentsLength(1);
    m_combo->setMaxVisibleItems(12);
    m_edit->setMaxLength(std::numeric_limits<int>::max());
    connect(m_edit, &QLineEdit::textChanged, this, &ComboBox::followText);
    // Only edits raise Change; a pick from the list raises Click.
    connect(m_edit, &QLineEdit::textEdited, this, [this](const QString &text) {
        // textEdited comes before textChanged: a handler must not see the item of the old text.
        followText(text);
        if (!m_quiet)
            raiseChange();
    });
    connect(m_combo, qOverload<int>(&QComboBox::activated), this, &ComboBox::picked);
    applyColours();
}

ComboBox::~ComboBox() = default;

QComboBox *ComboBox::comboBox() const { return m_combo; }

QString ComboBox::Text() const { return m_edit->text(); }

void ComboBox::setText(const QString &text)
{
    m_listIndex = -1;
    m_settingByCode = true;
    ++m_quiet;
    m_combo->setCurrentIndex(-1); // (empties the field)
    --m_quiet;
    m_edit->setText(text);
    m_settingByCode = false;
    m_edit->setCursorPosition(0);
}

int ComboBox::SelStart() const
{
    return m_edit->hasSelectedText() ? m_edit->selectionStart() : m_edit->cursorPosition();
}

int ComboBox::SelLength() const { return m_edit->selectionLength(); }

QString ComboBox::SelText() const { return m_edit->selectedText(); }

void ComboBox::setSelStart(int start)
{
    m_edit->setCursorPosition(qBound(0, start, int(m_edit->text().size())));
    m_edit->deselect();
}

void ComboBox::setSelLength(int length)
{
    const int start = SelStart();
    length = qBound(0, length, int(m_edit->text().size()) - start);
    if (length == 0) {
        m_edit->setCursorPosition(start);
        m_edit->deselect();
    } else {
        m_edit->setSelection(start, length);
    }
}

void ComboBox::setSelText(const QString &text)
{
    m_settingByCode = true;
    m_edit->insert(text);
    m_settingByCode = false;
}

void ComboBox::setLocked(bool locked)
{
    m_locked = locked;
    m_edit->setReadOnly(locked);
    if (locked)
        ShowDropDown(false);
}

void ComboBox::setListIndex(int i)
{
    if (i < 0 || i >= m_items.size()) {
        m_listIndex = -1;
        return;
    }
    flush();
    m_settingByCode = true;
    m_combo->setCurrentIndex(i);
    m_edit->setText(m_items.at(i)); // the combo leaves an edited text alone when i is current
    m_settingByCode = false;
    m_listIndex = i;
}

void ComboBox::AddItem(const QString &item)
{
    m_index.clear();
    if (!m_redraw || m_dirty) {
        m_items.append(item);
        m_dirty = true;
        return;
    }
    const int row = int(m_items.size());
    m_model->beginAppend(row);
    m_items.append(item);
    m_model->endAppend();
}

void ComboBox::setItems(QStringList items)
{
    m_index.clear();
    m_items = std::move(items);
    m_dirty = true;
    if (m_redraw)
        flush();
}

void ComboBox::ResetContent()
{
    m_index.clear();
    m_items.clear();
    m_dirty = true;
    m_listIndex = -1;
    if (m_redraw)
        flush();
    setText(QString());
}

void ComboBox::setRedraw(bool on)
{
    m_redraw = on;
    m_combo->setUpdatesEnabled(on);
    if (on)
        flush();
}

void ComboBox::flush()
{
    if (!m_dirty)
        return;
    m_dirty = false;
    // A reset makes the combo select its first item; the field keeps its own text.
    const QString text = m_edit->text();
    const int cursor = m_edit->cursorPosition();
    ++m_quiet;
    m_settingByCode = true;
    m_model->beginReset();
    m_model->endReset();
    m_combo->setCurrentIndex(-1);
    m_edit->setText(text);
    m_edit->setCursorPosition(cursor);
    m_settingByCode = false;
    --m_quiet;
    if (m_listIndex >= m_items.size())
        m_listIndex = -1;
}

int ComboBox::FindString(QStringView prefix) const
{
    if (!m_index.isBuilt())
        m_index.build(m_items);
    return m_index.find(prefix);
}

void ComboBox::setMaxLength(int length)
{
    m_maxLength = qMax(0, length);
    LengthValidator::limit(m_edit, &m_maxLength, &m_settingByCode);
}

void ComboBox::setDroppedWidth(int pixels)
{
    m_droppedWidth = qMax(0, pixels);
    if (m_viewBuilt)
        m_combo->view()->setMinimumWidth(m_droppedWidth);
}

void ComboBox::ShowDropDown(bool show)
{
    if (show == DroppedDown())
        return;
    if (show) {
        flush();
        m_combo->showPopup();
    } else {
        m_combo->hidePopup();
    }
}

bool ComboBox::inList(const QWidget *w) const
{
    return w && m_viewBuilt && m_combo->view()->window() != m_combo->window() && m_combo->view()->window()->isAncestorOf(w);
}

bool ComboBox::DroppedDown() const
{
    if (!m_viewBuilt)
        return false; // never dropped down
    const QWidget *popup = m_combo->view()->window();
    return popup != m_combo->window() && popup->isVisible();
}

void ComboBox::followText(const QString &text)
{
    const int current = m_combo->currentIndex();
    if (current >= 0 && current < m_items.size() && m_items.at(current) == text)
        m_listIndex = current;
    else if (m_listIndex >= m_items.size() || (m_listIndex >= 0 && m_items.at(m_listIndex) != text))
        m_listIndex = -1;
}

void ComboBox::picked(int index)
{
    if (m_quiet || index < 0 || index >= m_items.size())
        return;
    m_listIndex = index;
    if (m_edit->text() != m_items.at(index)) {
        m_settingByCode = true;
        m_edit->setText(m_items.at(index));
        m_settingByCode = false;
    }
    m_edit->selectAll();
    raiseClick();
}

bool ComboBox::eatsKey(int keyCode, int shift)
{
    const bool opens = keyCode == 115 || (keyCode == 40 && (m_extendedUI || (shift & AltKey)));
    const bool steps = keyCode == 38 || keyCode == 40 || keyCode == 33 || keyCode == 34;
    if (opens) {
        if (!m_locked)
            ShowDropDown(!DroppedDown());
        return true;
    }
    return steps && m_locked;
}

bool ComboBox::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusOut:
        // Into the dropped list: as far as the owner knows, the field keeps the focus.
        if (watched == m_combo && inList(QApplication::focusWidget())) {
            static_cast<QObject *>(m_combo)->event(event);
            return true;
        }
        break;
    case QEvent::Wheel:
        // Scrolling the form must not change the field.
        return watched == m_combo && !DroppedDown();
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (watched == m_combo && m_locked)
            return true;
        break;
    case QEvent::MouseButtonRelease:
        // A click in the field is no pick from the list: Click is raised by picks only.
        if (watched == m_combo)
            return false;
        break;
    default:
        break;
    }
    return Child::eventFilter(watched, event);
}

} // namespace kel
