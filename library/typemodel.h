#pragma once
/// \file
/// The library's public surface as data: classes, members in function-table order, dispatch ids,
/// events and the enumeration. One table, read by the factory, dispatch, the IDL dump and tests.
#include "../platform/kelexport.h"

#include <QString>
#include <QStringList>
#include <QUuid>
#include <QtGlobal>
#include <vector>

namespace kel::typemodel {

/// The types of members, arguments and results (as in the type library).
enum class VType { Void, String, Boolean, Int16, Int32, Double, Date, Variant, DaysFlag, Object, StringArray };

/// How a member is reached.
enum class Access {
    Method,          ///< a method
    ReadOnly,        ///< propget only
    ReadWrite,       ///< propget + propput
    ReadWriteByRef,  ///< propget + propput taking its value by reference
};

/// One argument of a member or event.
struct Argument {
    QString name;
    VType type = VType::Void;
    bool optional = false;
    bool byRef = false;
    QString defaultValue;   ///< for optional arguments, as written in IDL ("0", "False")
};

/// One member of a dispatch interface.
struct Member {
    QString name;
    Access access = Access::Method;
    VType type = VType::Void;     ///< property type, or the method's return (Void for none)
    std::vector<Argument> args;
    qint32 dispid = 0;
    bool hidden = false;
};

/// One event of an event interface.
struct Event {
    QString name;
    qint32 dispid = 0;
    std::vector<Argument> args;
};

/// One value of an enumeration.
struct EnumValue { QString name; qint32 value; };
/// An enumeration of the type library (KelDateDaysFlag).
struct Enumeration { QString name; std::vector<EnumValue> values; };

/// One class of the library with its interfaces.
struct ClassInfo {
    QString name;                 ///< "KelNumber"
    bool isControl = true;        ///< false for KelControlHandler
    QString defaultMember;        ///< "" when none
    QStringList childWidgets;     ///< "Label1", "Text1", ...
    std::vector<Member> members;  ///< function-table order
    std::vector<Event> events;    ///< event interface order; may be empty
    /// Class id, dispatch interface id, event interface id (null when there is none).
    QUuid classId, interfaceId, eventInterfaceId;
    /// "_KelNumber".
    QString dispatchInterface() const { return u'_' + name; }
    /// "__KelNumber".
    QString eventInterface() const { return QStringLiteral("__") + name; }
    /// KelControlHandler has none at all; KelProgressBar has one without events.
    bool hasEventInterface() const { return !eventInterfaceId.isNull(); }
};

/// The whole type library.
struct Library {
    QString name;             ///< "KelControls8"
    QString fileVersion;      ///< "8.0.0.20"
    QString typeLibVersion;   ///< "1.4"
    QUuid libraryId;
    std::vector<ClassInfo> classes;   ///< in the order of the type library
    std::vector<Enumeration> enums;
};

/// The default member's id.
constexpr qint32 DISPID_VALUE = 0;
/// The standard id of Enabled.
constexpr qint32 DISPID_ENABLED = -514;
/// The standard id of Caption.
constexpr qint32 DISPID_CAPTION = -518;

/// The type library, built once.
KEL_EXPORT const Library &library();
/// A class by name, regardless of case; nullptr when unknown.
KEL_EXPORT const ClassInfo *findClass(QStringView name);                       ///< regardless of case
/// A member by dispatch id; nullptr when unknown.
KEL_EXPORT const Member *findMember(const ClassInfo &cls, qint32 dispid);
KEL_EXPORT const Member *findMember(const ClassInfo &cls, QStringView name);   ///< regardless of case

/// Name-based (v5) so that ids stay the same from build to build; also used for the enumeration.
KEL_EXPORT QUuid stableUuid(const QString &name);

KEL_EXPORT QString typeName(VType t);   ///< "BSTR", "VARIANT_BOOL", "short", "long", "double", "DATE", "VARIANT", ...

/// The whole model as IDL text, classes and members in function-table order.
KEL_EXPORT QString dumpIdl();

} // namespace kel::typemodel
