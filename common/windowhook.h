#pragma once
// The combo box's own three-dimensional look, drawn over what the style paints: a sunken frame
// around the box and a raised one around its button strip (ButtonWidthPixels wide).
#include "../platform/kelexport.h"

class QWidget;

namespace kel {

/// Hooks the painting of `window` once; a second call leaves the one hook. The hook goes with
/// the widget. The widget carries the property "KelControlsProc" while it is hooked.
KEL_EXPORT void SubclassWindow(QWidget *window);

/// Whether `window` is hooked.
KEL_EXPORT bool isSubclassed(const QWidget *window);

} // namespace kel
