#include "forms/textbox.h"

#include <QScrollBar>

#include "forms/lengthvalidator.h"
#include "forms/panelcache.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QValidator>
#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace kel {

namespace {

// Characters the document would turn into paragraph breaks (lone CR or LF, a paragraph
// separator, Qt's frame markers U+FDD0/U+FDD1) are kept in it as a stand-in marked with the code
// unit it stands for. Only marked stand-ins are read back as something else, so the same
// noncharacter held as text stays itself.
constexpr char16_t StandIn = 0xFDEA;
constexpr int StandsFor = QTextFormat::UserProperty + 0x4B38;
constexpr char16_t Paragraph = 0x2029;

bool becomesBreak(QChar c)
{
    return c == u'\r' || c == u'\n' || c == QChar(Paragraph) || c == QChar(0xFDD0) || c == QChar(0xFDD1);
}

struct Encoded {
    QString doc;                                  // CR LF pairs as '\n', the rest as stand-ins
    std::vector<std::pair<int, char16_t>> marks;  // stand-in positions in `doc`, what each is
};

Encoded encode(const QString &text)
{
    Encoded e;
    e.doc.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            e.doc += u'\n';
            ++i;
        } else if (becomesBreak(c)) {
            e.marks.emplace_back(int(e.doc.size()), c.unicode());
            e.doc += QChar(StandIn);
        } else {
            e.doc += c;
        }
    }
    return e;
}

// Marks the stand-ins of `e` inserted at `offset`, one format change per run of equal ones.
void applyMarks(QTextDocument *doc, int offset, const Encoded &e)
{
    for (size_t i = 0; i < e.marks.size();) {
        size_t j = i + 1;
        while (j < e.marks.size() && e.marks[j].first == e.marks[j - 1].first + 1 && e.marks[j].second == e.marks[i].second)
            ++j;
        QTextCursor c(doc);
        c.setPosition(offset + e.marks[i].first);
        c.setPosition(offset + e.marks[j - 1].first + 1, QTextCursor::KeepAnchor);
        QTextCharFormat f;
        f.setProperty(StandsFor, int(e.marks[i].second));
        c.mergeCharFormat(f);
        i = j;
    }
}

// The format for text the user adds at `c`: never a stand-in's mark, which typing after a
// stand-in would otherwise inherit.
QTextCharFormat plainFormat(const QTextCursor &c)
{
    QTextCharFormat f = c.charFormat();
    f.clearProperty(StandsFor);
    return f;
}

// What the stand-in before `c` stands for; 0 when there is none.
char16_t standInBefore(const QTextCursor &c)
{
    return char16_t(c.charFormat().intProperty(StandsFor));
}

// The text of document positions [from, to): paragraph breaks as CR LF, stand-ins as what they
// stand for.
QString decode(const QTextDocument *doc, const QString &raw, int from, int to)
{
    const char16_t *in = reinterpret_cast<const char16_t *>(raw.constData()) + from, *end = in + (to - from);
    // Written in place: a text of thousands of lines is read at every Text.
    QString out(qsizetype(to - from) + std::count(in, end, char16_t(Paragraph)), Qt::Uninitialized);
    char16_t *o = reinterpret_cast<char16_t *>(out.data());
    std::optional<QTextCursor> at; // only text holding a stand-in needs one
    for (const char16_t *p = in; p != end; ++p) {
        if (*p == Paragraph) {
            *o++ = u'\r';
            *o++ = u'\n';
        } else if (*p == StandIn) {
            if (!at)
                at.emplace(const_cast<QTextDocument *>(doc));
            at->setPosition(from + int(p - in) + 1);
            const char16_t original = standInBefore(*at);
            *o++ = original ? original : *p;
        } else {
            *o++ = *p;
        }
    }
    return out;
}

// What the character at `pos` stands for when it is a stand-in; 0 otherwise.
char16_t standInAt(const QTextDocument *doc, int pos)
{
    if (pos < 0 || doc->characterAt(pos) != QChar(StandIn))
        return 0;
    QTextCursor c(const_cast<QTextDocument *>(doc));
    c.setPosition(pos + 1);
    return standInBefore(c);
}

// How much of `typed` fits into `room` characters of text, where every line break (CR LF, or
// a lone character the box makes a break of) takes two. `used` gets what that part takes.
qsizetype fitting(const QString &typed, int room, int *used = nullptr)
{
    int taken = 0;
    qsizetype i = 0;
    while (i < typed.size()) {
        const bool pair = typed[i] == u'\r' && i + 1 < typed.size() && typed[i + 1] == u'\n';
        const int width = pair || becomesBreak(typed[i]) ? 2 : 1;
        if (taken + width > room)
            break;
        taken += width;
        i += pair ? 2 : 1;
    }
    if (used)
        *used = taken;
    return i;
}

int lengthOf(const QString &typed)
{
    int used = 0;
    fitting(typed, std::numeric_limits<int>::max(), &used);
    return used;
}

// Document position -> text position (a paragraph break is two characters).
int toTextPos(const QString &raw, int docPos)
{
    int extra = 0;
    for (int i = 0; i < docPos && i < raw.size(); ++i)
        extra += raw[i] == QChar(Paragraph);
    return docPos + extra;
}

// Text position -> document position; a position inside a break goes before it.
int toDocPos(const QString &raw, int textPos)
{
    int at = 0;
    for (int i = 0; i < raw.size(); ++i) {
        const int w = raw[i] == QChar(Paragraph) ? 2 : 1;
        if (at + w > textPos)
            return i;
        at += w;
    }
    return int(raw.size());
}

class PasswordStyle : public QProxyStyle
{
public:
    QChar mask = u'*';
    int styleHint(StyleHint hint, const QStyleOption *o, const QWidget *w, QStyleHintReturn *r) const override
    {
        if (hint == SH_LineEdit_PasswordCharacter)
            return mask.unicode();
        if (hint == SH_LineEdit_PasswordMaskDelay)
            return 0;
        return QProxyStyle::styleHint(hint, o, w, r);
    }
};

} // namespace

class MultiLineEdit : public QPlainTextEdit
{
public:
    MultiLineEdit()
    {
        setTabChangesFocus(true);
        setLineWrapMode(QPlainTextEdit::WidgetWidth);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }

    QString raw() const { return document()->toRawText(); }
    QString text(int from, int to) const { return decode(document(), raw(), from, to); }
    int room(int adding) const
    {
        const int max = m_box->m_maxLength;
        if (max <= 0)
            return adding;
        const QTextCursor c = textCursor();
        const QString r = raw();
        const int selected = toTextPos(r, c.selectionEnd()) - toTextPos(r, c.selectionStart());
        const int length = toTextPos(r, int(r.size()));
        return qBound(0, max - (length - selected), adding);
    }
    // Inserts what the user typed, pasted or composed, without a neighbouring stand-in's mark.
    void insertPlain(const QString &text)
    {
        QTextCursor c = textCursor();
        c.insertText(text, plainFormat(c));
        setTextCursor(c);
        ensureCursorVisible();
    }

protected:
    void keyPressEvent(QKeyEvent *e) override
    {
        const bool enter = e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
        if (enter && !isReadOnly()) {
            // With any modifier Enter starts a new line (Shift+Enter would insert U+2028).
            if (room(2) == 2) {
                QTextCursor c = textCursor();
                c.insertBlock();
                setTextCursor(c);
                ensureCursorVisible();
            }
            e->accept();
            return;
        }
        const QString typed = e->text();
        const bool typing = !typed.isEmpty() && typed[0] >= u' ' && !isReadOnly();
        const int adding = typing ? lengthOf(typed) : 0;
        if (typing && room(adding) < adding) {
            e->accept();
            return;
        }
        if (typing && typed.contains(QChar(StandIn))) {
            insertPlain(typed);
            e->accept();
            return;
        }
        QPlainTextEdit::keyPressEvent(e);
    }

    void inputMethodEvent(QInputMethodEvent *e) override
    {
        const QString commit = e->commitString();
        const int allowed = isReadOnly() ? 0 : room(lengthOf(commit));
        const qsizetype fits = fitting(commit, allowed);
        if (fits < commit.size() || commit.contains(QChar(StandIn))) {
            QInputMethodEvent rest(e->preeditString(), e->attributes());
            QPlainTextEdit::inputMethodEvent(&rest);
            if (!isReadOnly())
                insertPlain(commit.left(fits));
            return;
        }
        QPlainTextEdit::inputMethodEvent(e);
    }

    void insertFromMimeData(const QMimeData *source) override
    {
        if (!source->hasText() || isReadOnly())
            return;
        // Pasted line ends of any kind become line breaks.
        QString text = source->text();
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        for (QChar &c : text)
            if (becomesBreak(c))
                c = u'\n';
        insertPlain(text.left(fitting(text, room(lengthOf(text)))));
    }

    QMimeData *createMimeDataFromSelection() const override
    {
        auto *data = new QMimeData;
        const QTextCursor c = textCursor();
        data->setText(text(c.selectionStart(), c.selectionEnd()));
        return data;
    }

public:
    TextBox *m_box = nullptr;
};

static QWidget *makeEditor(TextBox::Kind kind)
{
    if (kind == TextBox::Kind::SingleLine)
        return new QLineEdit;
    return new MultiLineEdit;
}

TextBox::TextBox(Kind kind, UserControl *owner, const QString &objectName)
    : EditChild(makeEditor(kind), owner, objectName)
{
    if (kind == Kind::SingleLine) {
        m_line = static_cast<QLineEdit *>(widget());
        useCachedPanel(m_line);
        m_line->setMaxLength(std::numeric_limits<int>::max());
        connect(m_line, &QLineEdit::textChanged, this, &TextBox::raiseChange);
    } else {
        m_multi = static_cast<MultiLineEdit *>(widget());
        m_multi->m_box = this;
        connect(m_multi, &QPlainTextEdit::textChanged, this, &TextBox::emitIfChanged);
    }
}

TextBox::~TextBox() = default;

QString TextBox::Text() const
{
    if (m_line)
        return m_line->text();
    return m_replayingChop ? m_lastText : documentText();
}

QString TextBox::documentText() const
{
    const QString raw = m_multi->raw();
    return decode(m_multi->document(), raw, 0, int(raw.size()));
}

void TextBox::emitIfChanged()
{
    m_replayingChop = false; // an edit by a handler ends the replay of a chop
    if (m_settingByCode)
        return; // the setter reports once it is done
    const QString now = m_line ? m_line->text() : documentText();
    if (now == m_lastText)
        return;
    m_lastText = now;
    raiseChange();
}

void TextBox::setText(const QString &text) { setText(text, 0); }

void TextBox::setText(const QString &text, int caret)
{
    if (m_line) {
        m_settingByCode = true;
        m_line->setText(text);
        m_settingByCode = false;
        // A classic box leaves the caret at 0 after a text set, like the multi-line kind.
        m_line->setCursorPosition(qBound(0, caret, int(text.size())));
        return;
    }
    if (caret != 0) {
        setText(text);
        setSelStart(caret);
        return;
    }
    if (text == Text())
        return;
    const Encoded e = encode(text);
    m_settingByCode = true;
    m_multi->setPlainText(e.doc);
    if (!e.marks.empty()) {
        applyMarks(m_multi->document(), 0, e);
        m_multi->document()->clearUndoRedoStacks();
    }
    m_settingByCode = false;
    emitIfChanged();
}

// Document characters that hold the CR LF ending before document position `end`; 0 when none does.
static int breakWidthBefore(const QTextDocument *doc, int end)
{
    if (end >= 1 && doc->characterAt(end - 1) == QChar(Paragraph))
        return 1;
    if (standInAt(doc, end - 2) == u'\r' && standInAt(doc, end - 1) == u'\n')
        return 2;
    return 0;
}

bool TextBox::chopLineBreaks()
{
    if (!m_multi)
        return false;
    QString now = documentText();
    qsizetype pairs = 0;
    for (qsizetype n = now.size(); n >= 2 && now[n - 2] == u'\r' && now[n - 1] == u'\n'; n -= 2)
        ++pairs;
    if (pairs == 0)
        return false;
    // The run of pairs goes in one edit, then Change is raised once per pair with the text a handler
    // reads one pair shorter each time, as if they went one by one (an edit per pair costs
    // thousands of instructions). Removing a block costs more than setting a character, so a long
    // run is dropped by setting the kept text afresh.
    QTextDocument *doc = m_multi->document();
    const QString kept = now.chopped(2 * pairs);
    QTextCursor c = m_multi->textCursor();
    const int anchor = c.anchor(), position = c.position();
    m_settingByCode = true;
    if (pairs * 16 > kept.size()) {
        const int scrolled = m_multi->verticalScrollBar()->value();
        const Encoded e = encode(kept);
        m_multi->setPlainText(e.doc);
        if (!e.marks.empty()) {
            applyMarks(doc, 0, e);
            doc->clearUndoRedoStacks();
        }
        const int end = doc->characterCount() - 1;
        c = QTextCursor(doc);
        c.setPosition(qMin(anchor, end));
        c.setPosition(qMin(position, end), QTextCursor::KeepAnchor);
        m_multi->setTextCursor(c);
        m_multi->verticalScrollBar()->setValue(scrolled);
    } else {
        const int end = doc->characterCount() - 1; // the last paragraph's end is not text
        int start = end;
        for (qsizetype i = 0; i < pairs; ++i)
            start -= breakWidthBefore(doc, start);
        c = QTextCursor(doc);
        c.setPosition(start);
        c.setPosition(end, QTextCursor::KeepAnchor);
        c.removeSelectedText();
    }
    m_settingByCode = false;
    m_lastText = std::move(now); // unshared, each chop below is constant time
    m_replayingChop = true;
    for (qsizetype i = 0; i < pairs && m_replayingChop; ++i) {
        m_lastText.chop(2);
        if (!raiseChange())
            return false; // a handler deleted the box
    }
    if (m_replayingChop) {
        m_replayingChop = false;
        return true;
    }
    // A handler edited the box meanwhile: its text is what counts, and it may end in pairs again.
    emitIfChanged();
    chopLineBreaks();
    return true;
}

int TextBox::SelStart() const
{
    if (m_line)
        return m_line->hasSelectedText() ? m_line->selectionStart() : m_line->cursorPosition();
    return toTextPos(m_multi->raw(), m_multi->textCursor().selectionStart());
}

int TextBox::SelLength() const
{
    if (m_line)
        return m_line->selectionLength();
    const QTextCursor c = m_multi->textCursor();
    const QString raw = m_multi->raw();
    return toTextPos(raw, c.selectionEnd()) - toTextPos(raw, c.selectionStart());
}

QString TextBox::SelText() const
{
    return Text().mid(SelStart(), SelLength());
}

void TextBox::setSelStart(int start)
{
    const int length = int(Text().size());
    start = qBound(0, start, length);
    if (m_line) {
        m_line->setCursorPosition(start);
        // With nothing selected deselect() only tells the input method again where the caret is.
        if (m_line->hasSelectedText())
            m_line->deselect();
        return;
    }
    QTextCursor c = m_multi->textCursor();
    c.setPosition(toDocPos(m_multi->raw(), start));
    m_multi->setTextCursor(c);
}

void TextBox::setSelLength(int length)
{
    const int start = SelStart();
    length = qBound(0, length, int(Text().size()) - start);
    if (m_line) {
        if (length == 0) {
            m_line->setCursorPosition(start);
            m_line->deselect();
        } else {
            m_line->setSelection(start, length);
        }
        return;
    }
    const QString raw = m_multi->raw();
    QTextCursor c = m_multi->textCursor();
    c.setPosition(toDocPos(raw, start));
    c.setPosition(toDocPos(raw, start + length), QTextCursor::KeepAnchor);
    m_multi->setTextCursor(c);
}

void TextBox::setSelText(const QString &text)
{
    if (m_line) {
        m_settingByCode = true;
        m_line->insert(text);
        m_settingByCode = false;
        return;
    }
    const Encoded e = encode(text);
    QTextCursor c = m_multi->textCursor();
    const int at = c.selectionStart();
    m_settingByCode = true;
    c.insertText(e.doc, plainFormat(c));
    applyMarks(m_multi->document(), at, e);
    m_settingByCode = false;
    m_multi->setTextCursor(c);
    emitIfChanged();
}

void TextBox::afterWidgetFocusIn(Qt::FocusReason reason)
{
    if (m_line && reason != Qt::MouseFocusReason) {
        setSelStart(m_selBeforeFocus.first);
        setSelLength(m_selBeforeFocus.second);
    }
}

void TextBox::setLocked(bool locked)
{
    m_locked = locked;
    if (m_line) {
        m_line->setReadOnly(locked);
        return;
    }
    m_multi->setReadOnly(locked);
    if (locked)
        m_multi->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void TextBox::setMaxLength(int length)
{
    m_maxLength = qMax(0, length);
    if (m_line)
        LengthValidator::limit(m_line, &m_maxLength, &m_settingByCode);
}

void TextBox::setPasswordChar(const QString &c)
{
    m_password = c.left(1);
    if (!m_line)
        return; // a multi-line box always shows its text, as the classic one does
    if (m_password.isEmpty()) {
        m_line->setEchoMode(QLineEdit::Normal);
        return;
    }
    auto *style = dynamic_cast<PasswordStyle *>(m_line->style());
    if (!style) {
        style = new PasswordStyle;
        style->setParent(m_line);
        m_line->setStyle(style);
    }
    style->mask = m_password[0];
    m_line->setEchoMode(QLineEdit::Password);
    m_line->update();
}

} // namespace kel
