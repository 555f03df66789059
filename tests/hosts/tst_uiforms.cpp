// The Designer plugin loaded the way Designer loads it, every widget made through its interface;
// and a .ui form gives the same controls as a property bag with the same values, whether QUiLoader
// reads it at run time (in any property order) or uic compiled it into the program.
#include "uisample.h"

#include "forms/units.h"
#include "library/classfactory.h"
#include "ui_kelform.h"

#include <QPluginLoader>
#include <QSet>
#include <QTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using namespace Qt::StringLiterals;
using namespace kel;

Q_DECLARE_METATYPE(kel::test::UiOrder)

namespace {

QStringList bagText(UserControl *control)
{
    MemoryPropertyBag bag;
    control->WriteProperties(bag);
    QStringList out;
    for (const auto &[name, value] : bag.entries())
        out << name + u'=' + value.debugString();
    return out;
}

// Everything a host can observe of a control: its own properties, what it saves, and where and
// in which colours its child widgets are drawn.
QStringList observe(QWidget *w)
{
    QStringList out;
    const QMetaObject *mo = w->metaObject();
    for (int i = QWidget::staticMetaObject.propertyCount(); i < mo->propertyCount(); ++i) {
        const QMetaProperty p = mo->property(i);
        if (qstrcmp(p.name(), "hWnd") == 0) // a window handle differs between any two controls
            continue;
        const QVariant v = p.read(w);
        out << QString::fromLatin1(p.name()) + u'=' + QString::fromLatin1(v.typeName()) + u' ' + v.toString();
    }
    for (const QString &saved : bagText(qobject_cast<UserControl *>(w)))
        out << u"saved "_s + saved;
    for (QWidget *child : w->findChildren<QWidget *>()) {
        if (!child->isVisibleTo(w)) {
            out << child->objectName() + u" hidden"_s;
            continue;
        }
        const QPalette pal = child->palette();
        out << u"%1 %2 %3 %4 %5"_s.arg(QString::fromLatin1(child->metaObject()->className()), child->objectName())
                        .arg(QString::fromLatin1(QTest::toString(child->geometry())))
                        .arg(pal.color(child->backgroundRole()).name(), pal.color(child->foregroundRole()).name());
    }
    return out;
}

// The same control loaded as a saved form is: ReadProperties from a bag, then placed on a form
// that is shown.
QStringList expected(const QString &className, const QRect &geometry)
{
    QWidget form;
    auto *control = qobject_cast<UserControl *>(createObject(className, &form));
    MemoryPropertyBag bag;
    for (const PersistedProperty &p : test::sampleValues(className))
        bag.set(p.name, p.value);
    control->ReadProperties(bag);
    control->setGeometry(geometry);
    form.show();
    return observe(control);
}

void compareForm(QWidget *form)
{
    form->show();
    for (const QString &className : test::controlClasses()) {
        auto *control = form->findChild<UserControl *>(test::sampleObjectName(className));
        QVERIFY2(control, qPrintable(className));
        QCOMPARE(QString::fromLatin1(control->metaObject()->className()), u"kel::"_s + className);
        const QStringList want = expected(className, control->geometry()), got = observe(control);
        for (qsizetype i = 0; i < qMax(got.size(), want.size()); ++i)
            QVERIFY2(got.value(i) == want.value(i), qPrintable(className + u": "_s + got.value(i) + u" instead of "_s + want.value(i)));
    }
}

} // namespace

class TstUiForms : public QObject
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
        QCOMPARE(QSet<QString>(names.begin(), names.end()), QSet<QString>(expected.begin(), expected.end()));
        // Text first, the other fields by what they hold, the bar last.
        QCOMPARE(names.mid(0, 7), QStringList({u"kel::KelText"_s, u"kel::KelNumber"_s, u"kel::KelDate"_s, u"kel::KelTime"_s,
                                               u"kel::KelCombo"_s, u"kel::KelCheck"_s, u"kel::KelProgressBar"_s}));
    }

    void entry_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < m_widgets.size(); ++i)
            QTest::newRow(qPrintable(m_widgets[i]->name())) << i;
    }

    // The widget box entry; a widget made through it; what Designer puts on a form when the
    // control is dropped (a default size that already obeys the control's layout rules, and the
    // properties of InitProperties); and a property editor that shows what is saved with the form,
    // nothing run-time only, and no property of a type it cannot edit (qint16, Variant, Date):
    // it silently leaves such a property out, so that it cannot be set at design time.
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
        // A newly placed control: named as on the form, so that its caption is that name.
        std::unique_ptr<QObject> fresh(createObject(className));
        fresh->setObjectName(control->objectName());
        auto *initialised = qobject_cast<UserControl *>(fresh.get());
        initialised->setAmbientUserMode(false);
        initialised->InitProperties();
        // Every captioned control shows its name, whether or not first-time set-up gives it.
        if (fresh->metaObject()->indexOfProperty("Caption") >= 0) {
            QCOMPARE(control->property("Caption").toString(), control->objectName());
            initialised->setProperty("Caption", control->objectName());
        }
        QCOMPARE(bagText(control), bagText(initialised));

        // Designer's editor follows the type of the value read, at design time.
        static const QSet<int> editable = {QMetaType::Bool, QMetaType::Int, QMetaType::UInt, QMetaType::LongLong,
                                           QMetaType::Double, QMetaType::QString, QMetaType::QDate,
                                           QMetaType::QTime, QMetaType::QDateTime};
        const QMetaObject *mo = fresh->metaObject();
        QSet<QString> designable, persisted;
        QStringList hidden;
        for (int i = QWidget::staticMetaObject.propertyCount(); i < mo->propertyCount(); ++i) {
            const QMetaProperty p = mo->property(i);
            if (!p.isDesignable())
                continue;
            designable << QString::fromLatin1(p.name());
            if (!p.isEnumType() && !editable.contains(p.read(fresh.get()).metaType().id()))
                hidden << className + u'.' + QString::fromLatin1(p.name());
        }
        for (const PersistedProperty &p : persistedProperties(className))
            persisted << p.property;
        QCOMPARE(designable, persisted);
        QVERIFY2(hidden.isEmpty(), qPrintable(hidden.join(u", "_s)));
    }

    void quiLoader_data()
    {
        QTest::addColumn<test::UiOrder>("order");
        QTest::newRow("property sheet") << test::UiOrder::PropertySheet;
        QTest::newRow("reversed") << test::UiOrder::Reversed;
        QTest::newRow("alphabetical") << test::UiOrder::Alphabetical;
    }
    void quiLoader()
    {
        QFETCH(test::UiOrder, order);
        QString error;
        std::unique_ptr<QWidget> form = test::loadUi(test::sampleUi(order), &error);
        QVERIFY2(form, qPrintable(error));
        compareForm(form.get());
    }

    void uic()
    {
        QWidget form;
        Ui::KelForm ui;
        ui.setupUi(&form);
        compareForm(&form);
    }
};

QTEST_MAIN(TstUiForms)
#include "tst_uiforms.moc"
