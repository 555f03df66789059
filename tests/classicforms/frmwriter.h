#pragma once
// Writes classic form files the way the classic designer does, for the tests to read back.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringEncoder>
#include <QtEndian>

namespace kel::test {

class FrmWriter
{
public:
    FrmWriter(QString name, QByteArray codePage = "windows-1252", bool crlf = true)
        : m_name(std::move(name)), m_codePage(std::move(codePage)), m_eol(crlf ? "\r\n" : "\n") {}

    QByteArray encode(const QString &s) const { return QStringEncoder(m_codePage.constData())(s); }
    void line(int depth, const QString &text) { m_frm += QByteArray(depth * 3, ' ') + encode(text) + m_eol; }
    void begin(int depth, const QString &cls, const QString &name) { line(depth, QStringLiteral("Begin %1 %2").arg(cls, name)); }
    void end(int depth) { line(depth, QStringLiteral("End")); }
    void prop(int depth, const QString &name, const QString &value) { line(depth, name.leftJustified(16) + QStringLiteral("=   ") + value); }
    static QString quoted(QString s) { return u'"' + s.replace(u'"', QStringLiteral("\"\"")) + u'"'; }

    // A string in the .frx: "$" with a 32-bit length, or a text box's 8-bit length.
    QString frxString(const QString &s, bool dollar)
    {
        const QByteArray bytes = encode(s);
        const qsizetype at = m_frx.size();
        if (dollar)
            put<quint32>(quint32(bytes.size()));
        else if (bytes.size() < 255)
            put<quint8>(quint8(bytes.size()));
        else
            put<quint8>(0xFF), put<quint16>(quint16(bytes.size()));
        m_frx += bytes;
        return ref(at, dollar);
    }
    QString frxList(const QStringList &items)
    {
        const qsizetype at = m_frx.size();
        put<quint16>(quint16(items.size()));
        if (!items.isEmpty()) {
            qsizetype longest = 0;
            for (const QString &i : items)
                longest = std::max(longest, encode(i).size());
            put<quint16>(quint16(longest));
            for (const QString &i : items) {
                put<quint16>(quint16(encode(i).size()));
                m_frx += encode(i);
            }
        }
        return ref(at, false);
    }
    QString frxPicture(const QByteArray &image)
    {
        const qsizetype at = m_frx.size();
        put<quint32>(quint32(image.size() + 8));
        m_frx += QByteArray("lt\0\0", 4);
        put<quint32>(quint32(image.size()));
        m_frx += image;
        return ref(at, false);
    }

    QByteArray frm() const { return QByteArray("VERSION 5.00") + m_eol + m_frm + "Attribute VB_Name = \"" + m_name.toLatin1() + "\"" + m_eol + m_code; }
    QByteArray frx() const { return m_frx; }
    void code(const QString &text) { m_code += encode(text) + m_eol; }
    // Writes name.frm and (when used) name.frx into dir; returns the .frm path.
    QString save(const QString &dir) const
    {
        QFile f(QDir(dir).filePath(m_name + QStringLiteral(".frm")));
        f.open(QIODevice::WriteOnly);
        f.write(frm());
        if (!m_frx.isEmpty()) {
            QFile x(QDir(dir).filePath(m_name + QStringLiteral(".frx")));
            x.open(QIODevice::WriteOnly);
            x.write(m_frx);
        }
        return f.fileName();
    }

private:
    template<class T> void put(T v)
    {
        char b[sizeof(T)];
        qToLittleEndian(v, b);
        m_frx.append(b, sizeof(T));
    }
    QString ref(qsizetype at, bool dollar) const
    {
        return QStringLiteral("%1\"%2.frx\":%3").arg(dollar ? QStringLiteral("$") : QString(), m_name,
                                                    QString::number(at, 16).toUpper().rightJustified(4, u'0'));
    }

    QString m_name;
    QByteArray m_codePage, m_eol, m_frm, m_frx, m_code;
};

} // namespace kel::test
