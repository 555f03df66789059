#pragma once
// Lines a caption's text up with the text in its field: the caption's first line sits on the
// baseline of the field's (first) line. Only the label's widget moves its text down and grows by
// as much; the caption's size in twips stays what the layout rules say.
namespace kel {

class Child;
class Label;

void alignCaptionText(Label *caption, const Child *field);

} // namespace kel
