#include "platform/propertybag.h"

namespace kel {

bool coerceToTypeOf(const Variant &stored, const Variant &like, Variant *out)
{
    bool ok = true;
    switch (like.type()) {
    case Variant::Type::Empty: case Variant::Type::Null: case Variant::Type::Object: *out = stored; return true;
    case Variant::Type::Boolean: *out = stored.toBool(&ok); break;
    case Variant::Type::Integer: *out = stored.toInt16(&ok); break;
    case Variant::Type::Long: *out = stored.toInt32(&ok); break;
    case Variant::Type::Double: *out = stored.toDouble(&ok); break;
    case Variant::Type::Date: *out = stored.type() == Variant::Type::Date ? stored : Variant(stored.toDate(&ok)); break;
    case Variant::Type::String:
        if (stored.isNull()) { ok = false; break; }
        *out = stored.toString();
        break;
    }
    return ok;
}

bool sameBagValue(const Variant &a, const Variant &b)
{
    Variant c;
    return coerceToTypeOf(a, b, &c) && c == b;
}

qsizetype MemoryPropertyBag::indexOf(const QString &name) const
{
    const Qt::CaseSensitivity cs = m_match == NameMatch::Exact ? Qt::CaseSensitive : Qt::CaseInsensitive;
    for (qsizetype i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].first.compare(name, cs) == 0)
            return i;
    return -1;
}

Variant MemoryPropertyBag::ReadProperty(const QString &name, const Variant &defaultValue)
{
    const qsizetype i = indexOf(name);
    if (i < 0)
        return defaultValue;
    Variant out;
    return coerceToTypeOf(m_entries[i].second, defaultValue, &out) ? out : defaultValue;
}

void MemoryPropertyBag::WriteProperty(const QString &name, const Variant &value, const Variant &defaultValue)
{
    if (sameBagValue(value, defaultValue) && value.type() != Variant::Type::Empty) {
        remove(name);
        return;
    }
    set(name, value);
}

Variant MemoryPropertyBag::value(const QString &name) const
{
    const qsizetype i = indexOf(name);
    return i < 0 ? Variant() : m_entries[i].second;
}

void MemoryPropertyBag::set(const QString &name, const Variant &value)
{
    const qsizetype i = indexOf(name);
    if (i < 0)
        m_entries.append({name, value});
    else
        m_entries[i].second = value;
}

void MemoryPropertyBag::remove(const QString &name)
{
    const qsizetype i = indexOf(name);
    if (i >= 0)
        m_entries.removeAt(i);
}

} // namespace kel
