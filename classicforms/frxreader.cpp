#include "frxreader.h"

#include <QCoreApplication>
#include <QtEndian>

namespace kel::classic {

namespace {
QString tr(const char *text) { return QCoreApplication::translate("kel::classic::FrxReader", text); }
} // namespace

// Reads little-endian numbers and byte runs from one record, remembering where it started and
// whether it ran past the end of the file.
class FrxFile::Cursor
{
public:
    Cursor(const FrxFile &frx, quint32 offset) : m_frx(frx), m_start(offset), m_pos(offset) {}

    bool start(Problem *error) const
    {
        if (m_start >= quint64(m_frx.m_data.size())) {
            *error = m_frx.problem(m_start, tr("offset past the end of the file (%1 bytes)").arg(m_frx.m_data.size()));
            return false;
        }
        return true;
    }
    // A fixed-size field: not there is an error (the record's own header is cut off).
    template<class T> bool number(T *out, Problem *error)
    {
        if (m_pos + sizeof(T) > quint64(m_frx.m_data.size())) {
            *error = m_frx.problem(m_start, tr("record cut off in its header"));
            return false;
        }
        *out = qFromLittleEndian<T>(m_frx.m_data.constData() + m_pos);
        m_pos += sizeof(T);
        return true;
    }
    // A run of declared length: what the file holds of it, noting a shortfall once.
    QByteArrayView bytes(quint64 length)
    {
        const quint64 have = std::min<quint64>(length, quint64(m_frx.m_data.size()) - std::min<quint64>(m_pos, m_frx.m_data.size()));
        if (have < length && !m_short)
            m_short = tr("record declares %1 bytes, the file holds %2").arg(length).arg(have);
        const QByteArrayView out(m_frx.m_data.constData() + std::min<quint64>(m_pos, m_frx.m_data.size()), qsizetype(have));
        m_pos += length;
        return out;
    }
    bool text(QByteArrayView raw, QString *out, Problem *error) const
    {
        const std::optional<QString> t = decodeText(raw, m_frx.m_codePage);
        if (!t) {
            *error = m_frx.problem(m_start, tr("byte sequence not valid in %1").arg(m_frx.m_codePage));
            return false;
        }
        *out = *t;
        return true;
    }
    void reportDamage(Problem *damage) const
    {
        if (m_short && damage)
            *damage = m_frx.problem(m_start, *m_short);
    }
    bool cutShort() const { return m_short.has_value(); }

private:
    const FrxFile &m_frx;
    quint64 m_start, m_pos;
    std::optional<QString> m_short;
};

bool FrxFile::readLongString(quint32 offset, QString *out, Problem *error, Problem *damage) const
{
    Cursor c(*this, offset);
    quint32 length = 0;
    if (!c.start(error) || !c.number(&length, error) || !c.text(c.bytes(length), out, error))
        return false;
    c.reportDamage(damage);
    return true;
}

bool FrxFile::readShortString(quint32 offset, QString *out, Problem *error, Problem *damage) const
{
    Cursor c(*this, offset);
    quint8 shortLength = 0;
    if (!c.start(error) || !c.number(&shortLength, error))
        return false;
    quint32 length = shortLength;
    if (shortLength == 0xFF) {
        quint16 longLength = 0;
        if (!c.number(&longLength, error))
            return false;
        length = longLength;
    }
    if (!c.text(c.bytes(length), out, error))
        return false;
    c.reportDamage(damage);
    return true;
}

bool FrxFile::readList(quint32 offset, QStringList *out, Problem *error, Problem *damage) const
{
    Cursor c(*this, offset);
    quint16 count = 0, width = 0;
    out->clear();
    if (!c.start(error) || !c.number(&count, error))
        return false;
    if (count == 0)
        return true;
    if (!c.number(&width, error))
        return false;
    for (quint16 i = 0; i < count && !c.cutShort(); ++i) {
        quint16 length = 0;
        QString item;
        if (!c.number(&length, error) || !c.text(c.bytes(length), &item, error))
            return false;
        out->append(item);
    }
    c.reportDamage(damage);
    return true;
}

bool FrxFile::readPicture(quint32 offset, QByteArray *out, Problem *error, Problem *damage) const
{
    Cursor c(*this, offset);
    quint32 total = 0, length = 0;
    out->clear();
    if (!c.start(error) || !c.number(&total, error))
        return false;
    const QByteArrayView magic = c.bytes(4);
    if (c.cutShort() || magic != QByteArrayView("lt\0\0", 4)) {
        *error = problem(offset, tr("not a picture record"));
        return false;
    }
    if (!c.number(&length, error))
        return false;
    if (total < 8 || length > total - 8) {
        *error = problem(offset, tr("picture sizes disagree (%1 and %2)").arg(total).arg(length));
        return false;
    }
    *out = c.bytes(length).toByteArray();
    c.reportDamage(damage);
    return true;
}

bool FrxFile::readFont(quint32 offset, QFont *out, Problem *error, Problem *damage) const
{
    Cursor c(*this, offset);
    quint32 total = 0, size = 0;
    quint8 version = 0, flags = 0, nameLength = 0;
    quint16 charset = 0, weight = 0;
    if (!c.start(error) || !c.number(&total, error))
        return false;
    c.bytes(16); // CLSID of the standard font
    if (!c.number(&version, error) || !c.number(&charset, error) || !c.number(&flags, error)
        || !c.number(&weight, error) || !c.number(&size, error) || !c.number(&nameLength, error))
        return false;
    QString name;
    if (!c.text(c.bytes(nameLength), &name, error))
        return false;
    QFont font(name);
    font.setPointSizeF(size > 0 ? size / 10000.0 : 8.25);
    font.setBold(weight >= 600);
    font.setItalic(flags & 0x02);
    font.setUnderline(flags & 0x04);
    font.setStrikeOut(flags & 0x08);
    *out = font;
    c.reportDamage(damage);
    return true;
}

} // namespace kel::classic
