#pragma once
// Turns a classic form into Qt widgets: the library's controls through the class factory and
// their own property reading, the designer's stock controls as their nearest Qt widgets, and
// anything else as a visible placeholder. Nothing of the form's code is run.
#include "frmreader.h"

#include <QHash>
#include <QPointer>
#include <QWidget>
#include <memory>

namespace kel::classic {

struct ImportReport {
    struct Item {
        int line = 0;
        QString text;
    };
    QString file;
    int converted = 0;
    QList<Item> placeholders;   // another library's control: its class and name
    QList<Item> timers;         // listed, never shown
    QList<Item> notCarried;     // properties with no Qt counterpart here
    QList<Problem> damaged;     // .frx records cut short: what there was is used
    QList<EventProcedure> events;

    QString text() const;
};

struct ImportOptions {
    QString codePage = QStringLiteral("windows-1252");
};

// A form built from a .frm. `carried` names, per widget, the Qt properties the import set, so
// that the .ui writer writes those and nothing else.
struct ImportedForm {
    std::unique_ptr<QWidget> window;
    ImportReport report;
    QHash<const QObject *, QList<QByteArray>> carried;
    QList<QWidget *> tabOrder;
};

// Reads `frmPath` (and the .frx files it names, beside it) and builds the form. False with
// *error naming the file, the line or offset and the problem; then nothing is built.
bool importForm(const QString &frmPath, const ImportOptions &options, ImportedForm *out, Problem *error);

// The widget name a control gets: its own, or "name_index" in a control array.
QString widgetName(const FrmControl &control);

} // namespace kel::classic
