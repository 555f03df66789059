#include "controls/text/keltext.h"

#include "library/librarysettings.h"

namespace kel {

static const std::vector<Persisted> &persisted()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Caption"), QString(), QString()},
        {QStringLiteral("CaptionWidth"), qint16(0), qint16(0)},
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("InsertMode"), true, true},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("MaxLength"), qint16(0), qint16(0)},
        {QStringLiteral("MultiLine"), false, false},
        {QStringLiteral("PasswordChar"), QString(), QString()},
        {QStringLiteral("SelectOnFocus"), false, false},
        // The raw text: saving must not trim the field.
        {QStringLiteral("Text"), QString(), QString(), QStringLiteral("TextRaw")},
    };
    return table;
}

KelText::KelText(QWidget *parent)
    : FieldControl(parent)
{
    setUpBox(0);
    setFocusProxy(m_box[0]->widget());
}

TextBox *KelText::Text1(int index)
{
    if (index < 0 || index > 1)
        return nullptr;
    if (!m_box[index])
        setUpBox(index);
    return m_box[index];
}

// The multi-line box is built when first needed (most fields never are multi-line) and then
// takes on what was set on both boxes so far.
void KelText::setUpBox(int i)
{
    auto *box = new TextBox(i ? TextBox::Kind::MultiLine : TextBox::Kind::SingleLine, this,
                            i ? QStringLiteral("Text1(1)") : QStringLiteral("Text1(0)"));
    m_box[i] = box;
    if (i == 0)
        return;
    box->setVisible(false);
    const TextBox *single = m_box[0];
    box->setLocked(single->Locked());
    box->setMaxLength(single->MaxLength());
    box->setPasswordChar(single->PasswordChar());
    box->setEnabled(single->Enabled());
    box->setBackColor(single->BackColor());
    box->setForeColor(single->ForeColor());
    box->setToolTipText(single->ToolTipText());
    if (single->widget()->testAttribute(Qt::WA_SetFont))
        box->widget()->setFont(single->widget()->font());
}

// Change goes last: its handler may delete the control.
void KelText::onChildChange(Child *)
{
    notifyText();
    emit Change();
}

void KelText::onChildKeyDown(Child *, int &keyCode, int)
{
    if (keyCode == 45)
        m_insertMode = !m_insertMode;
}

void KelText::onChildKeyPress(Child *box, int &keyAscii) { keyPress(box == m_box[1] ? 1 : 0, keyAscii); }

void KelText::onChildGotFocus(Child *box)
{
    selectOnEntry(static_cast<TextBox *>(box));
    colourFocused();
}

std::vector<Child *> KelText::fields() const
{
    if (!m_box[1])
        return {m_box[0]};
    return {m_box[0], m_box[1]};
}

void KelText::setMaxLength(qint16 length)
{
    if (length < 0)
        return;
    for (Child *f : fields())
        static_cast<TextBox *>(f)->setMaxLength(length);
    propertyChanged(QStringLiteral("MaxLength"));
}

void KelText::setMultiLine(bool multiLine)
{
    const QString text = Text();
    TextBox *old = activeBox();
    if (multiLine)
        Text1(1);
    m_fieldIndex = multiLine ? 1 : 0;
    // A multi-line field may grow in a layout; a single line keeps its height.
    setSizePolicy(QSizePolicy::Preferred, multiLine ? QSizePolicy::Preferred : QSizePolicy::Fixed);
    propertyChanged(QStringLiteral("MultiLine"));
    // The new box is shown and focused before the old one hides, so the focus stays here.
    activeBox()->setVisible(true);
    if (old != activeBox() && old->widget()->hasFocus())
        activeBox()->widget()->setFocus(Qt::OtherFocusReason);
    old->setVisible(old == activeBox());
    setFocusProxy(activeBox()->widget());
    setText(text);
    layout();
}

void KelText::setPasswordChar(const QString &c)
{
    m_box[0]->setPasswordChar(c.left(1));
    if (m_box[1])
        m_box[1]->setPasswordChar(m_box[0]->PasswordChar());
    propertyChanged(QStringLiteral("PasswordChar"));
}

QString KelText::Text()
{
    if (m_fieldIndex == 0)
        return m_box[0]->Text();
    if (m_box[1]->chopLineBreaks())
        notifyText();
    return m_box[1]->Text();
}

void KelText::setText(const QString &text)
{
    activeBox()->setText(text);
    m_textOriginal = text;
    notifyText();
}

void KelText::notifyText()
{
    // A trim raises Change per pair but TextChanged once, when it is over (see Text()).
    if (m_fieldIndex == 1 && m_box[1]->replayingChop())
        return;
    if (m_textWatch.moved(TextRaw()))
        emit TextChanged();
}

bool KelText::Valid() const
{
    const TextBox *box = activeBox();
    if (box->Locked() || !m_mandatory)
        return true;
    const QString t = box->Text();
    qsizetype end = t.size();
    while (end > 0 && (t[end - 1] == u' ' || (m_fieldIndex == 1 && (t[end - 1] == u'\r' || t[end - 1] == u'\n'))))
        --end;
    return end > 0;
}

void KelText::keyPress(int box, int &keyAscii)
{
    TextBox *b = m_box[box];
    switch (keyAscii) {
    case 8: case 27:
        return;
    case 13:
        if (box == 0) {
            keyAscii = 0;
            if (const auto &rt = librarySettings().Runtime)
                rt->SendKey(9);
            else
                sendTabKey(); // a control created in code before any run-time object
        }
        return;
    default:
        if (b->Locked() || m_insertMode)
            return;
        if (b->SelLength() == 0) {
            b->setSelLength(1);
            const QString one = b->SelText();
            if (!one.isEmpty() && one.front().isHighSurrogate())
                b->setSelLength(2); // one character, not half of one
        }
        // Overwriting never eats a line break.
        if (box == 1 && b->SelText().endsWith(u'\r'))
            b->setSelLength(b->SelLength() - 1);
    }
}

FieldControl::LayoutRules KelText::layoutRules() const
{
    LayoutRules r;
    r.fullHeightCaption = m_fieldIndex == 1;
    return r;
}

void KelText::onInitProperties()
{
    m_insertMode = true;
    m_mandatory = true;
    m_selectOnFocus = false;
}

void KelText::onReadProperties(PropertyBag &bag) { readPersisted(bag, persisted()); }
void KelText::onWriteProperties(PropertyBag &bag) { writePersisted(bag, persisted()); }

void KelText::onEnterFocus() { m_textOriginal = activeBox()->Text(); }

} // namespace kel
