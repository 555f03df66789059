#pragma once
// A caption beside a drop-down combo box whose list is loaded from one string, with a parallel
// string of item tags, completion while typing and an optional limit to the list.
#include "../../common/fieldcontrol.h"
#include "../../forms/combobox.h"
#include "../../platform/kelexport.h"

#include <optional>

namespace kel {

class KEL_EXPORT KelCombo : public FieldControl
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed DESIGNABLE false)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved DESIGNABLE false)
    Q_PROPERTY(qint32 DropDownWidth READ DropDownWidth WRITE setDropDownWidth DESIGNABLE false)
    Q_PROPERTY(qint32 DropdownWidth READ DropDownWidth WRITE setDropdownWidth)
    Q_PROPERTY(qint32 hWnd READ hWnd DESIGNABLE false)
    Q_PROPERTY(bool LimitToList READ LimitToList WRITE setLimitToList)
    Q_PROPERTY(QString List READ List WRITE setList)
    Q_PROPERTY(qint32 ListCount READ ListCount DESIGNABLE false)
    Q_PROPERTY(qint16 ListIndex READ ListIndex WRITE setListIndex NOTIFY ListIndexChanged DESIGNABLE false)
    Q_PROPERTY(QString ListTag READ ListTag WRITE setListTag)
    Q_PROPERTY(int MaxLength READ MaxLength WRITE setMaxLength)
    Q_PROPERTY(QString Text READ Text WRITE setText NOTIFY TextChanged USER true)
    Q_PROPERTY(QString TextOriginal READ TextOriginal WRITE setTextOriginal DESIGNABLE false)
    Q_PROPERTY(QString TextSaved READ TextSaved WRITE setTextSaved DESIGNABLE false)
    Q_PROPERTY(bool Valid READ Valid DESIGNABLE false)

public:
    /// A new control, a child of parent; the container sets its properties next.
    explicit KelCombo(QWidget *parent = nullptr);

    /// The combo box, child widget "Combo1".
    ComboBox *const Combo1;

    /// The field's text differs from TextOriginal / TextSaved (exactly).
    bool Changed() const { return Combo1->Text() != m_textOriginal; }
    /// Whether Text differs from TextSaved.
    bool ChangedSaved() const { return Combo1->Text() != m_textSaved; }
    /// Width of the dropped list in twips; 0 when it follows the field (also after a value
    /// outside 1..8000 or one equal to the field's width).
    qint32 DropDownWidth() const { return m_dropDownWidth; }
    /// Sets DropDownWidth.
    void setDropDownWidth(qint32 twips);
    /// DropDownWidth under the name it is loaded by, which .ui files and uic code use.
    void setDropdownWidth(qint32 twips) { setDropDownWidth(twips); }
    /// Only items can stand in the field; typing completes from the list and refuses the rest.
    bool LimitToList() const { return m_limitToList; }
    /// Sets LimitToList.
    void setLimitToList(bool limit);
    /// The items as one string, joined by the run-time object so that putting it back gives
    /// the same items. Put replaces every item (at most 32,767) and keeps the field's text.
    QString List();
    /// Sets List.
    void setList(const QString &list);
    /// Replaces every item by the array's elements, taken as they are (at most 32,767).
    Q_INVOKABLE void ListFromArray(QStringList &strArray);
    /// The number of items in the list.
    qint32 ListCount() const { return Combo1->ListCount(); }
    /// 1-based position of the first item equal to the text (case-sensitive), or -1; always -1
    /// with LimitToList off. Put selects item n when 1 <= n <= ListCount and resets TextOriginal.
    qint16 ListIndex() const;
    /// Sets ListIndex.
    void setListIndex(qint16 index);
    /// Item `Item` (1-based); without it the item before the selected one. "" out of range.
    Q_INVOKABLE QString ListItem(qint16 Item = 0) const;
    /// The tag string, stored as set; its comma-separated fields pair with the items by position.
    QString ListTag() const { return m_listTag; }
    /// Sets ListTag.
    void setListTag(const QString &tags);
    /// The tag of item `Item` (1-based), of the selected item without it; "" when it has none.
    Q_INVOKABLE QString ListTagItem(qint16 Item = 0) const;
    /// Most characters the user may type; 0 for no limit. A negative value is ignored.
    qint16 MaxLength() const { return m_maxLength; }
    /// Sets MaxLength.
    void setMaxLength(qint16 length);
    /// Reading settles what the user typed first. Put shows `text` (emptied with LimitToList
    /// when it is no item), selects the first equal item and makes it TextOriginal; no event.
    QString Text();
    /// Sets Text.
    void setText(const QString &text);
    /// The reference for Changed.
    QString TextOriginal() const { return m_textOriginal; }
    /// Sets TextOriginal.
    void setTextOriginal(const QString &text) { m_textOriginal = text; }
    /// The reference for ChangedSaved.
    QString TextSaved() const { return m_textSaved; }
    /// Sets TextSaved.
    void setTextSaved(const QString &text) { m_textSaved = text; }
    /// False only for an unlocked mandatory field holding nothing but blanks.
    bool Valid() const;

signals:
    /// Raised before Click and Change for every accepted change; a handler that sets Handled
    /// to false stops them and keeps TextOriginal.
    void ChangeEx(bool &Handled);
    /// An item other than the one shown was picked from the list (after ChangeEx).
    void Click();
    /// The field's text changed by the user (after ChangeEx, and after Click for a pick).
    void Change();
    /// Text or ListIndex moved, typed, picked or set by code (Qt's notifications; the events
    /// above keep their own rules).
    void TextChanged();
    /// ListIndex moved, by the user or by code.
    void ListIndexChanged();

protected:
    std::vector<Child *> fields() const override { return {Combo1}; }
    Child *activeField() const override { return Combo1; }
    LayoutRules layoutRules() const override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onResize() override;
    void onEnterFocus() override;
    void onExitFocus() override;
    void onLoaded() override;
    // Enabled reaches the caption and the box; the control itself stays enabled.
    bool enabledPutReachesControl() const override { return false; }
    void onChildChange(Child *) override;
    void onChildClick(Child *) override;
    void onChildKeyDown(Child *, int &keyCode, int) override { keyDown(keyCode); }
    void onChildKeyPress(Child *, int &keyAscii) override { keyPress(keyAscii); }
    void onChildGotFocus(Child *) override;
    void onChildLostFocus(Child *) override { Combo1->setSelStart(0); }

private:
    void comboChange();
    void comboClick();
    void keyDown(int &keyCode);
    void keyPress(int &keyAscii);
    bool raiseChangeEx();
    void selectTail(int start);
    void settleText();
    // Within the selection depth: with LimitToList on only an equal item stands, else nothing.
    void showText(const QString &text);
    int findExact(const QString &text) const;
    void replaceItems(QStringList items);
    void notifyChanges();

    qint32 m_dropDownWidth = 0;
    qint16 m_maxLength = 0;
    qint16 m_selectionDepth = 0;
    bool m_limitToList = true;
    bool m_typing = false;
    QString m_listTag;
    QString m_textOriginal;
    QString m_textSaved;
    // A text put refused for want of its item, until the list or the limit lets it stand.
    std::optional<QString> m_refusedText;
    PropertyWatch m_textWatch;
    PropertyWatch m_indexWatch;
};

} // namespace kel
