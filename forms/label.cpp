#include "forms/label.h"

namespace kel {

Label::Label(UserControl *owner, const QString &objectName)
    : Child(new QLabel, owner, objectName), m_label(static_cast<QLabel *>(widget()))
{
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_label->setWordWrap(true);
    setBackColor(0x8000000F);
    setForeColor(0x80000012);
}

} // namespace kel
