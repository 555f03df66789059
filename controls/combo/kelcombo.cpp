#include "controls/combo/kelcombo.h"

#include "common/baskelcontrols.h"
#include "common/windowhook.h"
#include "controls/combo/combolist.h"
#include "library/librarysettings.h"

#include <QPointer>
#include <cmath>

namespace kel {

namespace {

// Written under "DropDownWidth" but read under "DropdownWidth": a bag that matches names
// exactly gives the default back, and the list then drops at the field's width.
const std::vector<Persisted> &persistedWritten()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Caption"), QString(), QString()},
        {QStringLiteral("CaptionWidth"), qint16(0), qint16(0)},
        {QStringLiteral("DropDownWidth"), qint16(0), qint16(0)},
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("LimitToList"), true, true},
        {QStringLiteral("List"), QString(), QString()},
        {QStringLiteral("ListTag"), QString(), QString()},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("MaxLength"), qint16(0), qint16(0)},
        {QStringLiteral("SelectOnFocus"), false, false},
        {QStringLiteral("Text"), QString(), QString()},
    };
    return table;
}

const std::vector<Persisted> &persistedRead()
{
    static const std::vector<Persisted> table = [] {
        std::vector<Persisted> t = persistedWritten();
        t[2].name = QStringLiteral("DropdownWidth");
        return t;
    }();
    return table;
}

IKelRuntime &runtime()
{
    if (!librarySettings().Runtime)
        InitControls();
    return *librarySettings().Runtime;
}

} // namespace

KelCombo::KelCombo(QWidget *parent)
    : FieldControl(parent), Combo1(new ComboBox(this, QStringLiteral("Combo1")))
{
    setFocusProxy(Combo1->widget());
    SubclassWindow(Combo1->widget());
}

// The Qt notifications follow the events, unless a handler of theirs deleted the control.
void KelCombo::onChildChange(Child *)
{
    const QPointer<KelCombo> self(this);
    comboChange();
    if (self)
        notifyChanges();
}

void KelCombo::onChildClick(Child *)
{
    const QPointer<KelCombo> self(this);
    comboClick();
    if (self)
        notifyChanges();
}

void KelCombo::onChildGotFocus(Child *)
{
    selectOnEntry(Combo1);
    colourFocused();
}

void KelCombo::setDropDownWidth(qint32 twips)
{
    const double field = Combo1->Width();
    double apply = twips;
    qint32 store = twips;
    if (twips < 1 || twips > 8000) {
        apply = std::nearbyint(field);
        store = 0;
    } else if (twips == field) {
        store = 0;
    }
    if (store != m_dropDownWidth) {
        m_dropDownWidth = store;
        propertyChanged(QStringLiteral("DropDownWidth"));
    }
    // A fixed 15 twips a pixel, halves to even.
    Combo1->setDroppedWidth(int(std::nearbyint(apply / 15.0)));
}

void KelCombo::setLimitToList(bool limit)
{
    m_limitToList = limit;
    propertyChanged(QStringLiteral("LimitToList"));
    if (!limit) {
        if (m_refusedText && Combo1->Text().isEmpty())
            setText(*m_refusedText);
        return;
    }
    ++m_selectionDepth;
    if (const int i = findExact(Combo1->Text()); i >= 0)
        Combo1->setListIndex(i);
    if (Combo1->ListIndex() == -1)
        Combo1->setText(QString());
    --m_selectionDepth;
    notifyChanges();
}

QString KelCombo::List()
{
    IKelRuntime &rt = runtime();
    QString list;
    // Room for the plain items and their commas, and moved in, so that list-append grows one string.
    qsizetype plain = 0;
    for (const QString &item : Combo1->items())
        plain += item.size() + 1;
    list.reserve(plain);
    for (const QString &item : Combo1->items())
        list = rt.ListAppend(std::move(list), item);
    return list;
}

void KelCombo::setList(const QString &list)
{
    replaceItems(parseComboList(list));
}

void KelCombo::ListFromArray(QStringList &strArray)
{
    replaceItems(strArray.mid(0, ComboMaxItems));
}

void KelCombo::replaceItems(QStringList items)
{
    const QString kept = m_refusedText && Combo1->Text().isEmpty() ? *m_refusedText : Combo1->Text();
    ++m_selectionDepth;
    Combo1->setRedraw(false);
    Combo1->ResetContent();
    Combo1->setItems(std::move(items));
    Combo1->setRedraw(true);
    --m_selectionDepth;
    setText(kept);
    propertyChanged(QStringLiteral("List"));
}

qint16 KelCombo::ListIndex() const
{
    if (!m_limitToList)
        return -1;
    const int i = findExact(Combo1->Text());
    return qint16(i < 0 ? -1 : i + 1);
}

void KelCombo::setListIndex(qint16 index)
{
    if (index < 1 || index > Combo1->ListCount())
        return;
    ++m_selectionDepth;
    Combo1->setListIndex(index - 1);
    --m_selectionDepth;
    m_refusedText.reset();
    m_textOriginal = Combo1->Text();
    notifyChanges();
}

QString KelCombo::ListItem(qint16 Item) const
{
    // Without an argument the widget's 0-based index is taken as 1-based: the item before the
    // selected one. Hosts rely on it.
    const int item = Item == 0 ? Combo1->ListIndex() : Item;
    return item >= 1 && item <= Combo1->ListCount() ? Combo1->List(item - 1) : QString();
}

void KelCombo::setListTag(const QString &tags)
{
    m_listTag = tags;
    propertyChanged(QStringLiteral("ListTag"));
}

QString KelCombo::ListTagItem(qint16 Item) const
{
    const int item = Item == 0 ? Combo1->ListIndex() + 1 : Item;
    if (item < 1 || item > Combo1->ListCount())
        return {};
    IKelRuntime &rt = runtime();
    qint32 position = 0;
    for (int field = 1; field <= item; ++field) {
        QString value = rt.ReadField(m_listTag, position, 44);
        if (position < 0)
            break;
        if (field == item)
            return value;
    }
    return {};
}

void KelCombo::setMaxLength(qint16 length)
{
    if (length < 0)
        return;
    m_maxLength = length;
    propertyChanged(QStringLiteral("MaxLength"));
    Combo1->setMaxLength(length);
}

QString KelCombo::Text()
{
    if (m_typing)
        settleText();
    return Combo1->Text();
}

void KelCombo::setText(const QString &text)
{
    ++m_selectionDepth;
    m_typing = false;
    showText(text);
    --m_selectionDepth;
    m_textOriginal = Combo1->Text();
    // While a form loads, List or LimitToList may come after Text: a text refused for want of its
    // item is kept until the load is over. At run time a refused put is forgotten.
    if (m_textOriginal != text && loading())
        m_refusedText = text;
    else
        m_refusedText.reset();
    notifyChanges();
}

void KelCombo::notifyChanges()
{
    // The raw text: reading Text would settle what the user is typing.
    if (m_textWatch.moved(Combo1->Text()))
        emit TextChanged();
    if (m_indexWatch.moved(ListIndex()))
        emit ListIndexChanged();
}

void KelCombo::onLoaded() { m_refusedText.reset(); }

bool KelCombo::Valid() const
{
    if (Combo1->Locked() || !m_mandatory)
        return true;
    const QString t = Combo1->Text();
    qsizetype end = t.size();
    while (end > 0 && t[end - 1] == u' ')
        --end;
    return end > 0;
}

void KelCombo::showText(const QString &text)
{
    Combo1->setText(m_limitToList ? QString() : text);
    if (const int i = text.isEmpty() ? -1 : findExact(text); i >= 0)
        Combo1->setListIndex(i);
}

int KelCombo::findExact(const QString &text) const
{
    return int(Combo1->items().indexOf(text));
}

void KelCombo::selectTail(int start)
{
    Combo1->setSelStart(start);
    const int length = int(Combo1->Text().size()) - start + 1;
    if (length >= 1)
        Combo1->setSelLength(length);
}

bool KelCombo::raiseChangeEx()
{
    m_typing = false;
    m_refusedText.reset();
    bool handled = true;
    emit ChangeEx(handled);
    return handled;
}

void KelCombo::comboChange()
{
    if (m_selectionDepth > 0)
        return;
    if (m_typing) {
        const QString t = Combo1->Text();
        int s = Combo1->SelStart();
        Combo1->ShowDropDown(false);
        ++m_selectionDepth;
        m_typing = false;
        if (m_limitToList) {
            // No item begins with an empty text, so emptying the field is refused too.
            const int i = s > 0 ? Combo1->FindString(QStringView(t).left(s)) : -1;
            if (i >= 0) {
                Combo1->setListIndex(i);
            } else {
                // The reference comes back as it is, also one the host put that is no item.
                Combo1->setText(m_textOriginal);
                if (const int same = findExact(m_textOriginal); same >= 0 && !m_textOriginal.isEmpty())
                    Combo1->setListIndex(same);
                if (s > 0)
                    --s;
            }
            selectTail(s);
        } else if (const int i = t.isEmpty() ? -1 : Combo1->FindString(t); i >= 0) {
            Combo1->setListIndex(i);
            selectTail(s);
        }
        --m_selectionDepth;
    } else if (m_limitToList && Combo1->ListIndex() == -1 && !Combo1->Text().isEmpty()) {
        ++m_selectionDepth;
        Combo1->setText(QString());
        --m_selectionDepth;
    }
    if (Combo1->Text() == m_textOriginal)
        return;
    QPointer<KelCombo> self(this);
    if (!raiseChangeEx() || !self)
        return;
    emit Change();
    if (self && m_limitToList)
        m_textOriginal = Combo1->Text();
}

void KelCombo::comboClick()
{
    if (m_selectionDepth > 0 || Combo1->Text() == m_textOriginal)
        return;
    QPointer<KelCombo> self(this);
    if (!raiseChangeEx() || !self)
        return;
    emit Click();
    if (!self)
        return;
    emit Change();
    if (self)
        m_textOriginal = Combo1->Text();
}

void KelCombo::keyDown(int &keyCode)
{
    m_typing = true;
    if (keyCode == 46 && Combo1->SelLength() != 0 && !Combo1->Locked())
        Combo1->setSelText(QString());
}

void KelCombo::keyPress(int &keyAscii)
{
    m_typing = true; // keys without a key code (accented letters, say) type as well
    if (keyAscii == 13) {
        keyAscii = 0;
        if (const auto &rt = librarySettings().Runtime)
            rt->SendKey(9);
        else
            sendTabKey();
    } else if (keyAscii == 8 && !m_limitToList) {
        // The Backspace that follows takes the completed tail with the character before it.
        if (const int s = Combo1->SelStart(); s >= 1) {
            Combo1->setSelStart(s - 1);
            Combo1->setSelLength(int(Combo1->Text().size()));
        }
    }
}

void KelCombo::settleText()
{
    ++m_selectionDepth;
    m_typing = false;
    const QString t = Combo1->Text();
    if (!t.isEmpty())
        showText(t);
    else if (m_mandatory)
        showText(m_textOriginal); // a host may have put a TextOriginal that is no item
    --m_selectionDepth;
    notifyChanges();
}

FieldControl::LayoutRules KelCombo::layoutRules() const
{
    LayoutRules r;
    r.height = HeightRule::Exactly300;
    return r;
}

void KelCombo::onResize()
{
    if (m_loadingDepth != 0)
        return;
    layout();
    if (m_dropDownWidth == 0)
        setDropDownWidth(0);
    Combo1->setSelLength(0);
}

void KelCombo::onInitProperties()
{
    m_limitToList = true;
    m_mandatory = true;
    m_selectOnFocus = false;
    Combo1->setLocked(false);
    Label1->setCaption(objectName());
    Label1->setForeColor(0x8000000D);
    ++m_selectionDepth;
    Combo1->setListIndex(-1);
    Combo1->setText(QString());
    --m_selectionDepth;
    notifyChanges();
}

void KelCombo::onReadProperties(PropertyBag &bag)
{
    readPersisted(bag, persistedRead());
    onResize();
}

void KelCombo::onWriteProperties(PropertyBag &bag) { writePersisted(bag, persistedWritten()); }

void KelCombo::onEnterFocus()
{
    m_textOriginal = Combo1->Text();
    Combo1->setExtendedUI(true);
}

void KelCombo::onExitFocus()
{
    settleText();
    colourExited();
}

} // namespace kel
