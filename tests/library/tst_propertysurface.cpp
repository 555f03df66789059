// A host that knows only QObject::setProperty/property and plain QVariants reaches every property
// of every class the factory makes.
#include "controls/kelcontrols8.h"
#include "kelfixture.h"
#include "platform/variant.h"

#include <QDateTime>
#include <QMetaProperty>
#include <QTest>

using namespace kel;

namespace {

// Plain values a host may hand to a property of this type.
QList<QVariant> plainValuesFor(const QMetaProperty &p)
{
    const QMetaType t = p.metaType();
    if (p.isEnumType())
        return {QVariant(0), QVariant(1), QVariant(QString::fromLatin1(p.enumerator().key(0)))};
    if (t == QMetaType::fromType<Variant>())
        return {QVariant(), QVariant(2.0), QVariant(7), QVariant(QStringLiteral("15/03/2013")), QVariant(true),
                QVariant(QDate(2013, 3, 15)), QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 15))),
                QVariant(QTime(10, 15)), QVariant::fromValue(nullptr)};
    if (t == QMetaType::fromType<QDateTime>())
        return {QVariant(QDate(2013, 3, 15)), QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 15))),
                QVariant(QStringLiteral("2013-03-15"))};
    if (t == QMetaType::fromType<QTime>())
        return {QVariant(QTime(10, 15)), QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 15))),
                QVariant(QStringLiteral("10:15"))};
    if (t == QMetaType::fromType<Date>())
        return {QVariant(QDate(2013, 3, 15)), QVariant(QDateTime(QDate(2013, 3, 15), QTime(10, 15))),
                QVariant(QTime(10, 15)), QVariant(41348.5), QVariant(41348), QVariant(QStringLiteral("2013-03-15"))};
    switch (t.id()) {
    case QMetaType::Bool: return {QVariant(true), QVariant(false), QVariant(1)};
    case QMetaType::QString: return {QVariant(QStringLiteral("abc")), QVariant(QString()), QVariant(12)};
    case QMetaType::Short: case QMetaType::Int: case QMetaType::Long: case QMetaType::LongLong:
        return {QVariant(3), QVariant(3.0), QVariant(QStringLiteral("3")), QVariant(qint16(2))};
    case QMetaType::Double: case QMetaType::Float:
        return {QVariant(2.5), QVariant(4), QVariant(QStringLiteral("1.5"))};
    default:
        return {};
    }
}

// The plain type a Qt user converts this property's value to.
QMetaType plainTypeOf(const QMetaProperty &p)
{
    const QMetaType t = p.metaType();
    if (p.isEnumType())
        return QMetaType::fromType<int>();
    if (t == QMetaType::fromType<Variant>())
        return QMetaType::fromType<QString>();
    if (t == QMetaType::fromType<Date>())
        return QMetaType::fromType<QDateTime>();
    return t;
}

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

    void everyPropertyReachable_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        for (const QString &name : ClassFactory::classNames()) {
            QWidget parent;
            std::unique_ptr<QObject> object(createObject(name, &parent));
            QVERIFY(object);
            // Our own properties: those declared by classes of the library, not by Qt.
            for (const QMetaObject *mo = object->metaObject(); mo && QByteArray(mo->className()).startsWith("kel::");
                 mo = mo->superClass()) {
                for (int i = mo->propertyOffset(); i < mo->propertyCount(); ++i) {
                    const QMetaProperty p = mo->property(i);
                    if (object->metaObject()->indexOfProperty(p.name()) != i)
                        continue; // shadowed by a subclass: setProperty reaches that one
                    QList<QVariant> values = p.isWritable() ? plainValuesFor(p) : QList<QVariant>{QVariant()};
                    QVERIFY2(!values.isEmpty(), qPrintable(name + u'.' + QLatin1String(p.name()) + u": type "_qs
                                                           + QLatin1String(p.typeName()) + u" has no plain form"_qs));
                    for (const QVariant &v : values)
                        QTest::addRow("%s.%s<-%s(%s)", qPrintable(name), p.name(), v.typeName() ? v.typeName() : "invalid",
                                      qPrintable(v.toString()))
                                << name << QByteArray(p.name()) << v;
                }
            }
        }
    }
    void everyPropertyReachable()
    {
        QFETCH(QString, className);
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QWidget parent;
        std::unique_ptr<QObject> object(createObject(className, &parent));
        const QMetaProperty p = object->metaObject()->property(object->metaObject()->indexOfProperty(property));
        if (p.isWritable())
            QVERIFY2(object->setProperty(property, value), "a plain value was refused");
        QVariant back = object->property(property);
        QVERIFY(back.isValid());
        QVERIFY2(back.convert(plainTypeOf(p)), qPrintable(u"read back as "_qs + QLatin1String(back.typeName())));
    }
};

QTEST_MAIN(TestPropertySurface)
#include "tst_propertysurface.moc"
