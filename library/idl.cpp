#include "library/typemodel.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

namespace kel::typemodel {

namespace {

QString hexId(qint32 id)
{
    // Standard ids are negative; IDL shows them as their unsigned bit pattern.
    return u"0x%1"_s.arg(quint32(id), 8, 16, QChar(u'0'));
}

QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString argument(const Argument &a)
{
    QStringList attrs{u"in"_s};
    if (a.byRef)
        attrs << u"out"_s;
    if (a.optional) {
        attrs << u"optional"_s;
        if (!a.defaultValue.isEmpty())
            attrs << u"defaultvalue(%1)"_s.arg(a.defaultValue);
    }
    return u"[%1] %2%3 %4"_s.arg(attrs.join(u", "), typeName(a.type), a.byRef ? u"*"_s : QString(), a.name);
}

QString signature(const QString &attrs, const QString &name, QStringList params)
{
    return u"[%1] HRESULT %2(%3);"_s.arg(attrs, name, params.join(u", "));
}

QStringList memberLines(const Member &m)
{
    QStringList args;
    for (const Argument &a : m.args)
        args << argument(a);
    const QString hidden = m.hidden ? u", hidden"_s : QString();
    const QString id = u"id(%1)"_s.arg(hexId(m.dispid));
    const QString retval = u"[out, retval] %1* pVal"_s.arg(typeName(m.type));

    if (m.access == Access::Method) {
        QStringList params = args;
        if (m.type != VType::Void)
            params << retval;
        return {signature(id + hidden, m.name, params)};
    }

    QStringList lines{signature(id + u", propget"_s + hidden, m.name, args + QStringList{retval})};
    if (m.access == Access::ReadWrite)
        lines << signature(id + u", propput"_s + hidden, m.name,
                           args + QStringList{u"[in] %1 pVal"_s.arg(typeName(m.type))});
    else if (m.access == Access::ReadWriteByRef)
        lines << signature(id + u", propput"_s + hidden, m.name,
                           args + QStringList{u"[in, out] %1* pVal"_s.arg(typeName(m.type))});
    return lines;
}

QString eventLine(const Event &e)
{
    QStringList args;
    for (const Argument &a : e.args)
        args << argument(a);
    return u"[id(%1)] void %2(%3);"_s.arg(hexId(e.dispid), e.name, args.join(u", "));
}

} // namespace

QString dumpIdl()
{
    const Library &lib = library();
    QString out;
    QTextStream s(&out);
    const auto ind = [](int level) { return QString(level * 4, u' '); };

    s << "// " << lib.name << " type library, file version " << lib.fileVersion << "\n\n";
    s << "[uuid(" << uuidText(lib.libraryId) << "), version(" << lib.typeLibVersion << ")]\n";
    s << "library " << lib.name << "\n{\n";
    s << ind(1) << "importlib(\"stdole2.tlb\");\n";

    for (const Enumeration &e : lib.enums) {
        s << '\n' << ind(1) << "typedef [uuid(" << uuidText(stableUuid(e.name)) << ")] enum {\n";
        for (std::size_t i = 0; i < e.values.size(); ++i)
            s << ind(2) << e.values[i].name << " = " << e.values[i].value
              << (i + 1 < e.values.size() ? ",\n" : "\n");
        s << ind(1) << "} " << e.name << ";\n";
    }

    for (const ClassInfo &c : lib.classes) {
        s << '\n' << ind(1) << "[uuid(" << uuidText(c.interfaceId)
          << "), hidden, dual, nonextensible, oleautomation]\n";
        s << ind(1) << "interface " << c.dispatchInterface() << " : IDispatch {\n";
        for (const Member &m : c.members)
            for (const QString &line : memberLines(m))
                s << ind(2) << line << '\n';
        s << ind(1) << "};\n";

        if (c.hasEventInterface()) {
            s << '\n' << ind(1) << "[uuid(" << uuidText(c.eventInterfaceId) << ")]\n";
            s << ind(1) << "dispinterface " << c.eventInterface() << " {\n";
            s << ind(2) << "properties:\n" << ind(2) << "methods:\n";
            for (const Event &e : c.events)
                s << ind(3) << eventLine(e) << '\n';
            s << ind(1) << "};\n";
        }

        s << '\n' << ind(1) << "[uuid(" << uuidText(c.classId) << ')' << (c.isControl ? ", control" : "") << "]\n";
        s << ind(1) << "coclass " << c.name << " {\n";
        s << ind(2) << "[default] interface " << c.dispatchInterface() << ";\n";
        if (c.hasEventInterface())
            s << ind(2) << "[default, source] dispinterface " << c.eventInterface() << ";\n";
        s << ind(1) << "};\n";
    }

    s << "};\n";
    s.flush();
    return out;
}

} // namespace kel::typemodel
