#include "library/typemodel.h"

#include <KelControls8/kelcontrols8_version.h>

using namespace Qt::StringLiterals;

namespace kel::typemodel {

namespace {

// Fixed for ever: changing it changes every class and interface id the hosts have registered.
constexpr QUuid kNamespace{0xc413f37f, 0xe846, 0x4f4f, 0xbb, 0x30, 0x85, 0xaf, 0xed, 0x16, 0x05, 0x32};

constexpr qint32 prop(int k) { return 0x68030000 + k; }
constexpr qint32 meth(int k) { return 0x60030000 + k; }

Argument in(const QString &name, VType t) { return {name, t, false, false, {}}; }
Argument ref(const QString &name, VType t) { return {name, t, false, true, {}}; }
Argument opt(const QString &name, VType t, const QString &def) { return {name, t, true, false, def}; }

Member rw(const QString &name, VType t, qint32 id) { return {name, Access::ReadWrite, t, {}, id, false}; }
Member ro(const QString &name, VType t, qint32 id, std::vector<Argument> args = {})
{
    return {name, Access::ReadOnly, t, std::move(args), id, false};
}
Member rwRef(const QString &name, VType t, qint32 id, bool hidden)
{
    return {name, Access::ReadWriteByRef, t, {}, id, hidden};
}
Member method(const QString &name, qint32 id, std::vector<Argument> args = {})
{
    return {name, Access::Method, VType::Void, std::move(args), id, false};
}

// The members shared by the edit-box controls keep their own ids per interface, so each
// helper takes the id it gets in the interface at hand.
Member caption(qint32 id) { return rw(u"Caption"_s, VType::String, id); }
Member captionWidth(qint32 id) { return rw(u"CaptionWidth"_s, VType::Int16, id); }
Member changed(qint32 id) { return ro(u"Changed"_s, VType::Boolean, id); }
Member changedSaved(qint32 id) { return ro(u"ChangedSaved"_s, VType::Boolean, id); }
Member enabled(qint32 id) { return rw(u"Enabled"_s, VType::Boolean, id); }
Member boolean(const QString &name, qint32 id) { return rw(name, VType::Boolean, id); }
Member refresh(qint32 id) { return method(u"Refresh"_s, id); }
Member tooltipSet(qint32 id) { return method(u"TooltipSet"_s, id, {in(u"Tooltip"_s, VType::String)}); }
Member validAsking(qint32 id)
{
    return ro(u"Valid"_s, VType::Boolean, id, {opt(u"ShowMessage"_s, VType::Boolean, u"0"_s)});
}
Member valid(qint32 id) { return ro(u"Valid"_s, VType::Boolean, id); }

std::vector<Event> changeOnly() { return {{u"Change"_s, 1, {}}}; }

ClassInfo control(const QString &name, const QString &defaultMember, QStringList children,
                  std::vector<Member> members, std::vector<Event> events)
{
    ClassInfo c;
    c.name = name;
    c.defaultMember = defaultMember;
    c.childWidgets = std::move(children);
    c.members = std::move(members);
    c.events = std::move(events);
    c.classId = stableUuid(name);
    c.interfaceId = stableUuid(c.dispatchInterface());
    c.eventInterfaceId = stableUuid(c.eventInterface());
    return c;
}

ClassInfo progressBar()
{
    return control(u"KelProgressBar"_s, u"Value"_s, {u"Picture1"_s},
                   {
                       method(u"Clear"_s, meth(4)),
                       enabled(prop(3)),
                       rw(u"Max"_s, VType::Int32, prop(2)),
                       rw(u"Min"_s, VType::Int32, prop(1)),
                       refresh(meth(5)),
                       boolean(u"ShowTime"_s, prop(0)),
                       method(u"Start"_s, meth(6)),
                       rw(u"Value"_s, VType::Int32, DISPID_VALUE),
                   },
                   {});
}

ClassInfo number()
{
    return control(u"KelNumber"_s, u"Value"_s, {u"Label1"_s, u"Text1"_s, u"UpDown1"_s},
                   {
                       caption(prop(0x12)),
                       captionWidth(prop(0x11)),
                       changed(prop(0x10)),
                       ro(u"ChangedCaption"_s, VType::Boolean, prop(0x0F), {ref(u"CaptionToSave"_s, VType::String)}),
                       changedSaved(prop(0x0E)),
                       rw(u"Decimals"_s, VType::Int16, prop(0x0D)),
                       enabled(DISPID_ENABLED),
                       boolean(u"FontBold"_s, prop(0x0C)),
                       boolean(u"GroupDigits"_s, prop(0x0B)),
                       boolean(u"InsertMode"_s, prop(0x0A)),
                       boolean(u"Locked"_s, prop(0x09)),
                       boolean(u"Mandatory"_s, prop(0x08)),
                       rw(u"MaxValue"_s, VType::Double, prop(0x07)),
                       rw(u"MinValue"_s, VType::Double, prop(0x06)),
                       refresh(meth(0x13)),
                       boolean(u"SelectOnFocus"_s, prop(0x05)),
                       tooltipSet(meth(0x14)),
                       boolean(u"UpDown"_s, prop(0x04)),
                       rw(u"UpDownChange"_s, VType::Double, prop(0x03)),
                       validAsking(prop(0x02)),
                       rw(u"Value"_s, VType::Variant, DISPID_VALUE),
                       rwRef(u"ValueOriginal"_s, VType::Double, prop(0x01), true),
                       rwRef(u"ValueSaved"_s, VType::Double, prop(0x00), true),
                   },
                   changeOnly());
}

ClassInfo check()
{
    return control(u"KelCheck"_s, u"Value"_s, {u"Check1"_s},
                   {
                       rw(u"Caption"_s, VType::String, DISPID_CAPTION),
                       changed(prop(7)),
                       changedSaved(prop(6)),
                       enabled(DISPID_ENABLED),
                       boolean(u"FontBold"_s, prop(5)),
                       boolean(u"Locked"_s, prop(4)),
                       boolean(u"Mandatory"_s, prop(3)),
                       refresh(meth(8)),
                       tooltipSet(meth(9)),
                       valid(prop(2)),
                       rw(u"Value"_s, VType::Boolean, DISPID_VALUE),
                       rwRef(u"ValueOriginal"_s, VType::Boolean, prop(1), true),
                       rwRef(u"ValueSaved"_s, VType::Boolean, prop(0), true),
                   },
                   changeOnly());
}

ClassInfo combo()
{
    return control(u"KelCombo"_s, u"Text"_s, {u"Label1"_s, u"Combo1"_s},
                   {
                       caption(prop(0x13)),
                       captionWidth(prop(0x12)),
                       changed(prop(0x11)),
                       changedSaved(prop(0x10)),
                       rw(u"DropDownWidth"_s, VType::Int32, prop(0x0F)),
                       enabled(prop(0x0E)),
                       boolean(u"LimitToList"_s, prop(0x0D)),
                       rw(u"List"_s, VType::String, prop(0x0C)),
                       ro(u"ListCount"_s, VType::Int32, prop(0x0B)),
                       rwRef(u"ListIndex"_s, VType::Int16, prop(0x0A), false),
                       ro(u"ListItem"_s, VType::String, prop(0x09), {opt(u"Item"_s, VType::Int16, u"0"_s)}),
                       rw(u"ListTag"_s, VType::String, prop(0x08)),
                       ro(u"ListTagItem"_s, VType::String, prop(0x07), {opt(u"Item"_s, VType::Int16, u"0"_s)}),
                       boolean(u"Locked"_s, prop(0x06)),
                       boolean(u"Mandatory"_s, prop(0x05)),
                       rw(u"MaxLength"_s, VType::Int16, prop(0x04)),
                       refresh(meth(0x14)),
                       boolean(u"SelectOnFocus"_s, prop(0x03)),
                       rw(u"Text"_s, VType::String, DISPID_VALUE),
                       rwRef(u"TextOriginal"_s, VType::String, prop(0x02), true),
                       rwRef(u"TextSaved"_s, VType::String, prop(0x01), true),
                       tooltipSet(meth(0x15)),
                       valid(prop(0x00)),
                       // Out of name order: it stands last in the function table.
                       method(u"ListFromArray"_s, meth(0x16), {ref(u"strArray"_s, VType::StringArray)}),
                   },
                   {{u"Change"_s, 1, {}}, {u"Click"_s, 2, {}}, {u"ChangeEx"_s, 3, {ref(u"Handled"_s, VType::Boolean)}}});
}

ClassInfo date()
{
    return control(u"KelDate"_s, u"Value"_s, {u"Label1"_s, u"Text1"_s, u"UpDown1"_s},
                   {
                       caption(prop(0x0F)),
                       captionWidth(prop(0x0E)),
                       changed(prop(0x0D)),
                       changedSaved(prop(0x0C)),
                       rw(u"DaysFlag"_s, VType::DaysFlag, prop(0x0B)),
                       enabled(DISPID_ENABLED),
                       rw(u"Format"_s, VType::String, prop(0x0A)),
                       boolean(u"InsertMode"_s, prop(0x09)),
                       boolean(u"Locked"_s, prop(0x08)),
                       boolean(u"Mandatory"_s, prop(0x07)),
                       rw(u"MaxValue"_s, VType::Date, prop(0x06)),
                       rw(u"MinValue"_s, VType::Date, prop(0x05)),
                       refresh(meth(0x10)),
                       boolean(u"SelectOnFocus"_s, prop(0x04)),
                       tooltipSet(meth(0x11)),
                       boolean(u"UpDown"_s, prop(0x03)),
                       validAsking(prop(0x02)),
                       rw(u"Value"_s, VType::Variant, DISPID_VALUE),
                       rwRef(u"ValueOriginal"_s, VType::Variant, prop(0x01), true),
                       rwRef(u"ValueSaved"_s, VType::Variant, prop(0x00), true),
                   },
                   changeOnly());
}

ClassInfo timeControl()
{
    return control(u"KelTime"_s, u"Value"_s, {u"Label1"_s, u"Text1"_s, u"UpDown1"_s},
                   {
                       caption(prop(0x0E)),
                       captionWidth(prop(0x0D)),
                       changed(prop(0x0C)),
                       changedSaved(prop(0x0B)),
                       enabled(DISPID_ENABLED),
                       rw(u"Format"_s, VType::String, prop(0x0A)),
                       boolean(u"InsertMode"_s, prop(0x09)),
                       boolean(u"Locked"_s, prop(0x08)),
                       boolean(u"Mandatory"_s, prop(0x07)),
                       rw(u"MaxValue"_s, VType::Date, prop(0x06)),
                       rw(u"MinValue"_s, VType::Date, prop(0x05)),
                       refresh(meth(0x0F)),
                       boolean(u"SelectOnFocus"_s, prop(0x04)),
                       tooltipSet(meth(0x10)),
                       boolean(u"UpDown"_s, prop(0x03)),
                       validAsking(prop(0x02)),
                       rw(u"Value"_s, VType::Variant, DISPID_VALUE),
                       rwRef(u"ValueOriginal"_s, VType::Variant, prop(0x01), true),
                       rwRef(u"ValueSaved"_s, VType::Variant, prop(0x00), true),
                   },
                   changeOnly());
}

ClassInfo text()
{
    // Text1 is two boxes, a single-line and a multi-line one, shown one at a time.
    return control(u"KelText"_s, u"Text"_s, {u"Label1"_s, u"Text1"_s},
                   {
                       caption(prop(0x0E)),
                       captionWidth(prop(0x0D)),
                       changed(prop(0x0C)),
                       changedSaved(prop(0x0B)),
                       enabled(DISPID_ENABLED),
                       ro(u"hWnd"_s, VType::Int32, prop(0x0A)),
                       boolean(u"InsertMode"_s, prop(0x09)),
                       boolean(u"Locked"_s, prop(0x08)),
                       boolean(u"Mandatory"_s, prop(0x07)),
                       rw(u"MaxLength"_s, VType::Int16, prop(0x06)),
                       boolean(u"MultiLine"_s, prop(0x05)),
                       rw(u"PasswordChar"_s, VType::String, prop(0x04)),
                       refresh(meth(0x0F)),
                       boolean(u"SelectOnFocus"_s, prop(0x03)),
                       rw(u"Text"_s, VType::String, DISPID_VALUE),
                       rwRef(u"TextOriginal"_s, VType::String, prop(0x02), true),
                       rwRef(u"TextSaved"_s, VType::String, prop(0x01), true),
                       tooltipSet(meth(0x10)),
                       valid(prop(0x00)),
                       // Out of name order: it stands last in the function table.
                       ro(u"TextRaw"_s, VType::String, prop(0x11)),
                   },
                   {{u"Change"_s, 1, {}}, {u"Click"_s, 2, {}}});
}

ClassInfo controlHandler()
{
    ClassInfo c;
    c.name = u"KelControlHandler"_s;
    c.isControl = false;
    c.members = {method(u"SetRuntime"_s, meth(0), {in(u"Runtime"_s, VType::Object)})};
    c.classId = stableUuid(c.name);
    c.interfaceId = stableUuid(c.dispatchInterface());
    return c;   // no event interface
}

Library build()
{
    Library lib;
    lib.name = u"KelControls8"_s;
    lib.fileVersion = QStringLiteral(KELCONTROLS8_VERSION_STRING);
    lib.typeLibVersion = u"1.4"_s;
    lib.libraryId = stableUuid(lib.name);
    lib.classes = {progressBar(), number(), check(), combo(), date(), timeControl(), text(), controlHandler()};
    lib.enums = {{u"KelDateDaysFlag"_s,
                  {{u"Allow"_s, 0}, {u"FirstDay"_s, 1}, {u"LastDay"_s, 2}, {u"BirthDay"_s, 3}}}};
    return lib;
}

} // namespace

QUuid stableUuid(const QString &name)
{
    return QUuid::createUuidV5(kNamespace, name);
}

const Library &library()
{
    static const Library lib = build();
    return lib;
}

const ClassInfo *findClass(QStringView name)
{
    for (const ClassInfo &c : library().classes)
        if (name.compare(c.name, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

const Member *findMember(const ClassInfo &cls, qint32 dispid)
{
    for (const Member &m : cls.members)
        if (m.dispid == dispid)
            return &m;
    return nullptr;
}

const Member *findMember(const ClassInfo &cls, QStringView name)
{
    for (const Member &m : cls.members)
        if (m.name.size() == name.size() && name.compare(m.name, Qt::CaseInsensitive) == 0)
            return &m;
    return nullptr;
}

QString typeName(VType t)
{
    switch (t) {
    case VType::Void: return u"void"_s;
    case VType::String: return u"BSTR"_s;
    case VType::Boolean: return u"VARIANT_BOOL"_s;
    case VType::Int16: return u"short"_s;
    case VType::Int32: return u"long"_s;
    case VType::Double: return u"double"_s;
    case VType::Date: return u"DATE"_s;
    case VType::Variant: return u"VARIANT"_s;
    case VType::DaysFlag: return u"KelDateDaysFlag"_s;
    case VType::Object: return u"IDispatch*"_s;
    // The element type only: arrays are always passed by reference, which adds the '*'.
    case VType::StringArray: return u"SAFEARRAY(BSTR)"_s;
    }
    return {};
}

} // namespace kel::typemodel
