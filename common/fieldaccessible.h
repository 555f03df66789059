#pragma once
// Screen readers' view of the entry fields (see fieldaccessible.cpp).
#include <QAccessible>

class QWidget;

namespace kel {

// Installs, once, the accessible interfaces of the entry controls and their fields.
void installFieldAccessibility();
// Tells assistive technology that something of `widget` changed (nothing when none listens).
void notifyAccessible(QWidget *widget, QAccessible::Event what);

} // namespace kel
