#include "common/spinfield.h"

#include "common/baskelcontrols.h"
#include "platform/services.h"

#include <utility>

namespace kel {

SpinField::SpinField(QWidget *parent)
    : FieldControl(parent),
      Text1(new TextBox(TextBox::Kind::SingleLine, this, QStringLiteral("Text1"))),
      UpDown1(new kel::UpDown(this, QStringLiteral("UpDown1")))
{
    setFocusProxy(Text1->widget());
}

void SpinField::onChildChange(Child *child)
{
    if (child == UpDown1)
        spinnerChanged();
    // Any edit the field did not make itself (typing, a paste or drop, an input method) leaves
    // the text to be read before the value is trusted.
    else if (!m_writingText)
        m_textDirty = true;
}

IKelRuntime &heldRuntime()
{
    if (!librarySettings().Runtime)
        InitControls();
    return *librarySettings().Runtime;
}

void SpinField::setUpDown(bool upDown)
{
    m_upDown = upDown;
    propertyChanged(QStringLiteral("UpDown"));
    UpDown1->setVisible(upDown);
    layout();
}

FieldControl::LayoutRules SpinField::layoutRules() const
{
    LayoutRules r;
    r.height = HeightRule::Exactly300;
    r.width = WidthRule::StripMinimum;
    r.strip = m_upDown ? 240 : 0;
    r.captionWithinWidth = true;
    r.captionTakesFieldFont = true;
    return r;
}

void SpinField::layoutStrip(double left, double width)
{
    UpDown1->Move(left, 0, width, ScaleHeight());
}

void SpinField::keyDown(int &keyCode)
{
    switch (keyCode) {
    case 38: case 40:
        if (arrowsStep()) {
            step(keyCode == 38 ? 1 : -1);
            keyCode = 0; // the step is the key's whole effect; no scrolling of a parent
        }
        break;
    case 45:
        m_insertMode = !m_insertMode;
        break;
    default:
        m_textDirty = true;
    }
}

bool SpinField::passesOrMovesOn(int &keyAscii)
{
    if (keyAscii == 13) {
        keyAscii = 0;
        runtime().SendKey(9);
        return true;
    }
    return keyAscii < 32;
}

void SpinField::overwriteNext()
{
    if (!Text1->Locked() && !m_insertMode && Text1->SelLength() == 0)
        Text1->setSelLength(1);
}

bool SpinField::invalid(bool showMessage, const QString &message, const QString &title)
{
    if (showMessage) {
        services().MsgBox(message, 64, title);
        Text1->SetFocus();
    }
    return false;
}

void SpinField::showText(const QString &text, int caret)
{
    if (Text1->Text() == text)
        return;
    const bool outer = std::exchange(m_writingText, true);
    Text1->setText(text, caret);
    m_writingText = outer;
}

void SpinField::spinnerChanged()
{
    m_spinFocus = true;
    Text1->SetFocus();
    switch (UpDown1->Value()) {
    case 0: step(-1); break;
    case 2: step(1); break;
    default: return;
    }
    UpDown1->setValue(1);
}

} // namespace kel
