#include "forms/combobox.h"

#include <QAbstractListModel>
#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QValidator>

#include <algorithm>
#include <bit>

namespace kel {

void PrefixIndex::clear()
{
    m_built = false;
    m_folded.clear();
    m_first.clear();
}

void PrefixIndex::build(const QStringList &items)
{
    const int n = int(items.size());
    std::vector<std::pair<QString, int>> sorted;
    sorted.reserve(n);
    for (int i = 0; i < n; ++i)
        sorted.emplace_back(items.at(i).toCaseFolded(), i);
    std::sort(sorted.begin(), sorted.end());
    m_folded.clear();
    m_folded.reserve(n);
    m_first.assign(1, std::vector<int>(n));
    for (int i = 0; i < n; ++i) {
        m_folded.push_back(std::move(sorted[i].first));
        m_first[0][i] = sorted[i].second;
    }
    // Sparse table: the lowest list index over any run of sorted entries in two look-ups.
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
    if (m_folded.empty())
        return -1;
    const QString folded = prefix.toString().toCaseFolded();
    const auto lo = std::lower_bound(m_folded.begin(), m_folded.end(), folded);
    const auto hi = std::partition_point(lo, m_folded.end(), [&](const QString &s) { return s.startsWith(folded); });
    if (lo == hi)
        return -1;
    const size_t a = size_t(lo - m_folded.begin()), length = size_t(hi - lo);
    const int k = std::bit_width(length) - 1;
    return std::min(m_first[k][a], m_first[k][a + length - (size_t(1) << k)]);
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

// Cuts what the user adds beyond the limit; a text already longer (set by code) stays.
class ComboLengthValidator : public QValidator
{
public:
    ComboLengthValidator(ComboBox *box, QObject *parent) : QValidator(parent), m_box(box) {}
    State validate(QString &input, int &pos) const override
    {
        const int max = m_box->m_maxLength;
        if (m_box->m_settingByCode || max <= 0 || input.size() <= max)
            return Acceptable;
        const int before = int(m_box->m_edit->text().size());
        const int limit = qMax(max, before);
        const int excess = int(input.size()) - limit;
        if (excess <= 0)
            return Acceptable;
        const int cut = qMin(excess, pos);
        input.remove(pos - cut, cut);
        pos -= cut;
        return input.size() <= limit ? Acceptable : Invalid;
    }

private:
    ComboBox *m_box;
};

ComboBox::ComboBox(UserControl *owner, const QString &objectName)
    : EditChild(new QComboBox, owner, objectName)
{
    m_combo = static_cast<QComboBox *>(widget());
    m_combo->setEditable(true);
    m_edit = m_combo->lineEdit();
    m_combo->setCompleter(nullptr);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setDuplicatesEnabled(true);
    // Neither the size hint nor the list's width may be measured over thousands of items.
    m_combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_combo->setMinimumContentsLength(1);
    m_combo->setMaxVisibleItems(12);
    auto *view = new QListView;
    view->setUniformItemSizes(true);
    view->setLayoutMode(QListView::SinglePass);
    m_combo->setView(view);
    m_model = new ComboItemModel(&m_items, this);
    m_combo->setModel(m_model);
    m_combo->setCurrentIndex(-1);
    m_edit->setMaxLength(std::numeric_limits<int>::max());
    m_edit->setValidator(new ComboLengthValidator(this, m_edit));
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, &ComboBox::followText);
    // Only edits raise Change; a pick from the list raises Click.
    connect(m_edit, &QLineEdit::textEdited, this, [this] {
        if (!m_quiet)
            emit Change();
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

void ComboBox::setMaxLength(int length) { m_maxLength = qMax(0, length); }

void ComboBox::setDroppedWidth(int pixels)
{
    m_droppedWidth = qMax(0, pixels);
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

bool ComboBox::DroppedDown() const
{
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
    emit Click();
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
    if (watched == m_edit)
        return false;
    return Child::eventFilter(watched, event);
}

} // namespace kel
