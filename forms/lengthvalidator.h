#pragma once
// The typing limit of a line edit: cuts what the user adds so the text stays within the limit, and
// never cuts what is there (text set by code may be longer). The limit counts characters, so a
// character outside the basic plane is never split. QLineEdit already holds the new text while
// validating, so the text before the edit is tracked here, read from the field itself each time
// it changes (a handler of the change may have set another text by then). A keystroke cut away
// entirely is refused rather than fixed up: QLineEdit reports a fixed-up text as changed even
// when it is the old one, and a refused key changes nothing.
#include <QLineEdit>
#include <QValidator>

namespace kel {

class LengthValidator : public QValidator
{
public:
    LengthValidator(QLineEdit *edit, const int *max, const bool *byCode)
        : QValidator(edit), m_max(max), m_byCode(byCode), m_previous(edit->text())
    {
        connect(edit, &QLineEdit::textChanged, this, [this, edit] { m_previous = edit->text(); });
    }
    State validate(QString &input, int &pos) const override
    {
        const qsizetype allowed = qMax<qsizetype>(*m_max, characters(m_previous));
        if (*m_byCode || *m_max <= 0 || characters(input) <= allowed)
            return Acceptable;
        // The characters just typed are the ones before the caret.
        for (qsizetype excess = characters(input) - allowed; excess > 0 && pos > 0; --excess) {
            const int n = pos >= 2 && input[pos - 1].isLowSurrogate() && input[pos - 2].isHighSurrogate() ? 2 : 1;
            input.remove(pos - n, n);
            pos -= n;
        }
        return characters(input) <= allowed && input != m_previous ? Acceptable : Invalid;
    }

    // Puts a validator on `edit` once a limit is first set: until then none is needed.
    static void limit(QLineEdit *edit, const int *max, const bool *byCode)
    {
        if (*max > 0 && !edit->validator())
            edit->setValidator(new LengthValidator(edit, max, byCode));
    }

private:
    static qsizetype characters(QStringView s)
    {
        qsizetype n = s.size();
        for (qsizetype i = 1; i < s.size(); ++i)
            if (s[i].isLowSurrogate() && s[i - 1].isHighSurrogate())
                --n;
        return n;
    }

    const int *m_max;
    const bool *m_byCode;
    QString m_previous;
};

} // namespace kel
