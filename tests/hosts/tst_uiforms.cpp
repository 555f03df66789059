// A .ui form gives the same controls as a property bag with the same values, whether QUiLoader
// reads it at run time (in any property order) or uic compiled it into the program.
#include "uisample.h"

#include "ui_kelform.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kel;

Q_DECLARE_METATYPE(kel::test::UiOrder)

namespace {

// Everything a host can observe of a control: its own properties, what it saves, and where and
// in which colours its child widgets are drawn.
QStringList observe(QWidget *w)
{
    QStringList out;
    const QMetaObject *mo = w->metaObject();
    for (int i = QWidget::staticMetaObject.propertyCount(); i < mo->propertyCount(); ++i) {
        const QMetaProperty p = mo->property(i);
        out << QString::fromLatin1(p.name()) + u'=' + plainValue(p.read(w)).toString();
    }
    MemoryPropertyBag bag;
    qobject_cast<UserControl *>(w)->WriteProperties(bag);
    for (const auto &[name, value] : bag.entries())
        out << u"saved "_s + name + u'=' + value.debugString();
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
// that is shown. Lines that differ between two such controls (a window handle) say nothing.
QStringList expected(const QString &className, const QRect &geometry, QStringList *unstable)
{
    QStringList seen[2];
    for (QStringList &s : seen) {
        QWidget form;
        auto *control = qobject_cast<UserControl *>(createObject(className, &form));
        MemoryPropertyBag bag = test::sampleBag(className);
        control->ReadProperties(bag);
        control->setGeometry(geometry);
        form.show();
        s = observe(control);
    }
    for (qsizetype i = 0; i < seen[0].size() && i < seen[1].size(); ++i)
        if (seen[0][i] != seen[1][i])
            *unstable << seen[0][i].section(u'=', 0, 0);
    return seen[0];
}

void compareForm(QWidget *form)
{
    form->show();
    for (const QString &className : test::controlClasses()) {
        auto *control = form->findChild<UserControl *>(test::sampleObjectName(className));
        QVERIFY2(control, qPrintable(className));
        QCOMPARE(QString::fromLatin1(control->metaObject()->className()), u"kel::"_s + className);
        QStringList unstable;
        QStringList want = expected(className, control->geometry(), &unstable), got = observe(control);
        for (QStringList *list : {&got, &want})
            list->removeIf([&](const QString &line) { return unstable.contains(line.section(u'=', 0, 0)); });
        for (qsizetype i = 0; i < qMax(got.size(), want.size()); ++i)
            QVERIFY2(got.value(i) == want.value(i), qPrintable(className + u": "_s + got.value(i) + u" instead of "_s + want.value(i)));
    }
}

} // namespace

class TstUiForms : public QObject
{
    Q_OBJECT
private slots:
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

    // The generated file is the sample of this build: a stale one would test nothing new.
    void uicFileIsCurrent()
    {
        QFile file(QStringLiteral(KEL_SAMPLE_UI));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), test::sampleUi());
    }
};

QTEST_MAIN(TstUiForms)
#include "tst_uiforms.moc"
