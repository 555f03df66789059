#pragma once
// The library's entry points for hosts: create any class by name.
#include "../library/classfactory.h"
#include "../platform/kelexport.h"

class QWidget;

namespace kel {

// Registers every class of the library with the class factory (idempotent).
KEL_EXPORT void registerKelControls8();

// Creates a class of the library by name (regardless of case): a control as a child of `parent`,
// or a KelControlHandler. nullptr with *error set for an unknown class.
KEL_EXPORT QObject *createObject(const QString &className, QWidget *parent = nullptr, QString *error = nullptr);

} // namespace kel
