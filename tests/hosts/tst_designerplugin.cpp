// The Designer plugin loaded the way Designer loads it, every widget made through its interface.
#include "uisample.h"

#include "forms/units.h"
#include "library/classfactory.h"

#include <QPluginLoader>
#include <QSet>
#include <QTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using namespace Qt::StringLiterals;
using namespace kel;

static QStringList bagText(UserControl *control)
{
    MemoryPropertyBag bag;
    control->WriteProperties(bag);
    QStringList out;
    for (const auto &[name, value] : bag.entries())
        out << name + u'=' + value.debugString();
    return out;
}

class TstDesignerPlugin : public QObject
{
    Q_OBJECT
    QPluginLoader m_plugin{QStringLiteral(KEL_DESIGNER_PLUGIN)};
    QList<QDesignerCustomWidgetInterface *> m_widgets;

private slots:
    void initTestCase()
    {
        QVERIFY2(m_plugin.load(), qPrintable(m_plugin.errorString()));
        auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_plugin.instance());
        QVERIFY(collection);
        m_widgets = collection->customWidgets();
    }

    void widgetBoxHoldsEveryControl()
    {
        QStringList names, expected;
        for (QDesignerCustomWidgetInterface *w : m_widgets) {
            names << w->name();
            QCOMPARE(w->group(), u"KelControls8"_s);
            QVERIFY(!w->isContainer());
        }
        for (const QString &c : test::controlClasses())
            expected << u"kel::"_s + c;
        QCOMPARE(names, expected);
        QVERIFY(expected.contains(u"kel::KelText"_s) && !expected.contains(u"kel::KelControlHandler"_s));
    }

    void entry_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < m_widgets.size(); ++i)
            QTest::newRow(qPrintable(m_widgets[i]->name())) << i;
    }

    // The widget box entry, a widget made through it, and what Designer puts on a form when the
    // control is dropped: a default size that already obeys the control's layout rules, and the
    // properties of InitProperties.
    void entry()
    {
        QFETCH(int, index);
        QDesignerCustomWidgetInterface *w = m_widgets[index];
        const QString className = w->name().mid(5);
        QVERIFY(!w->icon().isNull());
        QVERIFY(!w->toolTip().isEmpty() && w->toolTip() != className);
        QVERIFY(w->whatsThis().size() > w->toolTip().size());
        QCOMPARE(w->includeFile(), u"<KelControls8/kelcontrols8.h>"_s);
        if (!w->isInitialized())
            w->initialize(nullptr);

        // The plugin's objects are counted by the same library as ours: one set of library-wide state.
        QVERIFY(DllCanUnloadNow());
        QWidget form;
        std::unique_ptr<QWidget> made(w->createWidget(&form));
        QCOMPARE(made ? QString::fromLatin1(made->metaObject()->className()) : QString(), w->name());
        QVERIFY(qobject_cast<UserControl *>(made.get()) && !DllCanUnloadNow());
        made.reset();
        QVERIFY(DllCanUnloadNow());

        QString error;
        std::unique_ptr<QWidget> dropped = test::loadUi(w->domXml(), &error);
        QVERIFY2(dropped, qPrintable(error));
        auto *control = qobject_cast<UserControl *>(dropped.get());
        QVERIFY(control);
        const QSize given = control->size();
        QVERIFY(given.width() > 100);
        QCOMPARE(given.height(), twipsToPixelsY(300));
        control->setWidth(given.width() * twipsPerPixelX());
        control->setHeight(given.height() * twipsPerPixelY());
        QCOMPARE(control->size(), given);
        std::unique_ptr<QObject> fresh(createObject(className));
        auto *initialised = qobject_cast<UserControl *>(fresh.get());
        initialised->InitProperties();
        QCOMPARE(bagText(control), bagText(initialised));
    }

    // The property editor shows what is saved with the form and nothing run-time only. It silently
    // leaves out a property of a type it cannot edit (qint16, Variant, Date): such a property
    // cannot be set at design time.
    void designable_data() { entry_data(); }
    void designable()
    {
        QFETCH(int, index);
        const QString className = m_widgets[index]->name().mid(5);
        static const QSet<int> editable = {QMetaType::Bool, QMetaType::Int, QMetaType::UInt, QMetaType::LongLong,
                                           QMetaType::Double, QMetaType::QString, QMetaType::QDate,
                                           QMetaType::QTime, QMetaType::QDateTime};
        // Until the control offers a plain type: an XPASS says it does.
        static const QSet<QString> known = {u"KelNumber.Value"_s, u"KelDate.Value"_s, u"KelTime.Value"_s};
        std::unique_ptr<QObject> object(createObject(className));
        const QMetaObject *mo = object->metaObject();
        QSet<QString> designable, persisted;
        QStringList hidden, expected;
        for (int i = QWidget::staticMetaObject.propertyCount(); i < mo->propertyCount(); ++i) {
            const QMetaProperty p = mo->property(i);
            const QString name = className + u'.' + QString::fromLatin1(p.name());
            if (p.isDesignable())
                designable << QString::fromLatin1(p.name());
            if (p.isDesignable() && !editable.contains(p.metaType().id()))
                hidden << name;
            if (known.contains(name))
                expected << name;
        }
        for (const PersistedProperty &p : persistedProperties(className))
            persisted << p.property;
        QCOMPARE(designable, persisted);
        if (!expected.isEmpty())
            QEXPECT_FAIL("", "Value is a Variant: it may be Empty or Null", Continue);
        QVERIFY2(hidden.isEmpty(), qPrintable(hidden.join(u", "_s)));
        QCOMPARE(hidden, expected);
    }
};

QTEST_MAIN(TstDesignerPlugin)
#include "tst_designerplugin.moc"
