#include "formloader.h"

#include "controls/kelcontrols8.h"
#include "forms/usercontrol.h"
#include "library/classfactory.h"
#include "platform/propertybag.h"

#include <QFile>
#include <QDir>
#include <QFileInfo>
#include <tuple>

namespace kel::kelform {

FormLoader::FormLoader(QObject *parent) : QUiLoader(parent)
{
    registerKelControls8();
}

QWidget *FormLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    // Designer's plugin names the classes with their namespace ("kel::KelText").
    const QString bare = className.startsWith(QStringLiteral("kel::")) ? className.mid(5) : className;
    if (ClassFactory::classNames().contains(bare)) {
        QObject *made = ClassFactory::create(bare, parent);
        if (auto *control = qobject_cast<UserControl *>(made)) {
            control->setObjectName(name);
            // A form file is a saved form: the container reads its properties (all defaults
            // here), then the loader puts the file's values through the same setters.
            MemoryPropertyBag none;
            control->ReadProperties(none);
            return control;
        }
        delete made; // KelControlHandler is no widget
    }
    return QUiLoader::createWidget(className, parent, name);
}

QWidget *FormLoader::loadFile(const QString &file, QWidget *parent, QString *error)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(file, f.errorString());
        return nullptr;
    }
    // Pictures a form names are beside it.
    setWorkingDirectory(QFileInfo(file).absoluteDir());
    // The loader also warns of what its error string says; held back, so a failure is said once.
    static QList<std::tuple<QtMsgType, QString>> held;
    held.clear();
    const QtMessageHandler previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        held.append({type, text});
    });
    QWidget *form = load(&f, parent);
    qInstallMessageHandler(previous);
    const QString reason = errorString();
    for (const auto &[type, text] : std::as_const(held))
        if (form || reason.isEmpty() || !text.contains(reason))
            qt_message_output(type, QMessageLogContext(), text);
    if (!form)
        *error = QStringLiteral("%1: %2").arg(file, reason);
    return form;
}

QString dumpProperties(const QWidget *form)
{
    QString out;
    for (UserControl *c : form->findChildren<UserControl *>()) {
        MemoryPropertyBag bag;
        c->WriteProperties(bag);
        out += QStringLiteral("%1 (%2)\n").arg(c->objectName(), QString::fromLatin1(c->metaObject()->className()));
        for (const auto &[name, value] : bag.entries())
            out += QStringLiteral("  %1 = %2\n").arg(name, value.debugString());
    }
    return out;
}

QList<QWidget *> controlsInTabOrder(QWidget *form)
{
    QList<QWidget *> order;
    auto controlOf = [form](QWidget *w) -> QWidget * {
        for (; w && w != form; w = w->parentWidget())
            if (qobject_cast<UserControl *>(w))
                return w;
        return nullptr;
    };
    for (QWidget *w = form->nextInFocusChain(); w && w != form; w = w->nextInFocusChain()) {
        if (QWidget *c = controlOf(w); c && !order.contains(c))
            order << c;
    }
    // Controls with nothing to focus (a progress bar) still belong to the form.
    for (UserControl *c : form->findChildren<UserControl *>())
        if (!order.contains(c))
            order << c;
    return order;
}

} // namespace kel::kelform
