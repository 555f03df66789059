#pragma once
// The text box in its single-line and multi-line kinds. The multi-line kind shows carriage
// return + line feed pairs as line breaks and counts both characters in every position; a lone
// carriage return or line feed stays a character of the text.
#include "child.h"
#include "../platform/kelexport.h"

class QLineEdit;

namespace kel {

class MultiLineEdit;

class KEL_EXPORT TextBox : public EditChild
{
    Q_OBJECT
public:
    enum class Kind { SingleLine, MultiLine };
    TextBox(Kind kind, UserControl *owner, const QString &objectName);
    ~TextBox() override;

    Kind kind() const { return m_line ? Kind::SingleLine : Kind::MultiLine; }

    QString Text() const override;
    void setText(const QString &text) override;
    // The same with the caret left at `caret` (setText leaves it at 0): one move of the caret, not two.
    void setText(const QString &text, int caret);
    int SelStart() const override;
    void setSelStart(int start) override;
    int SelLength() const override;
    void setSelLength(int length) override;
    QString SelText() const override;
    void setSelText(const QString &text) override;
    // Read-only, but still takes the focus and lets the user select and copy.
    bool Locked() const override { return m_locked; }
    void setLocked(bool locked) override;
    // How many characters the user may type or paste; 0 for no limit. Text set by code is
    // never cut.
    int MaxLength() const { return m_maxLength; }
    void setMaxLength(int length);
    // Multi-line: removes the final CR LF pairs from the text, raising Change for each as if they
    // went one by one; one edit of the document for the whole run. False when there were none.
    bool chopLineBreaks();
    // Whether the Changes of a chop are being raised and no handler has edited the box since:
    // each text Text() gives meanwhile is then the one before it less one pair.
    bool replayingChop() const { return m_replayingChop; }
    QString PasswordChar() const { return m_password; }
    void setPasswordChar(const QString &c);

protected:
    // A plain Insert only toggles the typing mode; Shift+Insert and Ctrl+Insert still paste and copy.
    bool eatsKey(int keyCode, int shift) override { return keyCode == 45 && shift == 0; }
    // A classic edit box keeps its selection when tabbed into; QLineEdit would select all.
    void beforeWidgetFocusIn() override { m_selBeforeFocus = {SelStart(), SelLength()}; }
    void afterWidgetFocusIn(Qt::FocusReason reason) override;

private:
    friend class MultiLineEdit;
    void emitIfChanged();

    QLineEdit *m_line = nullptr;
    MultiLineEdit *m_multi = nullptr;
    bool m_locked = false;
    int m_maxLength = 0;
    bool m_settingByCode = false;
    QString m_password;
    QString m_lastText;
    bool m_replayingChop = false; // Text() is m_lastText while the Changes of a chop are raised
    QString documentText() const;
    std::pair<int, int> m_selBeforeFocus;
};

} // namespace kel
