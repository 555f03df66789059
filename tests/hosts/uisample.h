#pragma once
// A form of every control with a non-default value in every persisted property, as a .ui text
// in a chosen property order.
#include "persisted.h"

#include <QStringList>
#include <QWidget>

namespace kel::test {

enum class UiOrder { PropertySheet, Reversed, Alphabetical };

// Every control class of the factory.
QStringList controlClasses();
// The object name a class gets in the sample form.
QString sampleObjectName(const QString &className);
// Non-default values of every persisted property of the class, in the control's reading order.
std::vector<PersistedProperty> sampleValues(const QString &className);
// Designer writes properties in property-sheet order: the meta-object's, base classes first.
QString sampleUi(UiOrder order = UiOrder::PropertySheet);
// A form loaded by QUiLoader with this build's Designer plugin only; nullptr with *error set.
std::unique_ptr<QWidget> loadUi(const QString &ui, QString *error);

} // namespace kel::test
