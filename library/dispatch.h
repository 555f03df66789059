#pragma once
/// \file
/// Late-bound access to every member of the library's classes, by dispatch id or by name.
#include "../platform/kelexport.h"
#include "../platform/variant.h"

#include <QObject>
#include <vector>

namespace kel {

/// What a dispatch call does: read a property, write one, or call a method.
enum class DispatchKind { PropertyGet, PropertyPut, Method };

/// The outcome of a dispatch call; a failure is a result, never an exception.
struct DispatchResult {
    /// Whether the call reached the member and it succeeded.
    bool ok = false;
    QString error;     ///< why it failed, naming the class and member
    Variant value;     ///< the result of a get or of a method with a result
};

/// args: the arguments in declaration order (for a put: the new value alone). Missing optional
/// arguments take their defaults; by-reference arguments are written back into args.
KEL_EXPORT DispatchResult dispatchInvoke(QObject *object, qint32 dispid, DispatchKind kind, std::vector<Variant> &args);
/// The same, by member name (regardless of case).
KEL_EXPORT DispatchResult dispatchInvoke(QObject *object, QStringView name, DispatchKind kind, std::vector<Variant> &args);

/// Convenience for hosts and tests.
KEL_EXPORT Variant dispatchGet(QObject *object, QStringView name, std::vector<Variant> args = {});
/// Sets a property by name; false with *error set when it cannot.
KEL_EXPORT bool dispatchPut(QObject *object, QStringView name, const Variant &value, QString *error = nullptr);

} // namespace kel
