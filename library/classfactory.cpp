#include "library/classfactory.h"

#include "library/typemodel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStandardPaths>

namespace kel {

namespace {

QHash<QString, ClassFactory::Creator> &creators()
{
    static QHash<QString, ClassFactory::Creator> c;
    return c;
}

} // namespace

void ClassFactory::registerClass(const QString &name, Creator creator)
{
    creators().insert(name.toLower(), std::move(creator));
}

QObject *ClassFactory::create(const QString &name, QWidget *parent, QString *error)
{
    const auto it = creators().constFind(name.toLower());
    if (it == creators().constEnd()) {
        if (error)
            *error = QStringLiteral("Class not registered: \"%1\"").arg(name);
        return nullptr;
    }
    return (*it)(parent);
}

QStringList ClassFactory::classNames()
{
    QStringList names;
    for (const auto &cls : typemodel::library().classes)
        if (creators().contains(cls.name.toLower()))
            names << cls.name;
    return names;
}

bool DllCanUnloadNow() { return liveObjects() == 0; }

QString defaultRegistryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QStringLiteral("/KelControls8/registry.ini");
}

static QString uuidText(const QUuid &u) { return u.toString(QUuid::WithBraces).toUpper(); }

bool DllRegisterServer(QString *error, const QString &path)
{
    const QString file = path.isEmpty() ? defaultRegistryPath() : path;
    QDir().mkpath(QFileInfo(file).absolutePath());
    const auto &lib = typemodel::library();
    QString text;
    text += QStringLiteral("[%1]\nTypeLib=%2\nVersion=%3\nFileVersion=%4\nFile=%5\n\n")
                    .arg(lib.name, uuidText(lib.libraryId), lib.typeLibVersion, lib.fileVersion,
                         QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString());
    for (const auto &cls : lib.classes) {
        text += QStringLiteral("[%1.%2]\nCLSID=%3\nInterface=%4\nControl=%5\n\n")
                        .arg(lib.name, cls.name, uuidText(cls.classId), uuidText(cls.interfaceId),
                             cls.isControl ? QStringLiteral("true") : QStringLiteral("false"));
    }
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text) || out.write(text.toUtf8()) < 0 || !out.commit()) {
        if (error)
            *error = QStringLiteral("%1: cannot write the registration: %2").arg(file, out.errorString());
        return false;
    }
    return true;
}

bool DllUnregisterServer(QString *error, const QString &path)
{
    const QString file = path.isEmpty() ? defaultRegistryPath() : path;
    if (QFile::exists(file) && !QFile::remove(file)) {
        if (error)
            *error = QStringLiteral("%1: cannot remove the registration").arg(file);
        return false;
    }
    return true;
}

} // namespace kel
