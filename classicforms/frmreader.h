#pragma once
// The text half of a classic form: the VERSION header, the component libraries, nested
// Begin/End blocks with their property lines, the attributes and the code after them.
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace kel::classic {

// Something wrong with the input: the file, where (a line, or an offset into a .frx), and what.
struct Problem {
    QString file;
    int line = 0;          // 1-based; 0 when the place is an offset
    qint64 offset = -1;    // into a .frx; -1 when the place is a line
    QString message;
    QString text() const;
};

// A value kept in the .frx: `"Form1.frx":0A3C`, or `$"Form1.frx":0A3C` for a 32-bit-length string.
struct FrxRef {
    QString file;
    quint32 offset = 0;
    bool dollar = false;
};

struct FrmProperty {
    QString name;          // as written: "Caption", "TabCaption(0)", "Tab(0).ControlCount"
    QString value;         // a quoted string unquoted, else the raw token without its comment
    bool quoted = false;
    std::optional<FrxRef> frx;
    int line = 0;
    // A BeginProperty group (a font): its own lines.
    bool isGroup = false;
    QString clsid;
    QList<FrmProperty> group;

    const FrmProperty *find(const QString &name) const;
};

struct FrmControl {
    QString library;       // "VB", "KelControls8", ...
    QString className;     // "Form", "KelText", ...
    QString name;
    int line = 0;
    QList<FrmProperty> properties;
    QList<FrmControl> children;

    const FrmProperty *find(const QString &name) const;
    QString qualifiedClass() const { return library + u'.' + className; }
};

// A Sub in the code section named like an event of a control or of the form.
struct EventProcedure {
    QString name;          // "cmdSave_Click"
    int line = 0;
};

struct FrmForm {
    QString file;
    QString version;
    QStringList objects;   // the component libraries: `Object = ...` lines
    FrmControl root;
    QStringList attributes;
    QList<EventProcedure> events;
    bool utf8 = false;     // the text was UTF-8 rather than the code page
};

// Reads a form's text. `codePage` names the encoding of strings ("windows-1252" by default); a
// text that is valid UTF-8 with non-ASCII characters is read as UTF-8. False with *error set when
// the text is malformed; nothing is guessed.
bool readFrm(const QByteArray &bytes, const QString &fileName, const QString &codePage, FrmForm *form, Problem *error);

// Whether the name is an encoding this build can decode.
bool knownCodePage(const QString &codePage);
// The bytes in that encoding; nullopt when a byte sequence has no character there.
std::optional<QString> decodeText(QByteArrayView bytes, const QString &codePage);

} // namespace kel::classic
