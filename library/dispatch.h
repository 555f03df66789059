#pragma once
// Late-bound access to every member of the library's classes, by dispatch id or by name.
#include "platform/kelexport.h"
#include "platform/variant.h"

#include <QObject>
#include <vector>

namespace kel {

enum class DispatchKind { PropertyGet, PropertyPut, Method };

struct DispatchResult {
    bool ok = false;
    QString error;     // why it failed, naming the class and member
    Variant value;     // the result of a get or of a method with a result
};

// args: the arguments in declaration order (for a put: the new value alone). Missing optional
// arguments take their defaults; by-reference arguments are written back into args.
KEL_EXPORT DispatchResult dispatchInvoke(QObject *object, qint32 dispid, DispatchKind kind, std::vector<Variant> &args);
KEL_EXPORT DispatchResult dispatchInvoke(QObject *object, QStringView name, DispatchKind kind, std::vector<Variant> &args);

// Convenience for hosts and tests.
KEL_EXPORT Variant dispatchGet(QObject *object, QStringView name, std::vector<Variant> args = {});
KEL_EXPORT bool dispatchPut(QObject *object, QStringView name, const Variant &value, QString *error = nullptr);

} // namespace kel
