// Every control through the class factory, one of them through its own header, next to a class of
// the host's own that needs moc.
#include <KelControls8/KelCheck>
#include <KelControls8/kelcontrols8.h>

#include "platform/variant.h" // the application's own

#include <QApplication>
#include <cstdio>

class Watcher : public QObject
{
    Q_OBJECT
public:
    int changes = 0;
public Q_SLOTS:
    void changed() { ++changes; }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWidget form;
    int failures = 0;
    for (const QString &name : kel::ClassFactory::classNames()) {
        if (!kel::createObject(name, &form)) {
            std::fprintf(stderr, "subproject: no %s\n", qPrintable(name));
            ++failures;
        }
    }
    kel::KelCheck check(&form);
    Watcher watcher;
    QObject::connect(&check, &kel::KelCheck::Change, &watcher, &Watcher::changed);
    check.setProperty("Value", true);
    if (!check.property("Value").toBool() || qstrcmp(check.metaObject()->className(), "kel::KelCheck") != 0
        || qstrcmp(watcher.metaObject()->className(), "Watcher") != 0 || app::Variant().answer != 42)
        ++failures;
    std::printf("subproject: %s\n", failures ? "FAILED" : "ok");
    return failures ? 1 : 0;
}

#include "main.moc"
