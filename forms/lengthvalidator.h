#pragma once
// The typing limit of a line edit: cuts what the user adds so the text stays within the limit, and
// never cuts what is there (text set by code may be longer). QLineEdit already holds the new text
// while validating, so the text before the edit is tracked here. A keystroke cut away entirely is
// refused rather than fixed up: QLineEdit reports a fixed-up text as changed even when it is the
// old one, and a refused key changes nothing.
#include <QLineEdit>
#include <QValidator>

namespace kel {

class LengthValidator : public QValidator
{
public:
    LengthValidator(QLineEdit *edit, const int *max, const bool *byCode)
        : QValidator(edit), m_max(max), m_byCode(byCode), m_previous(edit->text())
    {
        connect(edit, &QLineEdit::textChanged, this, [this](const QString &t) { m_previous = t; });
    }
    State validate(QString &input, int &pos) const override
    {
        const int allowed = qMax(*m_max, int(m_previous.size()));
        if (*m_byCode || *m_max <= 0 || input.size() <= allowed)
            return Acceptable;
        const int cut = qMin(int(input.size()) - allowed, pos);
        input.remove(pos - cut, cut);
        pos -= cut;
        return input.size() <= allowed && input != m_previous ? Acceptable : Invalid;
    }

private:
    const int *m_max;
    const bool *m_byCode;
    QString m_previous;
};

} // namespace kel
