#pragma once
// The binary half of a classic form: records back to back, no header, little-endian.
#include "frmreader.h"

#include <QByteArray>
#include <QFont>
#include <QStringList>

namespace kel::classic {

class FrxFile
{
public:
    FrxFile() = default;
    FrxFile(const QString &fileName, QByteArray data, QString codePage)
        : m_file(fileName), m_data(std::move(data)), m_codePage(std::move(codePage)) {}

    const QString &fileName() const { return m_file; }
    qint64 size() const { return m_data.size(); }

    // Each reader returns false with *error set when the record cannot be read at all (an offset
    // past the end, a bad length or magic, text not in the code page). A record that starts in
    // the file but runs past its end (a file cut short) gives what there is and sets *damage.

    // "$" strings: a 32-bit length and the bytes.
    bool readLongString(quint32 offset, QString *out, Problem *error, Problem *damage) const;
    // A text box's Text: an 8-bit length (0xFF, then a 16-bit length, when longer) and the bytes.
    bool readShortString(quint32 offset, QString *out, Problem *error, Problem *damage) const;
    // List and ItemData: a 16-bit count, a 16-bit width, then per item a 16-bit length and the bytes.
    bool readList(quint32 offset, QStringList *out, Problem *error, Problem *damage) const;
    // A picture: a 32-bit size, "lt\0\0", a 32-bit size and the image file's bytes (none for
    // an empty picture).
    bool readPicture(quint32 offset, QByteArray *out, Problem *error, Problem *damage) const;
    // A font saved through a property bag: a 32-bit size, the CLSID, then version, charset,
    // flags, weight, size in 1/10000 pt and the name.
    bool readFont(quint32 offset, QFont *out, Problem *error, Problem *damage) const;

private:
    class Cursor;
    Problem problem(qint64 offset, const QString &message) const { return {m_file, 0, offset, message}; }

    QString m_file;
    QByteArray m_data;
    QString m_codePage;
};

} // namespace kel::classic
