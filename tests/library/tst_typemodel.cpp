// Expected values are copied from the published member tables, not from the model.
#include "library/typemodel.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kel::typemodel;

namespace {
// idlLines: one per method or read-only member, two per read/write one.
struct ClassCase { QString name; int members; QString defaultMember; bool eventIface; QStringList events; int idlLines; };
struct MemberCase { QString cls, member; int index; qint32 dispid; Access access; bool hidden; };
} // namespace
Q_DECLARE_METATYPE(ClassCase)
Q_DECLARE_METATYPE(MemberCase)

static const ClassInfo &cls(const QString &name)
{
    const ClassInfo *c = findClass(name);
    if (!c)
        qFatal("no class %s", qPrintable(name));
    return *c;
}

// The trimmed lines of one block of the dump, between its header and its closing "};".
static QStringList idlBlock(const QString &header)
{
    QStringList lines;
    bool inside = false;
    for (const QString &raw : dumpIdl().split(u'\n')) {
        const QString line = raw.trimmed();
        if (!inside)
            inside = line.endsWith(header + u" {"_s);
        else if (line == u"};"_s)
            break;
        else
            lines << line;
    }
    return lines;
}

class TstTypeModel : public QObject
{
    Q_OBJECT
private slots:
    void classes_data()
    {
        QTest::addColumn<ClassCase>("c");
        const QStringList change{u"Change"_s};
        QTest::newRow("progress") << ClassCase{u"KelProgressBar"_s, 8, u"Value"_s, true, {}, 13};
        QTest::newRow("number") << ClassCase{u"KelNumber"_s, 23, u"Value"_s, true, change, 40};
        QTest::newRow("check") << ClassCase{u"KelCheck"_s, 13, u"Value"_s, true, change, 21};
        QTest::newRow("combo") << ClassCase{u"KelCombo"_s, 24, u"Text"_s, true, {u"Change"_s, u"Click"_s, u"ChangeEx"_s}, 39};
        QTest::newRow("date") << ClassCase{u"KelDate"_s, 20, u"Value"_s, true, change, 35};
        QTest::newRow("time") << ClassCase{u"KelTime"_s, 19, u"Value"_s, true, change, 33};
        QTest::newRow("text") << ClassCase{u"KelText"_s, 20, u"Text"_s, true, {u"Change"_s, u"Click"_s}, 33};
        QTest::newRow("handler") << ClassCase{u"KelControlHandler"_s, 1, QString(), false, {}, 1};
    }
    void classes()
    {
        QFETCH(ClassCase, c);
        const ClassInfo &info = cls(c.name);
        QCOMPARE(int(info.members.size()), c.members);
        QCOMPARE(info.defaultMember, c.defaultMember);
        QCOMPARE(info.isControl, !c.defaultMember.isEmpty());
        if (info.isControl)
            QCOMPARE(findMember(info, DISPID_VALUE)->name, c.defaultMember);
        QCOMPARE(info.hasEventInterface(), c.eventIface);
        QStringList got;
        for (const Event &e : info.events) {
            got << e.name;
            QCOMPARE(e.dispid, qint32(got.size()));   // numbered 1, 2, 3 in table order
        }
        QCOMPARE(got, c.events);
        QCOMPARE(int(idlBlock(u"interface _"_s + c.name + u" : IDispatch"_s).size()), c.idlLines);
        QSet<qint32> seen; // unique ids, methods and own properties each in their band
        for (const Member &m : info.members) {
            QVERIFY2(!seen.contains(m.dispid), qPrintable(c.name + u'.' + m.name));
            seen.insert(m.dispid);
            const quint32 band = quint32(m.dispid) & 0xFFFF0000u;
            if (m.access == Access::Method)
                QCOMPARE(band, 0x60030000u);
            else if (m.dispid != DISPID_VALUE && m.dispid != DISPID_ENABLED && m.dispid != DISPID_CAPTION)
                QCOMPARE(band, 0x68030000u);
        }
    }

    void members_data()
    {
        QTest::addColumn<MemberCase>("m");   // index: slot in the function table
        const auto row = [](const char *c, const char *m, int index, qint32 id, Access a, bool hidden = false) {
            QTest::addRow("%s.%s", c, m) << MemberCase{QString::fromLatin1(c), QString::fromLatin1(m), index, id, a, hidden};
        };
        using enum Access;
        row("KelProgressBar", "Enabled", 1, 0x68030003, ReadWrite);   // its own id, not the standard one
        row("KelNumber", "Caption", 0, 0x68030012, ReadWrite);
        row("KelNumber", "ValueSaved", 22, 0x68030000, ReadWriteByRef, true);
        row("KelCheck", "Caption", 0, -518, ReadWrite);
        row("KelCombo", "ListIndex", 9, 0x6803000A, ReadWriteByRef);
        row("KelCombo", "ListFromArray", 23, 0x60030016, Method);   // last, out of name order
        row("KelDate", "DaysFlag", 4, 0x6803000B, ReadWrite);
        row("KelText", "hWnd", 5, 0x6803000A, ReadOnly);
    }
    void members()
    {
        QFETCH(MemberCase, m);
        const ClassInfo &c = cls(m.cls);
        QVERIFY(m.index < int(c.members.size()));
        const Member &got = c.members[size_t(m.index)];
        QCOMPARE(got.name, m.member);
        QCOMPARE(got.dispid, m.dispid);
        QCOMPARE(got.access, m.access);
        QCOMPARE(got.hidden, m.hidden);
        QCOMPARE(findMember(c, m.dispid), &got);
    }

    void lookupAndEnum()
    {
        const ClassInfo &text = cls(u"keltext"_s);
        QCOMPARE(findMember(text, DISPID_CAPTION), nullptr);
        QCOMPARE(findMember(cls(u"KelCombo"_s), DISPID_ENABLED), nullptr);   // its Enabled has its own id
        QCOMPARE(findClass(u"KelLabel"), nullptr);
        const ClassInfo &n = cls(u"KelNumber"_s);
        QCOMPARE(QSet<QUuid>({library().libraryId, n.classId, n.interfaceId, n.eventInterfaceId}).size(), 4);
        QCOMPARE(n.classId.version(), QUuid::Sha1);   // name-based, so stable across builds

        QCOMPARE(library().enums.size(), size_t(1));
        QStringList values;
        for (const EnumValue &v : library().enums[0].values)
            values << u"%1=%2"_s.arg(v.name).arg(v.value);
        QCOMPARE(library().enums[0].name, u"KelDateDaysFlag"_s);
        QCOMPARE(values, QStringList({u"Allow=0"_s, u"FirstDay=1"_s, u"LastDay=2"_s, u"BirthDay=3"_s}));
    }

    void idlLines_data()
    {
        QTest::addColumn<QString>("block");
        QTest::addColumn<QString>("line");
        const auto row = [](const char *tag, const char *block, const QString &line) {
            QTest::newRow(tag) << QString::fromLatin1(block) << line;
        };
        const char *number = "interface _KelNumber : IDispatch";
        row("optional arg", number, u"[id(0x68030002), propget] HRESULT Valid([in, optional, defaultvalue(0)] VARIANT_BOOL ShowMessage, [out, retval] VARIANT_BOOL* pVal);"_s);
        row("hidden by-ref put", number, u"[id(0x68030001), propput, hidden] HRESULT ValueOriginal([in, out] double* pVal);"_s);
        row("by-ref arg", number, u"[id(0x6803000f), propget] HRESULT ChangedCaption([in, out] BSTR* CaptionToSave, [out, retval] VARIANT_BOOL* pVal);"_s);
        row("default member", number, u"[id(0x00000000), propput] HRESULT Value([in] VARIANT pVal);"_s);
        row("array", "interface _KelCombo : IDispatch", u"[id(0x60030016)] HRESULT ListFromArray([in, out] SAFEARRAY(BSTR)* strArray);"_s);
        row("enum", "interface _KelDate : IDispatch", u"[id(0x6803000b), propput] HRESULT DaysFlag([in] KelDateDaysFlag pVal);"_s);
        row("date", "interface _KelTime : IDispatch", u"[id(0x68030005), propget] HRESULT MinValue([out, retval] DATE* pVal);"_s);
        row("object", "interface _KelControlHandler : IDispatch", u"[id(0x60030000)] HRESULT SetRuntime([in] IDispatch* Runtime);"_s);
        row("event by-ref", "dispinterface __KelCombo", u"[id(0x00000003)] void ChangeEx([in, out] VARIANT_BOOL* Handled);"_s);
        row("coclass", "coclass KelNumber", u"[default, source] dispinterface __KelNumber;"_s);
    }
    void idlLines()
    {
        QFETCH(QString, block);
        QFETCH(QString, line);
        const QStringList lines = idlBlock(block);
        QVERIFY2(lines.contains(line), qPrintable(block + u":\n"_s + lines.join(u'\n')));
    }

    void idlOrder()
    {
        const QString idl = dumpIdl();
        QStringList headers{u"version(1.4)"_s, u"library KelControls8\n"_s, u"importlib(\"stdole2.tlb\");"_s,
                            u"BirthDay = 3\n    } KelDateDaysFlag;"_s};
        for (const char *name : {"KelProgressBar", "KelNumber", "KelCheck", "KelCombo", "KelDate", "KelTime", "KelText"}) {
            const QString n = QString::fromLatin1(name);
            headers << u"interface _%1 : IDispatch {"_s.arg(n) << u"dispinterface __%1 {"_s.arg(n) << u"coclass %1 {"_s.arg(n);
        }
        headers << u"interface _KelControlHandler : IDispatch {"_s << u"coclass KelControlHandler {"_s;
        qsizetype at = 0;
        for (const QString &h : headers) {
            at = idl.indexOf(h, at);
            QVERIFY2(at >= 0, qPrintable(h));
        }
        QVERIFY(!idl.contains(u"__KelControlHandler"_s));
        QCOMPARE(idlBlock(u"dispinterface __KelProgressBar"_s), QStringList({u"properties:"_s, u"methods:"_s}));
        QVERIFY(idlBlock(u"interface _KelText : IDispatch"_s).last().contains(u"TextRaw"_s)); // table order, not names
    }
};

QTEST_GUILESS_MAIN(TstTypeModel)
#include "tst_typemodel.moc"
