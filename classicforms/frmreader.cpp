#include "frmreader.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringDecoder>

#include <map>
#include <optional>

namespace kel::classic {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("kel::classic::FrmReader", text); }

} // namespace

QString Problem::text() const
{
    if (offset >= 0)
        return QStringLiteral("%1: offset 0x%2: %3").arg(file, QString::number(offset, 16).toUpper(), message);
    if (line > 0)
        return QStringLiteral("%1:%2: %3").arg(file).arg(line).arg(message);
    return QStringLiteral("%1: %2").arg(file, message);
}

const FrmProperty *FrmProperty::find(const QString &name) const
{
    for (const FrmProperty &p : group)
        if (p.name.compare(name, Qt::CaseInsensitive) == 0)
            return &p;
    return nullptr;
}

const FrmProperty *FrmControl::find(const QString &name) const
{
    for (const FrmProperty &p : properties)
        if (p.name.compare(name, Qt::CaseInsensitive) == 0)
            return &p;
    return nullptr;
}

namespace {

// Opening an ICU converter searches hundreds of alias names, and a form is decoded line by line:
// one per code page and thread is kept, and dropped after an error, as an error sticks to it.
// Qt's own converters are cheap and remember a byte-order mark once seen, so each use gets a new one.
class Decoder
{
public:
    explicit Decoder(const QString &codePage) : m_name(codePage.toLatin1())
    {
        if (QStringConverter::encodingForName(m_name.constData())) {
            m_own.emplace(m_name.constData(), QStringDecoder::Flag::Stateless);
            m_decoder = &*m_own;
            return;
        }
        // Made in place and never moved: ICU's error callback holds the decoder's address.
        const auto it = kept().try_emplace(m_name, m_name.constData(), QStringDecoder::Flag::Stateless).first;
        if (!it->second.isValid()) {
            kept().erase(it);
            return;
        }
        m_decoder = &it->second;
    }
    QStringDecoder *get() const { return m_decoder; }
    void dropIfSpoilt()
    {
        if (!m_own && m_decoder && m_decoder->hasError()) {
            kept().erase(m_name);
            m_decoder = nullptr;
        }
    }

private:
    static std::map<QByteArray, QStringDecoder> &kept()
    {
        thread_local std::map<QByteArray, QStringDecoder> decoders;
        return decoders;
    }
    QByteArray m_name;
    std::optional<QStringDecoder> m_own;
    QStringDecoder *m_decoder = nullptr;
};

} // namespace

bool knownCodePage(const QString &codePage)
{
    return Decoder(codePage).get() != nullptr;
}

std::optional<QString> decodeText(QByteArrayView bytes, const QString &codePage)
{
    Decoder opened(codePage);
    QStringDecoder *decoder = opened.get();
    if (!decoder)
        return std::nullopt;
    // Windows-1252 leaves five bytes undefined; the converter would drop them without a word.
    if (decoder->name() == QByteArrayView("windows-1252") || codePage.compare(u"windows-1252", Qt::CaseInsensitive) == 0)
        for (const char c : bytes)
            if (c == '\x81' || c == '\x8D' || c == '\x8F' || c == '\x90' || c == '\x9D')
                return std::nullopt;
    QString text = decoder->decode(bytes);
    if (decoder->hasError()) {
        opened.dropIfSpoilt();
        return std::nullopt;
    }
    return text;
}

namespace {

class Parser
{
public:
    Parser(const QString &file, FrmForm *form, Problem *error) : m_file(file), m_form(form), m_error(error) {}

    bool fail(int line, const QString &message)
    {
        *m_error = {m_file, line, -1, message};
        return false;
    }

    bool parse(const QList<QString> &lines);

private:
    bool parseProperty(const QString &text, int line, FrmProperty *out);
    bool parseValue(QStringView text, int line, FrmProperty *out);
    void collectEvents(const QList<QString> &lines, qsizetype from);

    QString m_file;
    FrmForm *m_form;
    Problem *m_error;
};

// `Begin Library.Class Name`
const QRegularExpression &beginPattern()
{
    static const QRegularExpression re(QStringLiteral(R"(^Begin\s+([A-Za-z_]\w*)\.([A-Za-z_]\w*)\s+([A-Za-z_]\w*)\s*$)"));
    return re;
}

// `BeginProperty Font {CLSID}` (the CLSID may be missing)
const QRegularExpression &beginPropertyPattern()
{
    static const QRegularExpression re(QStringLiteral(R"(^BeginProperty\s+([A-Za-z_][\w().]*)\s*(\{[0-9A-Fa-f-]+\})?\s*$)"));
    return re;
}

// A property name: letters, digits, indexes and dots, as `Tab(0).ControlCount`.
const QRegularExpression &propertyPattern()
{
    static const QRegularExpression re(QStringLiteral(R"(^([A-Za-z_][\w]*(?:\(\d+\))?(?:\.[A-Za-z_]\w*(?:\(\d+\))?)*)\s*=\s*(.*)$)"));
    return re;
}

bool Parser::parseValue(QStringView text, int line, FrmProperty *out)
{
    text = text.trimmed();
    if (text.isEmpty())
        return fail(line, tr("property \"%1\" has no value").arg(out->name));
    const bool dollar = text.startsWith(u'$');
    if (dollar)
        text = text.mid(1);
    if (text.startsWith(u'"')) {
        QString value;
        qsizetype i = 1;
        for (;;) {
            if (i >= text.size())
                return fail(line, tr("unclosed string in property \"%1\"").arg(out->name));
            if (text[i] == u'"') {
                if (i + 1 < text.size() && text[i + 1] == u'"') {
                    value += u'"';
                    i += 2;
                    continue;
                }
                ++i;
                break;
            }
            value += text[i++];
        }
        QStringView rest = text.mid(i).trimmed();
        if (rest.startsWith(u':')) {
            bool ok = false;
            const QStringView hex = rest.mid(1).trimmed();
            const qsizetype end = hex.indexOf(u'\'');
            const QStringView digits = (end < 0 ? hex : hex.left(end)).trimmed();
            const uint offset = digits.toUInt(&ok, 16);
            if (!ok || digits.size() < 4)
                return fail(line, tr("bad .frx offset \"%1\" in property \"%2\"").arg(digits.toString(), out->name));
            out->frx = FrxRef{value, offset, dollar};
        } else if (dollar) {
            return fail(line, tr("\"$\" without a .frx offset in property \"%1\"").arg(out->name));
        } else if (!rest.isEmpty() && !rest.startsWith(u'\'')) {
            return fail(line, tr("text after the string in property \"%1\"").arg(out->name));
        }
        out->value = value;
        out->quoted = !out->frx;
        return true;
    }
    if (dollar)
        return fail(line, tr("\"$\" without a string in property \"%1\"").arg(out->name));
    const qsizetype comment = text.indexOf(u'\'');
    out->value = (comment < 0 ? text : text.left(comment)).trimmed().toString();
    if (out->value.isEmpty())
        return fail(line, tr("property \"%1\" has no value").arg(out->name));
    return true;
}

bool Parser::parseProperty(const QString &text, int line, FrmProperty *out)
{
    const QRegularExpressionMatch m = propertyPattern().match(text);
    if (!m.hasMatch())
        return fail(line, tr("malformed line \"%1\"").arg(text.left(60)));
    out->name = m.captured(1);
    out->line = line;
    return parseValue(m.capturedView(2), line, out);
}

bool Parser::parse(const QList<QString> &lines)
{
    qsizetype i = 0;
    auto skipBlank = [&] { while (i < lines.size() && lines[i].trimmed().isEmpty()) ++i; };
    skipBlank();
    if (i >= lines.size() || !lines[i].trimmed().startsWith(u"VERSION ", Qt::CaseInsensitive))
        return fail(int(i + 1), tr("not a form file: no VERSION line"));
    m_form->version = lines[i].trimmed().mid(8).trimmed();
    ++i;
    // Component libraries (and anything else the designer writes before the form).
    for (;; ++i) {
        skipBlank();
        if (i >= lines.size())
            return fail(int(i), tr("no Begin block"));
        const QString t = lines[i].trimmed();
        if (t.startsWith(u"Begin ", Qt::CaseInsensitive))
            break;
        if (t.startsWith(u"Object", Qt::CaseInsensitive) || t.startsWith(u"Reference", Qt::CaseInsensitive))
            m_form->objects << t;
        else
            return fail(int(i + 1), tr("malformed line \"%1\"").arg(t.left(60)));
    }

    // The blocks: a stack of open controls and, inside them, of open property groups.
    QList<FrmControl *> controls;
    QList<FrmProperty *> groups;
    QList<int> groupLines;
    for (; i < lines.size(); ++i) {
        const int line = int(i + 1);
        const QString t = lines[i].trimmed();
        if (t.isEmpty())
            continue;
        if (t.startsWith(u"BeginProperty", Qt::CaseInsensitive)) {
            const QRegularExpressionMatch m = beginPropertyPattern().match(t);
            if (!m.hasMatch() || controls.isEmpty())
                return fail(line, tr("malformed line \"%1\"").arg(t.left(60)));
            FrmProperty group;
            group.name = m.captured(1);
            group.clsid = m.captured(2);
            group.isGroup = true;
            group.line = line;
            QList<FrmProperty> &list = groups.isEmpty() ? controls.last()->properties : groups.last()->group;
            list.append(group);
            groups.append(&list.last());
            groupLines.append(line);
            continue;
        }
        if (t.compare(u"EndProperty", Qt::CaseInsensitive) == 0) {
            if (groups.isEmpty())
                return fail(line, tr("EndProperty without BeginProperty"));
            groups.removeLast();
            groupLines.removeLast();
            continue;
        }
        if (t.startsWith(u"Begin ", Qt::CaseInsensitive) || t.compare(u"Begin", Qt::CaseInsensitive) == 0) {
            if (!groups.isEmpty())
                return fail(line, tr("Begin inside the property group opened at line %1").arg(groupLines.last()));
            const QRegularExpressionMatch m = beginPattern().match(t);
            if (!m.hasMatch())
                return fail(line, tr("malformed Begin line \"%1\"").arg(t.left(60)));
            FrmControl c;
            c.library = m.captured(1);
            c.className = m.captured(2);
            c.name = m.captured(3);
            c.line = line;
            if (controls.isEmpty()) {
                m_form->root = c;
                controls.append(&m_form->root);
            } else {
                controls.last()->children.append(c);
                controls.append(&controls.last()->children.last());
            }
            continue;
        }
        if (t.compare(u"End", Qt::CaseInsensitive) == 0) {
            if (!groups.isEmpty())
                return fail(line, tr("End inside the property group opened at line %1").arg(groupLines.last()));
            controls.removeLast();
            if (controls.isEmpty()) {
                ++i;
                break;
            }
            continue;
        }
        FrmProperty p;
        if (!parseProperty(t, line, &p))
            return false;
        (groups.isEmpty() ? controls.last()->properties : groups.last()->group).append(p);
    }
    if (!groups.isEmpty())
        return fail(int(lines.size()), tr("property group \"%1\" opened at line %2 is not closed").arg(groups.last()->name).arg(groupLines.last()));
    if (!controls.isEmpty())
        return fail(int(lines.size()), tr("block \"%1\" opened at line %2 is not closed").arg(controls.last()->name).arg(controls.last()->line));

    // Attributes, then the code (never run; its event procedures are listed).
    for (; i < lines.size(); ++i) {
        const QString t = lines[i].trimmed();
        if (t.isEmpty())
            continue;
        if (!t.startsWith(u"Attribute ", Qt::CaseInsensitive))
            break;
        m_form->attributes << t.mid(10).trimmed();
    }
    collectEvents(lines, i);
    return true;
}

void Parser::collectEvents(const QList<QString> &lines, qsizetype from)
{
    static const QRegularExpression sub(QStringLiteral(R"(^\s*(?:(?:Private|Public|Friend)\s+)?(?:Static\s+)?Sub\s+([A-Za-z]\w*)_([A-Za-z]\w*)\s*\()"),
                                        QRegularExpression::CaseInsensitiveOption);
    QStringList owners{QStringLiteral("Form"), QStringLiteral("MDIForm"), QStringLiteral("UserControl")};
    QList<const FrmControl *> stack{&m_form->root};
    while (!stack.isEmpty()) {
        const FrmControl *c = stack.takeLast();
        owners << c->name;
        for (const FrmControl &child : c->children)
            stack << &child;
    }
    for (qsizetype i = from; i < lines.size(); ++i) {
        const QRegularExpressionMatch m = sub.match(lines[i]);
        if (m.hasMatch() && owners.contains(m.captured(1), Qt::CaseInsensitive))
            m_form->events.append({m.captured(1) + u'_' + m.captured(2), int(i + 1)});
    }
}

} // namespace

bool readFrm(const QByteArray &bytes, const QString &fileName, const QString &codePage, FrmForm *form, Problem *error)
{
    *form = FrmForm{};
    form->file = fileName;
    if (!knownCodePage(codePage)) {
        *error = {fileName, 0, -1, tr("unknown encoding \"%1\"").arg(codePage)};
        return false;
    }
    // A form re-saved as UTF-8 by another editor: every byte sequence valid UTF-8 and some
    // beyond ASCII. Text in a single- or double-byte code page almost never passes that test.
    const bool nonAscii = std::any_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) >= 0x80; });
    form->utf8 = nonAscii && decodeText(bytes, QStringLiteral("UTF-8")).has_value();
    const QString encoding = form->utf8 ? QStringLiteral("UTF-8") : codePage;

    QList<QString> lines;
    qsizetype start = 0;
    while (start <= bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        if (end < 0)
            end = bytes.size();
        QByteArrayView raw(bytes.constData() + start, end - start);
        if (raw.endsWith('\r'))
            raw.chop(1);
        const std::optional<QString> text = decodeText(raw, encoding);
        if (!text) {
            *error = {fileName, int(lines.size() + 1), -1, tr("byte sequence not valid in %1").arg(encoding)};
            return false;
        }
        lines.append(*text);
        if (end == bytes.size())
            break;
        start = end + 1;
    }
    return Parser(fileName, form, error).parse(lines);
}

} // namespace kel::classic
