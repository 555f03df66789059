#pragma once
// Creating the library's classes by name, counting live objects, and the registration that hosts
// and the Designer plugin read.
#include "platform/kelexport.h"
#include "platform/liveobjects.h"

#include <QObject>
#include <QStringList>
#include <functional>

class QWidget;

namespace kel {

class KEL_EXPORT ClassFactory
{
public:
    using Creator = std::function<QObject *(QWidget *parent)>;

    static void registerClass(const QString &name, Creator creator);
    // The new object, or nullptr with *error naming the class when it is unknown.
    static QObject *create(const QString &name, QWidget *parent = nullptr, QString *error = nullptr);
    static QStringList classNames();
};

// True when no control and no handler is alive.
KEL_EXPORT bool DllCanUnloadNow();

// Registration: an INI file listing every class with its ids and the library's file, under
// $XDG_DATA_HOME/KelControls8/registry.ini unless a path is given.
KEL_EXPORT QString defaultRegistryPath();
KEL_EXPORT bool DllRegisterServer(QString *error = nullptr, const QString &path = QString());
KEL_EXPORT bool DllUnregisterServer(QString *error = nullptr, const QString &path = QString());

} // namespace kel
