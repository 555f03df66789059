#pragma once
// Opens .ui forms with the library's classes made by its own class factory, so a form runs
// without the Designer plugin.
#include <QUiLoader>

namespace kel::kelform {

class FormLoader : public QUiLoader
{
public:
    explicit FormLoader(QObject *parent = nullptr);

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr, const QString &name = QString()) override;

    /// The form in `file`, or nullptr with *error saying why.
    QWidget *loadFile(const QString &file, QWidget *parent, QString *error);
};

/// Every control of the form with its persisted properties, one "name.Property = value" a line,
/// in the order the controls were created.
QString dumpProperties(const QWidget *form);

/// The library's controls in `form` (not the plain Qt widgets), in the order of the focus chain.
QList<QWidget *> controlsInTabOrder(QWidget *form);

} // namespace kel::kelform
