#include "forms/textbox.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QValidator>
#include <limits>

namespace kel {

namespace {

// Lone line-break characters, and a paragraph separator that is text, are kept in the document
// as Unicode noncharacters (reserved for exactly such internal use).
constexpr char16_t LoneCR = 0xFDEA; // (Qt itself uses U+FDD0 and U+FDD1 as frame markers)
constexpr char16_t LoneLF = 0xFDEB;
constexpr char16_t TextParagraph = 0xFDEC;
constexpr char16_t Paragraph = 0x2029;

QString toDocument(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            out += u'\n';
            ++i;
        } else if (c == u'\r') {
            out += QChar(LoneCR);
        } else if (c == u'\n') {
            out += QChar(LoneLF);
        } else if (c == QChar(Paragraph)) {
            out += QChar(TextParagraph);
        } else {
            out += c;
        }
    }
    return out;
}

QString fromDocument(const QString &raw)
{
    QString out;
    out.reserve(raw.size() + raw.size() / 16);
    for (const QChar c : raw) {
        if (c == QChar(Paragraph))
            out += u"\r\n";
        else if (c == QChar(LoneCR))
            out += u'\r';
        else if (c == QChar(LoneLF))
            out += u'\n';
        else if (c == QChar(TextParagraph))
            out += QChar(Paragraph);
        else
            out += c;
    }
    return out;
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

// Cuts what the user adds so the text stays within the limit; never cuts what is there.
// (QLineEdit already holds the new text while validating, so the old length is tracked here.)
class LengthValidator : public QValidator
{
public:
    LengthValidator(QLineEdit *edit, const int *max, const bool *byCode)
        : QValidator(edit), m_max(max), m_byCode(byCode), m_previous(int(edit->text().size()))
    {
        connect(edit, &QLineEdit::textChanged, this, [this](const QString &t) { m_previous = int(t.size()); });
    }
    State validate(QString &input, int &pos) const override
    {
        const int allowed = qMax(*m_max, m_previous);
        if (*m_byCode || *m_max <= 0 || input.size() <= allowed)
            return Acceptable;
        const int cut = qMin(int(input.size()) - allowed, pos);
        input.remove(pos - cut, cut);
        pos -= cut;
        return input.size() <= allowed ? Acceptable : Invalid;
    }

private:
    const int *m_max;
    const bool *m_byCode;
    int m_previous;
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
        const int adding = enter ? 2 : (e->text().isEmpty() || e->text()[0] < u' ' ? 0 : int(e->text().size()));
        if (adding && !isReadOnly() && room(adding) < adding) {
            e->accept();
            return;
        }
        QPlainTextEdit::keyPressEvent(e);
    }

    void inputMethodEvent(QInputMethodEvent *e) override
    {
        const QString commit = e->commitString();
        const int allowed = isReadOnly() ? 0 : room(int(commit.size()));
        if (allowed < commit.size()) {
            QInputMethodEvent cut(e->preeditString(), e->attributes());
            cut.setCommitString(commit.left(allowed), e->replacementStart(), e->replacementLength());
            QPlainTextEdit::inputMethodEvent(&cut);
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
        text.replace(u'\r', u'\n');
        const int allowed = room(int(text.size()) + int(text.count(u'\n')));
        int taken = 0, used = 0;
        while (taken < text.size() && used + (text[taken] == u'\n' ? 2 : 1) <= allowed)
            used += text[taken++] == u'\n' ? 2 : 1;
        textCursor().insertText(text.left(taken));
    }

    QMimeData *createMimeDataFromSelection() const override
    {
        auto *data = new QMimeData;
        QString t = fromDocument(textCursor().selection().toRawText());
        data->setText(t);
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
        m_line->setMaxLength(std::numeric_limits<int>::max());
        m_line->setValidator(new LengthValidator(m_line, &m_maxLength, &m_settingByCode));
        connect(m_line, &QLineEdit::textChanged, this, &TextBox::Change);
    } else {
        m_multi = static_cast<MultiLineEdit *>(widget());
        m_multi->m_box = this;
        connect(m_multi, &QPlainTextEdit::textChanged, this, &TextBox::emitIfChanged);
    }
    applyColours();
}

TextBox::~TextBox() = default;

QString TextBox::Text() const
{
    return m_line ? m_line->text() : fromDocument(m_multi->raw());
}

void TextBox::emitIfChanged()
{
    if (m_settingByCode)
        return; // the setter reports once it is done
    const QString now = Text();
    if (now == m_lastText)
        return;
    m_lastText = now;
    emit Change();
}

void TextBox::setText(const QString &text)
{
    if (m_line) {
        m_settingByCode = true;
        m_line->setText(text);
        m_settingByCode = false;
        m_line->setCursorPosition(0); // as a classic box leaves it after a text set, like the multi-line kind
        return;
    }
    if (text == Text())
        return;
    m_multi->setPlainText(toDocument(text));
    emitIfChanged();
}

// Document characters that hold the final CR LF of the text; 0 when it ends otherwise.
static int trailingBreakWidth(const QTextDocument *doc)
{
    const int end = doc->characterCount() - 1; // the last paragraph's end is not text
    if (end >= 1 && doc->characterAt(end - 1) == QChar(Paragraph))
        return 1;
    if (end >= 2 && doc->characterAt(end - 2) == QChar(LoneCR) && doc->characterAt(end - 1) == QChar(LoneLF))
        return 2;
    return 0;
}

void TextBox::chopLineBreaks()
{
    if (!m_multi || !m_lastText.endsWith(u"\r\n"))
        return;
    QTextDocument *doc = m_multi->document();
    // One edit block: the box lays out once at the end, while the text itself (what a Change
    // handler reads) is current after every removal.
    QTextCursor c(doc);
    c.beginEditBlock();
    for (int width; m_lastText.endsWith(u"\r\n") && (width = trailingBreakWidth(doc)) > 0;) {
        const int end = doc->characterCount() - 1;
        c.setPosition(end - width);
        c.setPosition(end, QTextCursor::KeepAnchor);
        m_settingByCode = true;
        c.removeSelectedText();
        m_settingByCode = false;
        m_lastText.chop(2);
        emit Change();
    }
    m_settingByCode = true;
    c.endEditBlock();
    m_settingByCode = false;
    emitIfChanged(); // whatever a handler did meanwhile
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
    QTextCursor c = m_multi->textCursor();
    c.insertText(toDocument(text));
    m_multi->setTextCursor(c);
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
