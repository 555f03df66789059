#pragma once
// Free text, single- or multi-line, with overwrite typing, Enter as Tab, and the shared change
// tracking, mandatory check and colours.
#include "../../common/fieldcontrol.h"
#include "../../forms/textbox.h"
#include "../../platform/kelexport.h"

namespace kel {

/// Free text in one line or several, with a caption: created by hosts, Designer and kel::createObject.
class KEL_EXPORT KelText : public FieldControl
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed DESIGNABLE false)
    Q_PROPERTY(bool InsertMode READ InsertMode WRITE setInsertMode)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved DESIGNABLE false)
    Q_PROPERTY(qint32 hWnd READ hWnd DESIGNABLE false)
    Q_PROPERTY(int MaxLength READ MaxLength WRITE setMaxLength)
    Q_PROPERTY(bool MultiLine READ MultiLine WRITE setMultiLine)
    Q_PROPERTY(QString PasswordChar READ PasswordChar WRITE setPasswordChar)
    Q_PROPERTY(QString Text READ Text WRITE setText NOTIFY TextChanged USER true)
    Q_PROPERTY(QString TextOriginal READ TextOriginal WRITE setTextOriginal DESIGNABLE false)
    Q_PROPERTY(QString TextRaw READ TextRaw DESIGNABLE false)
    Q_PROPERTY(QString TextSaved READ TextSaved WRITE setTextSaved DESIGNABLE false)
    Q_PROPERTY(bool Valid READ Valid DESIGNABLE false)

public:
    /// An empty single-line field; the container sets its properties next.
    explicit KelText(QWidget *parent = nullptr);

    /// Text1(0) is the single-line box, Text1(1) the multi-line one; one of them is shown.
    /// Null for any other index.
    TextBox *Text1(int index);

    /// Whether the text differs from TextOriginal (edited during this visit, or since set by code).
    bool Changed() const { return activeBox()->Text() != m_textOriginal; }
    /// Whether the text differs from TextSaved (what the host last stored).
    bool ChangedSaved() const { return activeBox()->Text() != m_textSaved; }
    /// The most characters the user may type or paste; 0 for no limit.
    qint16 MaxLength() const { return qint16(m_box[0]->MaxLength()); }
    /// Sets MaxLength; a negative length is ignored. Text set by code is never cut.
    void setMaxLength(qint16 length);
    /// Whether the multi-line box is in use.
    bool MultiLine() const { return m_fieldIndex == 1; }
    /// Switches between the single- and the multi-line box; the text moves along.
    void setMultiLine(bool multiLine);
    /// The character shown for each typed one, or "" to show the text.
    QString PasswordChar() const { return m_box[0]->PasswordChar(); }
    /// Sets PasswordChar to the first character of `c` ("" shows the text).
    void setPasswordChar(const QString &c);
    /// Reading the text of a multi-line field drops its trailing empty lines from the field.
    QString Text();
    /// Sets the text and TextOriginal; raises Change.
    void setText(const QString &text);
    /// The reference for Changed; moved on entry and by setText.
    QString TextOriginal() const { return m_textOriginal; }
    /// Sets the reference for Changed.
    void setTextOriginal(const QString &text) { m_textOriginal = text; }
    /// The field's text exactly as it is, trailing blanks and line breaks included.
    QString TextRaw() const { return activeBox()->Text(); }
    /// The reference for ChangedSaved.
    QString TextSaved() const { return m_textSaved; }
    /// Sets the reference for ChangedSaved (after the host stored the record).
    void setTextSaved(const QString &text) { m_textSaved = text; }
    /// False only when the field is mandatory, not locked, and empty but for trailing blanks.
    bool Valid() const;

signals:
    /// The text changed, by the user or by code.
    void Change();
    /// The field was clicked.
    void Click();
    /// Text moved, typed or set by code (Qt's notification; Change keeps its own rules).
    void TextChanged();

protected:
    std::vector<Child *> fields() const override;
    Child *activeField() const override { return activeBox(); }
    LayoutRules layoutRules() const override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onEnterFocus() override;
    void onExitFocus() override { colourExited(); }
    void onChildKeyDown(Child *, int &keyCode, int) override;
    void onChildKeyPress(Child *box, int &keyAscii) override;
    void onChildGotFocus(Child *box) override;
    void onChildLostFocus(Child *box) override { static_cast<TextBox *>(box)->setSelStart(0); }
    void onChildClick(Child *) override { emit Click(); }
    void onChildChange(Child *) override;

private:
    TextBox *activeBox() const { return m_box[m_fieldIndex]; }
    void setUpBox(int index);
    void keyPress(int box, int &keyAscii);
    void notifyText();

    TextBox *m_box[2] = {};
    qint16 m_fieldIndex = 0;
    QString m_textOriginal;
    QString m_textSaved;
    PropertyWatch m_textWatch;
};

} // namespace kel
