// A host that knows only QObject::setProperty/property and plain QVariants reaches every property
// of every class the factory makes, reads back plain Qt values, and hears of every change.
#include "controls/datetime/keldate.h"
#include "controls/kelcontrols8.h"
#include "kelfixture.h"
#include "platform/variant.h"

#include <QComboBox>
#include <QDateTime>
#include <QJsonValue>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using namespace kel;

namespace {

// Plain values a host may hand to a property that reads back as `t`.
QList<QVariant> plainValuesFor(const QMetaProperty &p, QMetaType t)
{
    if (p.isEnumType())
        return {QVariant(0), QVariant(1), QVariant(QString::fromLatin1(p.enumerator().key(0)))};
    if (p.metaType() == QMetaType::fromType<QVariant>())
        return {QVariant(), QVariant(2.0), QVariant(7), QVariant(QStringLiteral("15/03/2013")), QVariant(true),
                QVariant(QDate(2013, 3, 15)), QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 15))),
                QVariant(QTime(10, 15)), QVariant(41348.5), QVariant(QStringLiteral("2013-03-15")),
                QVariant::fromValue(nullptr)};
    switch (t.id()) {
    case QMetaType::Bool: return {QVariant(true), QVariant(false), QVariant(1)};
    case QMetaType::QString: return {QVariant(QStringLiteral("abc")), QVariant(QString()), QVariant(12)};
    case QMetaType::Short: case QMetaType::Int: return {QVariant(3), QVariant(3.0), QVariant(QStringLiteral("3"))};
    case QMetaType::Double: return {QVariant(2.5), QVariant(4), QVariant(QStringLiteral("1.5"))};
    default: return {};
    }
}

// A type of Qt's or the language's own, or an enumeration: what a host can use without us.
bool isPlain(QMetaType t)
{
    return t.id() < QMetaType::User || t.flags().testFlag(QMetaType::IsEnumeration);
}

std::unique_ptr<QObject> make(const QString &className, QWidget *parent)
{
    std::unique_ptr<QObject> object(createObject(className, parent));
    if (auto *c = qobject_cast<UserControl *>(object.get()))
        c->InitProperties();
    return object;
}

enum class Act { Code, Type, Step, Click, Pick };

} // namespace

class TestPropertySurface : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::recordServices();
        test::useRuntime();
        registerKelControls8();
        QVERIFY(!ClassFactory::classNames().isEmpty());
    }

    // Every property of ours, of every type, takes the plain values a host has and reads back a
    // plain value; none has a type of the library's own.
    void everyPropertyPlain_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        for (const QString &name : ClassFactory::classNames()) {
            QWidget parent;
            std::unique_ptr<QObject> object = make(name, &parent);
            QVERIFY(object);
            for (const QMetaObject *mo = object->metaObject(); mo && QByteArray(mo->className()).startsWith("kel::");
                 mo = mo->superClass()) {
                for (int i = mo->propertyOffset(); i < mo->propertyCount(); ++i) {
                    const QMetaProperty p = mo->property(i);
                    if (object->metaObject()->indexOfProperty(p.name()) != i)
                        continue; // shadowed by a subclass: setProperty reaches that one
                    QVERIFY2(isPlain(p.metaType()) || p.metaType() == QMetaType::fromType<QVariant>(),
                             qPrintable(name + u'.' + QLatin1String(p.name()) + u" is a "_qs + QLatin1String(p.typeName())));
                    const QList<QVariant> values = p.isWritable() ? plainValuesFor(p, p.read(object.get()).metaType())
                                                                  : QList<QVariant>{QVariant()};
                    QVERIFY2(!values.isEmpty(), qPrintable(name + u'.' + QLatin1String(p.name()) + u" has no plain form"_qs));
                    for (const QVariant &v : values)
                        QTest::addRow("%s.%s<-%s(%s)", qPrintable(name), p.name(), v.typeName() ? v.typeName() : "invalid",
                                      qPrintable(v.toString()))
                                << name << QByteArray(p.name()) << v;
                }
            }
        }
    }
    void everyPropertyPlain()
    {
        QFETCH(QString, className);
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QWidget parent;
        std::unique_ptr<QObject> object = make(className, &parent);
        const QMetaProperty p = object->metaObject()->property(object->metaObject()->indexOfProperty(property));
        if (p.isWritable())
            QVERIFY2(object->setProperty(property, value), "a plain value was refused");
        const QVariant back = object->property(property);
        QVERIFY2(isPlain(back.metaType()), qPrintable(u"read back as "_qs + QLatin1String(back.typeName())));
        // Only a value that may be Empty reads back as nothing.
        if (!back.isValid())
            QVERIFY(property.startsWith("Value") && p.metaType() == QMetaType::fromType<QVariant>());
    }

    // What a host writes it reads back, as the plain type a Qt developer expects.
    void readsBackWhatWasWritten_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char *cls, const char *prop, const QVariant &in, const QVariant &out) {
            QTest::addRow("%s.%s<-%s(%s)", cls, prop, in.typeName() ? in.typeName() : "invalid", qPrintable(in.toString()))
                    << QString::fromLatin1(cls) << QByteArray(prop) << in << out;
        };
        const QDate ides(2013, 3, 15);
        const QVariant null = QVariant::fromValue(nullptr);
        row("KelNumber", "Value", 12.5, 12.5);
        row("KelNumber", "Value", u"12.5"_qs, 12.5);
        row("KelNumber", "Value", 7, 7.0);
        row("KelNumber", "Value", QVariant(), 0.0);
        row("KelNumber", "Value", u"abc"_qs, 0.0); // ignored: the field keeps its 0
        row("KelNumber", "Decimals", 3, 3);
        for (const QVariant &in : {QVariant(ides), QVariant(41348.0), QVariant(41348), QVariant(u"2013-03-15"_qs),
                                   QVariant(QDateTime(ides, QTime(18, 0))), QVariant(u"15/03/2013"_qs)})
            row("KelDate", "Value", in, ides);
        row("KelDate", "Value", null, null);
        row("KelDate", "Value", QDate(), null);
        row("KelDate", "Value", u"no date"_qs, null);
        row("KelDate", "Value", QVariant(), null); // Empty only until the first value
        row("KelDate", "ValueSaved", ides, ides);
        row("KelDate", "ValueOriginal", null, null);
        for (const char *bound : {"MinValue", "MaxValue"}) {
            for (const QVariant &in : {QVariant(36526.0), QVariant(QDate(2000, 1, 1)), QVariant(u"2000-01-01"_qs),
                                       QVariant(QDateTime(QDate(2000, 1, 1), QTime())), QVariant(u"36526"_qs)})
                row("KelDate", bound, in, QDate(2000, 1, 1));
        }
        row("KelDate", "DaysFlag", 3, QVariant::fromValue(KelDate::BirthDay));
        row("KelDate", "DaysFlag", u"LastDay"_qs, QVariant::fromValue(KelDate::LastDay));
        row("KelDate", "DaysFlag", 7, QVariant::fromValue(KelDate::Allow)); // out of range: ignored
        for (const QVariant &in : {QVariant(QTime(10, 15)), QVariant(10.25 / 24), QVariant(u"10:15"_qs),
                                   QVariant(QDateTime(ides, QTime(10, 15))), QVariant(u"2013-03-15 10:15"_qs)})
            row("KelTime", "Value", in, QTime(10, 15));
        row("KelTime", "Value", null, null);
        for (const QVariant &in : {QVariant(0.75), QVariant(QTime(18, 0)), QVariant(u"18:00:00"_qs),
                                   QVariant(QDateTime(ides, QTime(18, 0)))})
            row("KelTime", "MaxValue", in, QTime(18, 0));
        row("KelTime", "MinValue", 0.25, QTime(6, 0));
        row("KelTime", "MinValue", true, QTime(0, 0)); // a Boolean is no time: ignored
    }
    void readsBackWhatWasWritten()
    {
        QFETCH(QString, className);
        QFETCH(QByteArray, property);
        QFETCH(QVariant, written);
        QFETCH(QVariant, expected);
        QWidget parent;
        std::unique_ptr<QObject> object = make(className, &parent);
        object->setProperty("LimitToList", false);
        QVERIFY(object->setProperty(property, written));
        const QVariant back = object->property(property);
        QCOMPARE(back.metaType(), expected.metaType());
        QCOMPARE(back, expected);
        if (expected.metaType() == QMetaType::fromType<double>())
            QCOMPARE(QJsonValue::fromVariant(back), QJsonValue(expected.toDouble()));
    }

    // The NOTIFY signal of a value comes with every change, by code or by the user, once per
    // change; the controls' own events keep their rules (their tests count them).
    void notifies_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<int>("act");
        QTest::addColumn<int>("notices");
        const auto row = [](const char *name, const char *cls, const char *prop, Act act, int count) {
            QTest::newRow(name) << QString::fromLatin1(cls) << QByteArray(prop) << int(act) << count;
        };
        row("number by code", "KelNumber", "Value", Act::Code, 1);
        row("number typed", "KelNumber", "Value", Act::Type, 1);
        row("number stepped", "KelNumber", "Value", Act::Step, 1);
        row("date by code", "KelDate", "Value", Act::Code, 1);
        row("date typed", "KelDate", "Value", Act::Type, 1);
        row("date stepped", "KelDate", "Value", Act::Step, 1);
        row("time by code", "KelTime", "Value", Act::Code, 1);
        row("time typed", "KelTime", "Value", Act::Type, 1);
        row("text by code", "KelText", "Text", Act::Code, 1);
        row("text typed", "KelText", "Text", Act::Type, 3);
        row("check by code", "KelCheck", "Value", Act::Code, 1);
        row("check clicked", "KelCheck", "Value", Act::Click, 1);
        row("combo text by code", "KelCombo", "Text", Act::Code, 1);
        row("combo text typed", "KelCombo", "Text", Act::Type, 3);
        row("combo index by code", "KelCombo", "ListIndex", Act::Code, 1);
        row("combo index picked", "KelCombo", "ListIndex", Act::Pick, 1);
    }
    void notifies()
    {
        QFETCH(QString, className);
        QFETCH(QByteArray, property);
        QFETCH(int, act);
        QFETCH(int, notices);
        QWidget window;
        std::unique_ptr<QObject> object = make(className, &window);
        auto *control = static_cast<QWidget *>(object.get());
        control->setGeometry(0, 0, 300, 20);
        (new QLineEdit(&window))->setGeometry(0, 40, 100, 20); // somewhere for the focus to go
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const bool combo = className == u"KelCombo", date = className == u"KelDate", time = className == u"KelTime";
        if (combo) {
            object->setProperty("List", u"Apples,Pears,Plums"_qs);
            object->setProperty("LimitToList", Act(act) != Act::Type); // else what is no item is refused
        }
        if (className == u"KelNumber")
            object->setProperty("UpDown", true);
        const QMetaProperty p = object->metaObject()->property(object->metaObject()->indexOfProperty(property));
        QVERIFY(p.hasNotifySignal());
        QSignalSpy spy(object.get(), p.notifySignal());
        QWidget *field = control->focusProxy() ? control->focusProxy() : control;
        switch (Act(act)) {
        case Act::Code: {
            const QVariant v = property == "ListIndex" ? QVariant(2)
                    : date ? QVariant(QDate(2013, 3, 15)) : time ? QVariant(QTime(9, 0))
                    : className == u"KelCheck" ? QVariant(true) : className == u"KelNumber" ? QVariant(5)
                    : QVariant(combo ? u"Pears"_qs : u"Pea"_qs);
            QVERIFY(object->setProperty(property, v));
            QVERIFY(object->setProperty(property, v)); // the same again moves nothing
            break;
        }
        case Act::Type:
            field->setFocus(Qt::TabFocusReason);
            QTest::keyClicks(field, date ? u"15/03/2013"_qs : time ? u"9:30"_qs : className == u"KelNumber" ? u"42"_qs
                                    : combo ? u"Xyz"_qs : u"Pea"_qs); // no item starts so: nothing completes
            QTest::keyClick(field, Qt::Key_Tab); // leaving commits what was typed
            break;
        case Act::Step:
            object->setProperty("Value", date ? QVariant(QDate(2013, 3, 15)) : QVariant(5));
            spy.clear();
            field->setFocus(Qt::TabFocusReason);
            QTest::keyClick(field, Qt::Key_Up);
            break;
        case Act::Click:
            QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(8, field->height() / 2)); // on the box
            break;
        case Act::Pick: // what the list does when the user picks its second item
            emit control->findChild<QComboBox *>()->activated(1);
            break;
        }
        QCOMPARE(spy.count(), notices);
    }
};

QTEST_MAIN(TestPropertySurface)
#include "tst_propertysurface.moc"
