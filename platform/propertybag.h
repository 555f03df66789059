#pragma once
/// \file
/// The host's property bag: named, typed design-time values of one control.
#include "kelexport.h"
#include "variant.h"

#include <QList>
#include <QPair>

namespace kel {

/// The host's property bag: what ReadProperties reads and WriteProperties writes.
class KEL_EXPORT PropertyBag
{
public:
    /// How names are compared: exactly, or regardless of case (the classic bag).
    enum class NameMatch { Exact, IgnoreCase };

    virtual ~PropertyBag() = default;
    /// The stored value converted to the type of defaultValue, or defaultValue when absent
    /// or not convertible.
    virtual Variant ReadProperty(const QString &name, const Variant &defaultValue) = 0;
    /// A value equal to its default is not stored (an older entry of that name is removed).
    virtual void WriteProperty(const QString &name, const Variant &value, const Variant &defaultValue) = 0;
};

/// Converts a stored value to the type of the default, as a bag does on read. Returns false
/// when the value cannot take that type.
KEL_EXPORT bool coerceToTypeOf(const Variant &stored, const Variant &like, Variant *out);

/// Values equal as a bag compares them against defaults (same type after coercion, same value).
KEL_EXPORT bool sameBagValue(const Variant &a, const Variant &b);

/// A property bag in memory, in the order the entries were first written.
class KEL_EXPORT MemoryPropertyBag : public PropertyBag
{
public:
    /// An empty bag.
    explicit MemoryPropertyBag(NameMatch match = NameMatch::IgnoreCase) : m_match(match) {}

    Variant ReadProperty(const QString &name, const Variant &defaultValue) override;
    void WriteProperty(const QString &name, const Variant &value, const Variant &defaultValue) override;

    /// How this bag compares names.
    NameMatch nameMatch() const { return m_match; }
    /// Entries in the order they were first written.
    const QList<QPair<QString, Variant>> &entries() const { return m_entries; }
    /// Whether an entry of that name is stored.
    bool contains(const QString &name) const { return indexOf(name) >= 0; }
    /// The stored value, or Empty.
    Variant value(const QString &name) const;
    void set(const QString &name, const Variant &value);   ///< raw store, for hosts and loaders
    /// Removes the entry, if any.
    void remove(const QString &name);
    /// Removes every entry.
    void clear() { m_entries.clear(); }

private:
    qsizetype indexOf(const QString &name) const;
    NameMatch m_match;
    QList<QPair<QString, Variant>> m_entries;
};

} // namespace kel
