#pragma once
// The application's style for a field's line edit or editable combo box, with the panel (background
// and frame; the combo's frame and button) drawn from a shared pixmap cache: a stock style paints
// each one with antialiased paths, and a form shows hundreds of them alike.
class QWidget;

namespace kel {

// Gives `edit` (a line edit or an editable combo box) the caching style. A widget with a style of its own keeps it.
void useCachedPanel(QWidget *edit);

} // namespace kel
