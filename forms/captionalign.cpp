#include "forms/captionalign.h"

#include "forms/label.h"
#include "forms/units.h"

#include <QLabel>
#include <QPlainTextEdit>

namespace kel {

namespace {

// Where the widget draws the baseline of its first line of text, from its top edge.
int textBaseline(const QWidget *field)
{
    const QFontMetrics fm = field->fontMetrics();
    // A multi-line box starts at the top, inside its frame and the document's margin.
    if (const auto *edit = qobject_cast<const QPlainTextEdit *>(field))
        return edit->frameWidth() + int(edit->document()->documentMargin()) + fm.ascent();
    // A line edit (also the one in a combo box) centres its line as QLineEdit does.
    return (field->height() - fm.height() + 1) / 2 + fm.ascent();
}

} // namespace

void alignCaptionText(Label *caption, const Child *field)
{
    auto *label = qobject_cast<QLabel *>(caption->widget());
    const QWidget *box = field->widget();
    if (!label || !box)
        return;
    const int baseline = box->y() + textBaseline(box);
    const int top = qMax(0, baseline - label->fontMetrics().ascent() - label->y());
    label->setContentsMargins(0, top, 0, 0);
    label->resize(label->width(), twipsToPixelsY(caption->Height()) + top);
}

} // namespace kel
