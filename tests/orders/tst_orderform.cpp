// The order-entry example worked through real keys against a temporary database.
#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"

#include "controls/progress/kelprogressbar.h"
#include "answering.h"

#include <QAction>
#include <QApplication>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

using namespace kel;
using namespace kel::kelform;

namespace {

QWidget *focused() { return QApplication::focusWidget(); }

bool focusInside(const QWidget *control)
{
    return focused() && control->isAncestorOf(focused());
}

// Empties the focused field by keys, types `text` and moves on with Enter.
void fill(const QString &text)
{
    QTest::keyClick(focused(), Qt::Key_End);
    for (int i = 0; i < 24; ++i)
        QTest::keyClick(focused(), Qt::Key_Backspace);
    QTest::keyClicks(focused(), text);
    QTest::keyClick(focused(), Qt::Key_Return);
}

// The first row of a query, each column as text.
QStringList firstRow(const QString &sql)
{
    QSqlQuery q(sql);
    QStringList columns;
    if (q.next())
        for (int i = 0; i < q.record().count(); ++i)
            columns << q.value(i).toString();
    return columns;
}

} // namespace

class TestOrderForm : public QObject
{
    Q_OBJECT
    test::AnsweringServices *m_services = nullptr;
    QTemporaryDir m_dir;
    std::unique_ptr<RecordForm> m_form;

    QString dbFile() const { return m_dir.filePath(QStringLiteral("orders.sqlite")); }

    void open()
    {
        m_form.reset();
        QString error;
        QVERIFY2(openDatabase(dbFile(), &error).isOpen(), qPrintable(error));
        FormLoader loader;
        QWidget *form = loader.loadFile(QStringLiteral(":/orders/orders.ui"), nullptr, &error);
        QVERIFY2(form, qPrintable(error));
        m_form = std::make_unique<RecordForm>(form, QSqlDatabase::database());
        QVERIFY(m_form->hasTable());
        m_form->show();
        m_form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }
    QWidget *control(const char *name) const { return m_form->form()->findChild<QWidget *>(QLatin1String(name)); }
    void focusField(const char *name) { control(name)->findChild<QWidget *>(QStringLiteral("Text1"))->setFocus(Qt::TabFocusReason); }
    int storedOrders() const { return firstRow(QStringLiteral("SELECT count(*) FROM orders")).value(0, u"-1"_qs).toInt(); }
    // Nothing to save, and the form says so.
    bool unchanged() const { return !m_form->changedSaved() && !m_form->saveAction()->isEnabled(); }
    void save() { QTest::keyClick(focused(), Qt::Key_S, Qt::ControlModifier); }
    // A new order typed field after field in tab order; the date keeps its default of today.
    void enterOrder(const QString &ref, const QString &customer, const QString &time, const QString &quantity)
    {
        QVERIFY(m_form->newRecord());
        QVERIFY(focusInside(control("customer_ref")));
        fill(ref);
        QVERIFY(focusInside(control("customer_id")));
        fill(customer);
        QVERIFY(focusInside(control("order_date")));
        QTest::keyClick(focused(), Qt::Key_Return);
        fill(time);
        QVERIFY(focusInside(control("quantity")));
        fill(quantity);
        fill(QStringLiteral("9.5"));
        QVERIFY(focusInside(control("paid")));
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void init()
    {
        m_services = test::answerBoxes();
        QFile::remove(dbFile());
        open();
    }
    void cleanup() { m_form.reset(); }

    void newOrderStoredReopenedChangedAndReverted()
    {
        // Save stops at the first invalid field in tab order, with its message, until all are valid.
        enterOrder(QString(), QStringLiteral("Cr"), QStringLiteral("14:30"), QString());
        for (const auto &[prompt, field, text] : {std::tuple{"Please fill in \"Customer ref.\".", "customer_ref", "PO-9001"},
                                                  {"Please enter a non-zero value in this field.", "quantity", "12"}}) {
            m_services->boxes.clear();
            save();
            QCOMPARE(m_services->boxes.size(), size_t(1));
            QCOMPARE(m_services->boxes.front().prompt, QString::fromLatin1(prompt));
            QVERIFY(focusInside(control(field)));
            QCOMPARE(storedOrders(), 5);
            fill(QString::fromLatin1(text));
        }
        m_services->boxes.clear();
        save();
        QVERIFY(m_services->boxes.empty());
        QCOMPARE(storedOrders(), 6);
        QVERIFY(unchanged());

        // What the database holds, read by a fresh form on the reopened file: Crane Logistics by
        // its tag, the date field's default of today.
        open();
        QCOMPARE(firstRow(u"SELECT customer_id, order_date, delivery_time, quantity, unit_price, paid FROM orders "
                          "WHERE customer_ref = 'PO-9001'"_qs),
                 (QStringList{QStringLiteral("103"), QDate::currentDate().toString(Qt::ISODate), QStringLiteral("14:30:00"),
                              QStringLiteral("12"), QStringLiteral("9.5"), QStringLiteral("0")}));
        QVERIFY(m_form->last());
        QCOMPARE(control("customer_ref")->property("Text").toString(), QStringLiteral("PO-9001"));
        focusField("order_date");
        QVERIFY(!m_form->saveAction()->isEnabled());
        QTest::keyClick(focused(), Qt::Key_Backspace);
        QVERIFY(m_form->saveAction()->isEnabled()); // before the field commits what was typed
        QTest::keyClick(focused(), Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(control("customer_id")->property("Text").toString(), QStringLiteral("Crane Logistics"));
        QVERIFY(!m_form->changedSaved());

        QWidget *price = control("unit_price");
        focusField("unit_price");
        fill(QStringLiteral("10.25"));
        QVERIFY(price->property("ChangedSaved").toBool());
        QVERIFY(m_form->saveAction()->isEnabled());

        // Leaving asks; Cancel stays on the changed record.
        const QVariant key = m_form->currentKey();
        QTest::keyClick(focused(), Qt::Key_PageUp);
        QCOMPARE(m_services->boxes.back().prompt, QStringLiteral("Save changes to this record?"));
        QCOMPARE(m_form->currentKey(), key);
        QVERIFY(m_form->changedSaved());

        QTest::keyClick(focused(), Qt::Key_R, Qt::ControlModifier);
        QVERIFY(unchanged());
        QCOMPARE(price->property("Value").toDouble(), 9.5);

        // Yes stores the change on the way out.
        focusField("unit_price");
        fill(QStringLiteral("11"));
        m_services->answer = 6;
        QTest::keyClick(focused(), Qt::Key_PageUp);
        QCOMPARE(m_form->positionText(), QStringLiteral("Record 5 of 6"));
        QCOMPARE(firstRow(u"SELECT unit_price FROM orders WHERE customer_ref = 'PO-9001'"_qs), QStringList(u"11"_qs));
    }

    void emptyTimeIsStoredAsNull()
    {
        enterOrder(QStringLiteral("PO-7"), QStringLiteral("Ba"), QString(), QStringLiteral("3"));
        save();
        QCOMPARE(storedOrders(), 6);
        QCOMPARE(firstRow(u"SELECT delivery_time IS NULL, customer_id FROM orders WHERE customer_ref = 'PO-7'"_qs),
                 (QStringList{u"1"_qs, u"102"_qs}));
        QVERIFY(control("delivery_time")->property("Value").value<Variant>().isNull());
        QVERIFY(!m_form->changedSaved());
    }

    // The seeded table opens on its first record, unchanged; the batch then reprices every order.
    void seededThenBatchReprices()
    {
        QCOMPARE(m_form->positionText(), QStringLiteral("Record 1 of 5"));
        QCOMPARE(control("quantity")->property("Value").toDouble(), 40.0);
        QVERIFY(unchanged());
        const auto prices = [] {
            QList<double> out;
            QSqlQuery q(QStringLiteral("SELECT unit_price FROM orders ORDER BY id"));
            while (q.next())
                out << q.value(0).toDouble();
            return out;
        };
        const QList<double> before = prices();
        QVERIFY(m_form->runBatch());
        const QList<double> after = prices();
        QCOMPARE(after.size(), before.size());
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY2(qAbs(after[i] - before[i] * 1.05) <= 0.00501, qPrintable(QString::number(after[i])));
        auto *bar = m_form->form()->findChild<KelProgressBar *>();
        QCOMPARE(bar->Value(), bar->Max());
        QCOMPARE(control("unit_price")->property("Value").toDouble(), after.front());
    }
};

QTEST_MAIN(TestOrderForm)
#include "tst_orderform.moc"
