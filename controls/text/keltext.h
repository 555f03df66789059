#pragma once
// Free text, single- or multi-line, with overwrite typing, Enter as Tab, and the shared change
// tracking, mandatory check and colours.
#include "platform/kelexport.h"
#include "common/fieldcontrol.h"
#include "forms/textbox.h"

namespace kel {

class KEL_EXPORT KelText : public FieldControl
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed)
    Q_PROPERTY(bool ChangedSaved READ ChangedSaved)
    Q_PROPERTY(qint32 hWnd READ hWnd)
    Q_PROPERTY(qint16 MaxLength READ MaxLength WRITE setMaxLength)
    Q_PROPERTY(bool MultiLine READ MultiLine WRITE setMultiLine)
    Q_PROPERTY(QString PasswordChar READ PasswordChar WRITE setPasswordChar)
    Q_PROPERTY(QString Text READ Text WRITE setText USER true)
    Q_PROPERTY(QString TextOriginal READ TextOriginal WRITE setTextOriginal)
    Q_PROPERTY(QString TextRaw READ TextRaw)
    Q_PROPERTY(QString TextSaved READ TextSaved WRITE setTextSaved)
    Q_PROPERTY(bool Valid READ Valid)

public:
    explicit KelText(QWidget *parent = nullptr);

    /// Text1(0) is the single-line box, Text1(1) the multi-line one; one of them is shown.
    /// Null for any other index.
    TextBox *Text1(int index);

    bool Changed() const { return activeBox()->Text() != m_textOriginal; }
    bool ChangedSaved() const { return activeBox()->Text() != m_textSaved; }
    qint16 MaxLength() const { return qint16(m_box[0]->MaxLength()); }
    void setMaxLength(qint16 length);
    bool MultiLine() const { return m_fieldIndex == 1; }
    void setMultiLine(bool multiLine);
    QString PasswordChar() const { return m_box[0]->PasswordChar(); }
    void setPasswordChar(const QString &c);
    // Reading the text of a multi-line field drops its trailing empty lines from the field.
    QString Text();
    void setText(const QString &text);
    QString TextOriginal() const { return m_textOriginal; }
    void setTextOriginal(const QString &text) { m_textOriginal = text; }
    QString TextRaw() const { return activeBox()->Text(); }
    QString TextSaved() const { return m_textSaved; }
    void setTextSaved(const QString &text) { m_textSaved = text; }
    bool Valid() const;

signals:
    void Change();
    void Click();

protected:
    std::vector<Child *> fields() const override;
    Child *activeField() const override { return activeBox(); }
    LayoutRules layoutRules() const override;

    void onInitProperties() override;
    void onReadProperties(PropertyBag &bag) override;
    void onWriteProperties(PropertyBag &bag) override;
    void onEnterFocus() override;
    void onExitFocus() override { colourExited(); }

private:
    TextBox *activeBox() const { return m_box[m_fieldIndex]; }
    void setUpBox(int index);
    void keyPress(int box, int &keyAscii);

    TextBox *m_box[2] = {};
    qint16 m_fieldIndex = 0;
    QString m_textOriginal;
    QString m_textSaved;
};

} // namespace kel
