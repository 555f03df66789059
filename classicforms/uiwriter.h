#pragma once
// An imported classic form as a Qt Designer form: the same widgets and values, loadable by
// QUiLoader, Designer (with the library's plugin) and uic.
#include "formbuilder.h"

#include <QMap>
#include <QPixmap>

namespace kel::classic {

struct UiDocument {
    QString xml;
    QMap<QString, QPixmap> images; // path relative to the .ui file -> picture
};

// The .ui text of the form; pictures are named under `imageDir` (relative to the .ui).
UiDocument uiDocument(const ImportedForm &form, const QString &imageDir);

// Writes the .ui and its pictures (in "<name>_images/" beside it). Either everything is written
// or, with *error set, nothing.
bool writeUi(const ImportedForm &form, const QString &uiPath, QString *error);

} // namespace kel::classic
