#pragma once
/// \file
/// Creating the library's classes by name, counting live objects, and the registration that hosts
/// and the Designer plugin read.
#include "../platform/kelexport.h"
#include "../platform/liveobjects.h"

#include <QObject>
#include <QStringList>
#include <functional>

class QWidget;

namespace kel {

/// Creates the library's classes by name (registerKelControls8 fills it).
class KEL_EXPORT ClassFactory
{
public:
    /// Makes one object of a class, as a child of the given widget.
    using Creator = std::function<QObject *(QWidget *parent)>;

    /// Registers (or replaces) a class; names are compared regardless of case.
    static void registerClass(const QString &name, Creator creator);
    /// The new object, or nullptr with *error naming the class when it is unknown.
    static QObject *create(const QString &name, QWidget *parent = nullptr, QString *error = nullptr);
    /// The registered classes, in the order of the type library.
    static QStringList classNames();
};

/// True when no control and no handler is alive.
KEL_EXPORT bool DllCanUnloadNow();

/// Registration: an INI file listing every class with its ids and the library's file, under
/// $XDG_DATA_HOME/KelControls8/registry.ini unless a path is given.
KEL_EXPORT QString defaultRegistryPath();
/// Writes the registration; false with *error set when the file cannot be written.
KEL_EXPORT bool DllRegisterServer(QString *error = nullptr, const QString &path = QString());
/// Removes the registration; false with *error set when it cannot.
KEL_EXPORT bool DllUnregisterServer(QString *error = nullptr, const QString &path = QString());

} // namespace kel
