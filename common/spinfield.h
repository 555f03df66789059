#pragma once
// A one-line text box with an optional spinner in a strip at its right edge: what the number,
// date and time fields share. The spinner and the Up and Down keys step the field by one unit
// up or down; Insert toggles typing over; Enter moves on as Tab would.
#include "fieldcontrol.h"
#include "../forms/textbox.h"
#include "../forms/updown.h"
#include "../platform/kelexport.h"

#include <QLocale>

namespace kel {

class IKelRuntime;

// The library's run-time object, created on first need.
IKelRuntime &heldRuntime();

class KEL_EXPORT SpinField : public FieldControl
{
    Q_OBJECT
    Q_PROPERTY(bool InsertMode READ InsertMode WRITE setInsertMode)
    Q_PROPERTY(bool UpDown READ UpDown WRITE setUpDown)

public:
    /// The text box, child widget "Text1".
    TextBox *const Text1;
    /// The spinner, child widget "UpDown1".
    kel::UpDown *const UpDown1;

    /// Whether the spinner is shown; setting it lays the control out again.
    bool UpDown() const { return m_upDown; }
    /// Sets UpDown.
    void setUpDown(bool upDown);

protected:
    explicit SpinField(QWidget *parent = nullptr);

    static IKelRuntime &runtime() { return heldRuntime(); }

    // One step: +1 up, -1 down.
    virtual void step(int direction) = 0;
    // Whether Up and Down step the field now (and are swallowed).
    virtual bool arrowsStep() const { return true; }

    std::vector<Child *> fields() const override { return {Text1}; }
    Child *activeField() const override { return Text1; }
    LayoutRules layoutRules() const override;
    void layoutStrip(double left, double width) override;

    virtual void keyDown(int &keyCode);
    void onChildKeyDown(Child *, int &keyCode, int) override { keyDown(keyCode); }
    void onChildChange(Child *child) override;
    // Backspace, Escape and other control characters pass; Enter is swallowed and moves on.
    // True when the character needs nothing more.
    bool passesOrMovesOn(int &keyAscii);
    // Typing over: with nothing selected the character replaces the one after the caret.
    void overwriteNext();
    // Valid's refusal: with showMessage, an information box and the focus back in the box.
    bool invalid(bool showMessage, const QString &message, const QString &title);
    // Writes the box without marking the text as typed, the caret at `caret`; an unchanged text
    // keeps the caret.
    void showText(const QString &text, int caret = 0);

    bool m_upDown = false;
    bool m_textDirty = false;
    bool m_spinFocus = false; // the focus arrives because the spinner was clicked

private:
    void spinnerChanged();

    bool m_writingText = false;
};

} // namespace kel
