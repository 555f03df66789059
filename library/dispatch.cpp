#include "library/dispatch.h"

#include "library/runtimeinterface.h"
#include "library/typemodel.h"

#include <QDateTime>
#include <QHash>
#include <QMetaMethod>
#include <QMetaProperty>

#include <algorithm>
#include <cmath>

namespace kel {

using namespace typemodel;

namespace {

const ClassInfo *classOf(const QObject *object)
{
    // Loading a form dispatches every property of every control: look each class up once.
    static QHash<const QMetaObject *, const ClassInfo *> known;
    const QMetaObject *const type = object->metaObject();
    if (const auto it = known.constFind(type); it != known.cend())
        return *it;
    const ClassInfo *found = nullptr;
    for (const QMetaObject *mo = type; mo && !found; mo = mo->superClass()) {
        QString name = QString::fromLatin1(mo->className());
        name = name.mid(name.lastIndexOf(u':') + 1);
        found = findClass(name);
    }
    known.insert(type, found);
    return found;
}

int propertyIndex(const QMetaObject *mo, const Member &m)
{
    static QHash<std::pair<const QMetaObject *, const Member *>, int> known;
    const auto key = std::make_pair(mo, &m);
    if (const auto it = known.constFind(key); it != known.cend())
        return *it;
    return *known.insert(key, mo->indexOfProperty(m.name.toLatin1().constData()));
}

// Converts v to the member type t the way a late-bound call would; empty error on success.
QString convert(const Variant &v, VType t, QVariant *out)
{
    bool ok = true;
    double d = 0;
    switch (t) {
    case VType::String:
        if (v.isNull())
            return QStringLiteral("Invalid use of Null");
        *out = QVariant::fromValue(v.toString());
        return {};
    case VType::Boolean: *out = QVariant::fromValue(v.toBool(&ok)); break;
    case VType::Int16: case VType::Int32: case VType::DaysFlag: {
        d = std::nearbyint(v.toDouble(&ok));
        const bool small = t == VType::Int16;
        // Written so that NaN fails too: it fits no integer.
        if (ok && !(d >= (small ? -32768.0 : -2147483648.0) && d <= (small ? 32767.0 : 2147483647.0)))
            return QStringLiteral("Overflow");
        *out = small ? QVariant::fromValue(qint16(ok ? d : 0)) : QVariant::fromValue(qint32(ok ? d : 0));
        break;
    }
    case VType::Double: *out = QVariant::fromValue(v.toDouble(&ok)); break;
    case VType::Date: *out = QVariant::fromValue(v.toDate(&ok)); ok = ok || v.type() == Variant::Type::Date; break;
    case VType::Variant: *out = QVariant::fromValue(v); return {};
    case VType::Object: *out = QVariant::fromValue(v.toObject()); ok = v.type() == Variant::Type::Object; break;
    case VType::Void: case VType::StringArray:
        return QStringLiteral("Type not supported through dispatch");
    }
    return ok ? QString() : QStringLiteral("Type mismatch");
}

// What a property or method gave, as a dispatch value; enumerations read as their number.
Variant readBack(const QVariant &q)
{
    if (const std::optional<Variant> v = fromQVariant(q))
        return *v;
    if (q.canConvert<qint32>())
        return q.value<qint32>();
    return {};
}

// What the type model says a property is, whatever wider Qt type carries it.
Variant asMemberType(const Variant &v, VType t)
{
    switch (t) {
    case VType::Int16: return numberAs(v, Variant::Type::Integer);
    case VType::Int32: case VType::DaysFlag: return numberAs(v, Variant::Type::Long);
    case VType::Double: return numberAs(v, Variant::Type::Double);
    default: return v;
    }
}

Variant defaultArgument(const Argument &a)
{
    if (a.type == VType::Boolean)
        return a.defaultValue.compare(u"true", Qt::CaseInsensitive) == 0 || a.defaultValue == u"-1";
    if (a.type == VType::String)
        return a.defaultValue;
    return Variant(a.defaultValue.toDouble());
}

DispatchResult fail(const ClassInfo *cls, const QString &member, const QString &why)
{
    return {false, QStringLiteral("%1.%2: %3").arg(cls ? cls->name : QStringLiteral("?"), member, why), {}};
}

DispatchResult invokeMember(QObject *object, const ClassInfo &cls, const Member &m, DispatchKind kind,
                            std::vector<Variant> &args)
{
    const QMetaObject *mo = object->metaObject();
    const int propIndex = m.args.empty() ? propertyIndex(mo, m) : -1;

    if (kind == DispatchKind::PropertyPut) {
        if (m.access == Access::Method || m.access == Access::ReadOnly)
            return fail(&cls, m.name, QStringLiteral("the member cannot be assigned"));
        if (args.size() != 1)
            return fail(&cls, m.name, QStringLiteral("wrong number of arguments"));
        QVariant value;
        if (const QString err = convert(args[0], m.type, &value); !err.isEmpty())
            return fail(&cls, m.name, err);
        if (propIndex < 0 || !mo->property(propIndex).write(object, value))
            return fail(&cls, m.name, QStringLiteral("the object has no writable property of that name"));
        return {true, {}, {}};
    }

    if (m.access != Access::Method && propIndex >= 0) {
        if (!args.empty())
            return fail(&cls, m.name, QStringLiteral("wrong number of arguments"));
        return {true, {}, asMemberType(readBack(mo->property(propIndex).read(object)), m.type)};
    }

    const size_t required = std::count_if(m.args.begin(), m.args.end(), [](const Argument &a) { return !a.optional; });
    if (args.size() < required || args.size() > m.args.size())
        return fail(&cls, m.name, QStringLiteral("wrong number of arguments"));

    const QByteArray name = m.name.toLatin1();
    QMetaMethod method;
    for (int i = 0; i < mo->methodCount(); ++i) {
        const QMetaMethod cand = mo->method(i);
        if (cand.name() == name && cand.parameterCount() == int(m.args.size())) {
            method = cand;
            break;
        }
    }
    if (!method.isValid())
        return fail(&cls, m.name, QStringLiteral("the object has no such method"));

    std::vector<QVariant> storage(m.args.size());
    std::vector<void *> argv(m.args.size() + 1, nullptr);
    for (size_t i = 0; i < m.args.size(); ++i) {
        const Variant given = i < args.size() ? args[i] : defaultArgument(m.args[i]);
        if (const QString err = convert(given, m.args[i].type, &storage[i]); !err.isEmpty())
            return fail(&cls, m.name, QStringLiteral("argument %1: %2").arg(m.args[i].name, err));
        argv[i + 1] = storage[i].data();
    }
    QVariant ret;
    if (method.returnMetaType().isValid() && method.returnMetaType().id() != QMetaType::Void) {
        ret = QVariant(method.returnMetaType());
        argv[0] = ret.data();
    }
    QMetaObject::metacall(object, QMetaObject::InvokeMetaMethod, method.methodIndex(), argv.data());
    for (size_t i = 0; i < args.size(); ++i)
        if (m.args[i].byRef)
            args[i] = readBack(storage[i]);
    return {true, {}, ret.isValid() ? readBack(ret) : Variant()};
}

// A failing service of the run-time object surfaces as an error result, never as a crash.
DispatchResult guarded(QObject *object, const ClassInfo &cls, const Member &m, DispatchKind kind, std::vector<Variant> &args)
{
    try {
        return invokeMember(object, cls, m, kind, args);
    } catch (const std::exception &e) {
        return fail(&cls, m.name, QString::fromUtf8(e.what()));
    }
}

} // namespace

DispatchResult dispatchInvoke(QObject *object, qint32 dispid, DispatchKind kind, std::vector<Variant> &args)
{
    const ClassInfo *cls = object ? classOf(object) : nullptr;
    if (!cls)
        return fail(nullptr, QString::number(dispid), QStringLiteral("not an object of this library"));
    const Member *m = findMember(*cls, dispid);
    if (!m)
        return fail(cls, QStringLiteral("0x%1").arg(quint32(dispid), 8, 16, QLatin1Char('0')), QStringLiteral("unknown dispatch id"));
    return guarded(object, *cls, *m, kind, args);
}

DispatchResult dispatchInvoke(QObject *object, QStringView name, DispatchKind kind, std::vector<Variant> &args)
{
    const ClassInfo *cls = object ? classOf(object) : nullptr;
    if (!cls)
        return fail(nullptr, name.toString(), QStringLiteral("not an object of this library"));
    const Member *m = findMember(*cls, name);
    if (!m)
        return fail(cls, name.toString(), QStringLiteral("unknown member"));
    return guarded(object, *cls, *m, kind, args);
}

Variant dispatchGet(QObject *object, QStringView name, std::vector<Variant> args)
{
    return dispatchInvoke(object, name, DispatchKind::PropertyGet, args).value;
}

bool dispatchPut(QObject *object, QStringView name, const Variant &value, QString *error)
{
    std::vector<Variant> args{value};
    const DispatchResult r = dispatchInvoke(object, name, DispatchKind::PropertyPut, args);
    if (error)
        *error = r.error;
    return r.ok;
}

} // namespace kel
