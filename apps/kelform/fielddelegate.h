#pragma once
// Carries values between database cells and the controls' USER properties.
#include <QVariant>

class QWidget;

namespace kel::kelform {

/// What `editor` shows, as a plain value a database column takes (NULL for no date or no item).
QVariant cellValue(QWidget *editor);
/// Shows `cell` in `editor` as a freshly loaded value: Original and Saved references follow it.
void showCell(QWidget *editor, const QVariant &cell);

} // namespace kel::kelform
