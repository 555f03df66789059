#include "controls/kelcontrols8.h"
#include "controls/number/kelnumber.h"
#include "controls/text/keltext.h"
#include "designer/persisted.h"
#include "kelfixture.h"
#include "library/dispatch.h"
#include "library/kelcontrolhandler.h"
#include "library/typemodel.h"

#include <QMetaMethod>
#include <QTemporaryDir>
#include <QTest>

using namespace kel;

class TestDispatch : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { test::useRuntime(); }

    // Every member of every class the factory makes is there on the object, by the model's name
    // and arity, so late-bound hosts reach all of it.
    void metaObjectsAgreeWithModel()
    {
        registerKelControls8();
        QWidget parent;
        for (const QString &name : ClassFactory::classNames()) {
            std::unique_ptr<QObject> obj(createObject(name, &parent));
            QVERIFY2(obj, qPrintable(name));
            const QMetaObject *mo = obj->metaObject();
            for (const auto &m : typemodel::findClass(name)->members) {
                const QByteArray n = m.name.toLatin1();
                bool found = false;
                if (m.access != typemodel::Access::Method && m.args.empty()) {
                    const int i = mo->indexOfProperty(n.constData());
                    found = i >= 0 && (m.access == typemodel::Access::ReadOnly || mo->property(i).isWritable());
                } else {
                    for (int i = 0; i < mo->methodCount() && !found; ++i)
                        found = mo->method(i).name() == n && mo->method(i).parameterCount() == int(m.args.size());
                }
                QVERIFY2(found, qPrintable(name + u'.' + m.name));
            }
        }
    }

    void getPutByIdAndName()
    {
        KelText t;
        std::vector<Variant> args{Variant(u"Name"_qs)};
        QVERIFY(dispatchInvoke(&t, 0x6803000E, DispatchKind::PropertyPut, args).ok);
        QCOMPARE(t.Caption(), u"Name"_qs);
        QVERIFY(dispatchPut(&t, u"text"_qs, Variant(qint32(42))));   // any case, converted
        QCOMPARE(t.Text(), u"42"_qs);
        args = {};
        QCOMPARE(dispatchInvoke(&t, typemodel::DISPID_VALUE, DispatchKind::PropertyGet, args).value, Variant(u"42"_qs));
        QVERIFY(dispatchPut(&t, u"Enabled"_qs, Variant(u"False"_qs)));
        QCOMPARE(dispatchGet(&t, u"ENABLED"_qs), Variant(false));
        args = {Variant(u"tip"_qs)};
        QVERIFY(dispatchInvoke(&t, 0x60030010, DispatchKind::Method, args).ok);
        QCOMPARE(t.ExtenderToolTipText(), u"tip"_qs);
        args = {};
        QVERIFY(!dispatchInvoke(&t, 0x12345, DispatchKind::PropertyGet, args).ok);
        QObject stranger;
        QVERIFY(!dispatchInvoke(&stranger, u"Text"_qs, DispatchKind::PropertyGet, args).ok);
        KelNumber n;
        n.setCaption(u"Amount"_qs);
        args = {Variant(QString())}; // a by-reference argument comes back filled
        QVERIFY(dispatchInvoke(&n, u"ChangedCaption"_qs, DispatchKind::PropertyGet, args).ok);
        QCOMPARE(args[0], Variant(u"Amount"_qs));
    }

    // A number reads back, through dispatch and from a saved form, as the type the model and
    // the reading default give it, even where a wider Qt type carries it.
    void typesAsModelled_data()
    {
        QTest::addColumn<QString>("className");
        for (const auto &cls : typemodel::library().classes)
            if (cls.isControl)
                QTest::newRow(qPrintable(cls.name)) << cls.name;
    }
    void typesAsModelled()
    {
        QFETCH(QString, className);
        QWidget parent;
        std::unique_ptr<QObject> obj(createObject(className, &parent));
        auto *control = qobject_cast<UserControl *>(obj.get());
        QVERIFY(control);
        control->InitProperties();
        const std::vector<PersistedProperty> persisted = persistedProperties(className);
        for (const PersistedProperty &p : persisted)
            if (p.value.type() == Variant::Type::Integer || p.value.type() == Variant::Type::Long)
                QVERIFY2(dispatchPut(control, p.property, Variant(p.value.toInt32() + 3)), qPrintable(p.name));
        using VT = Variant::Type;
        for (const auto &m : typemodel::findClass(className)->members) {
            if (m.access == typemodel::Access::Method || !m.args.empty() || (m.type != typemodel::VType::Int16 && m.type != typemodel::VType::Int32))
                continue;
            const Variant got = dispatchGet(control, m.name);
            QVERIFY2(got.type() == (m.type == typemodel::VType::Int16 ? VT::Integer : VT::Long), qPrintable(m.name + u": "_qs + got.debugString()));
        }
        MemoryPropertyBag bag;
        control->WriteProperties(bag);
        for (const PersistedProperty &p : persisted) {
            const Variant saved = bag.value(p.name.compare(u"DropdownWidth") == 0 ? u"DropDownWidth"_qs : p.name);
            const typemodel::Member *m = typemodel::findMember(*typemodel::findClass(className), p.property);
            if (!saved.isEmpty() && m && m->type != typemodel::VType::Variant && p.value.type() != VT::Date)
                QVERIFY2(saved.type() == p.value.type(), qPrintable(p.name + u": "_qs + saved.debugString()));
        }
    }

    void errorsAreResults_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QList<Variant>>("args");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const char16_t *member, DispatchKind kind, QList<Variant> args, const char16_t *error) {
            QTest::newRow(name) << QString::fromUtf16(member) << int(kind) << args << u"KelText."_qs + QString::fromUtf16(error);
        };
        using enum DispatchKind;
        row("unknown", u"Nope", PropertyGet, {}, u"Nope: unknown member");
        row("read-only", u"TextRaw", PropertyPut, {u"x"_qs}, u"TextRaw: the member cannot be assigned");
        row("mismatch", u"CaptionWidth", PropertyPut, {u"wide"_qs}, u"CaptionWidth: Type mismatch");
        row("overflow", u"MaxLength", PropertyPut, {u"40000"_qs}, u"MaxLength: Overflow");
        row("NaN", u"MaxLength", PropertyPut, {qQNaN()}, u"MaxLength: Overflow");
        row("infinity", u"CaptionWidth", PropertyPut, {qInf()}, u"CaptionWidth: Overflow");
        row("too many", u"TooltipSet", Method, {u"a"_qs, u"b"_qs}, u"TooltipSet: wrong number of arguments");
    }
    void errorsAreResults()
    {
        QFETCH(QString, member);
        QFETCH(int, kind);
        QFETCH(QList<Variant>, args);
        QFETCH(QString, error);
        KelText t;
        std::vector<Variant> v(args.begin(), args.end());
        const DispatchResult r = dispatchInvoke(&t, member, DispatchKind(kind), v);
        QVERIFY(!r.ok);
        QCOMPARE(r.error, error);
    }

    void setRuntimeThroughDispatch()
    {
        KelControlHandler h;
        auto rt = std::make_shared<KelRuntime8>();
        rt->setDecimalDigits(5);
        std::vector<Variant> args{Variant(std::static_pointer_cast<QObject>(rt))};
        QVERIFY(dispatchInvoke(&h, 0x60030000, DispatchKind::Method, args).ok);
        QCOMPARE(librarySettings().DefaultDecimals, qint16(5));
        args = {Variant(std::make_shared<QObject>())};
        const DispatchResult r = dispatchInvoke(&h, u"SetRuntime"_qs, DispatchKind::Method, args);
        QVERIFY(!r.ok);
        QVERIFY(r.error.contains(u"not a run-time object"));
        args = {Variant(u"text"_qs)};
        QVERIFY(!dispatchInvoke(&h, u"SetRuntime"_qs, DispatchKind::Method, args).ok);
        test::useRuntime();
    }

    void factoryAndUnloading()
    {
        QString error;
        QVERIFY(!createObject(u"KelNope"_qs, nullptr, &error));
        QCOMPARE(error, u"Class not registered: \"KelNope\""_qs);
        // The count of live objects that keeps the library loaded is the plugin test's.
        std::unique_ptr<QObject> t(createObject(u"keltext"_qs));
        QVERIFY(qobject_cast<KelText *>(t.get()));
    }

    void registration()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(u"reg/registry.ini"_qs);
        QString error;
        QVERIFY2(DllRegisterServer(&error, file), qPrintable(error));
        QFile f(file);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(f.readAll());
        for (const auto &cls : typemodel::library().classes)
            QVERIFY(text.contains(u"[KelControls8."_qs + cls.name + u']'));
        QVERIFY(DllUnregisterServer(&error, file));
        QVERIFY(!QFile::exists(file));
        QVERIFY(!DllRegisterServer(&error, u"/proc/no/such/place/registry.ini"_qs));
        QVERIFY(error.startsWith(u"/proc/no/such/place/registry.ini"_qs));
    }
};

QTEST_MAIN(TestDispatch)
#include "tst_dispatch.moc"
