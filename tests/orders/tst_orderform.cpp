// The order-entry example worked through real keys against a temporary database.
#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"

#include "controls/progress/kelprogressbar.h"
#include "kelfixture.h"

#include <QAction>
#include <QApplication>
#include <QSqlQuery>
#include <QTemporaryDir>

using namespace kel;
using namespace kel::kelform;

namespace {

// Records every box and answers the ones with a choice as told.
struct AnsweringServices : RecordingServices {
    int answer = 2; // Cancel
    int MsgBox(const QString &prompt, int style, const QString &title) override
    {
        RecordingServices::MsgBox(prompt, style, title);
        return (style & 7) ? answer : 1;
    }
};

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

} // namespace

class TestOrderForm : public QObject
{
    Q_OBJECT
    AnsweringServices *m_services = nullptr;
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
    int storedOrders() const
    {
        QSqlQuery q(QStringLiteral("SELECT count(*) FROM orders"));
        return q.next() ? q.value(0).toInt() : -1;
    }
    void save() { QTest::keyClick(focused(), Qt::Key_S, Qt::ControlModifier); }
    // A new order typed field after field in tab order; the date keeps its default of today.
    void enterOrder(const QString &ref, const QString &customer, const QString &time, const QString &quantity, const QString &price)
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
        fill(price);
        QVERIFY(focusInside(control("paid")));
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void init()
    {
        auto s = std::make_unique<AnsweringServices>();
        m_services = s.get();
        m_services->now = QDateTime::currentDateTime();
        setServices(std::move(s));
        test::useRuntime();
        QFile::remove(dbFile());
        open();
    }
    void cleanup() { m_form.reset(); }

    void saveStopsAtFirstInvalid_data()
    {
        QTest::addColumn<QStringList>("order"); // reference, customer, quantity
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("field");
        const auto order = [](const char *ref, const char *customer, const char *quantity) {
            return QStringList{QLatin1String(ref), QLatin1String(customer), QLatin1String(quantity)};
        };
        QTest::newRow("no reference") << order("", "Cr", "12") << "Please fill in \"Customer ref.\"." << "customer_ref";
        QTest::newRow("no customer") << order("PO-1", "", "12") << "Please fill in \"Customer\"." << "customer_id";
        QTest::newRow("zero quantity") << order("PO-1", "Cr", "") << "Please enter a non-zero value in this field." << "quantity";
        QTest::newRow("two invalid: the first in tab order") << order("", "Cr", "0") << "Please fill in \"Customer ref.\"." << "customer_ref";
    }
    void saveStopsAtFirstInvalid()
    {
        QFETCH(QStringList, order);
        QFETCH(QString, prompt);
        QFETCH(QString, field);
        enterOrder(order[0], order[1], QStringLiteral("14:30"), order[2], QStringLiteral("9.5"));
        m_services->boxes.clear();
        save();
        QCOMPARE(m_services->boxes.size(), size_t(1));
        QCOMPARE(m_services->boxes.front().prompt, prompt);
        QVERIFY(focusInside(control(field.toLatin1().constData())));
        QCOMPARE(storedOrders(), 5);
    }

    void newOrderStoredReopenedChangedAndReverted()
    {
        enterOrder(QStringLiteral("PO-9001"), QStringLiteral("Cr"), QStringLiteral("14:30"), QString(), QStringLiteral("9.5"));
        save();
        QCOMPARE(m_services->boxes.back().prompt, QStringLiteral("Please enter a non-zero value in this field."));
        QVERIFY(focusInside(control("quantity")));
        fill(QStringLiteral("12"));
        m_services->boxes.clear();
        save();
        QVERIFY(m_services->boxes.empty());
        QCOMPARE(storedOrders(), 6);
        QVERIFY(!m_form->changedSaved());
        QVERIFY(!m_form->saveAction()->isEnabled());

        // What the database holds, read by a fresh form on the reopened file.
        open();
        QSqlQuery q(QStringLiteral("SELECT customer_id, order_date, delivery_time, quantity, unit_price, paid FROM orders WHERE customer_ref = 'PO-9001'"));
        QVERIFY(q.next());
        QStringList columns;
        for (int i = 0; i < 6; ++i)
            columns << q.value(i).toString();
        // Crane Logistics by its tag; the date field's default of today.
        QCOMPARE(columns, (QStringList{QStringLiteral("103"), QDate::currentDate().toString(Qt::ISODate), QStringLiteral("14:30:00"),
                                       QStringLiteral("12"), QStringLiteral("9.5"), QStringLiteral("0")}));
        QVERIFY(m_form->last());
        QCOMPARE(control("customer_ref")->property("Text").toString(), QStringLiteral("PO-9001"));
        control("order_date")->findChild<QWidget *>(QStringLiteral("Text1"))->setFocus(Qt::TabFocusReason);
        QVERIFY(!m_form->saveAction()->isEnabled());
        QTest::keyClick(focused(), Qt::Key_Backspace);
        QVERIFY(m_form->saveAction()->isEnabled()); // before the field commits what was typed
        QTest::keyClick(focused(), Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(control("customer_id")->property("Text").toString(), QStringLiteral("Crane Logistics"));
        QVERIFY(!m_form->changedSaved());

        QWidget *price = control("unit_price");
        price->findChild<QWidget *>(QStringLiteral("Text1"))->setFocus(Qt::TabFocusReason);
        fill(QStringLiteral("10.25"));
        QVERIFY(price->property("ChangedSaved").toBool());
        QVERIFY(m_form->saveAction()->isEnabled());

        // Leaving asks; Cancel stays on the changed record.
        const int row = m_form->currentRow();
        m_services->answer = 2;
        QTest::keyClick(focused(), Qt::Key_PageUp);
        QCOMPARE(m_services->boxes.back().prompt, QStringLiteral("Save changes to this record?"));
        QCOMPARE(m_form->currentRow(), row);
        QVERIFY(m_form->changedSaved());

        QTest::keyClick(focused(), Qt::Key_R, Qt::ControlModifier);
        QVERIFY(!m_form->changedSaved());
        QVERIFY(!m_form->saveAction()->isEnabled());
        QCOMPARE(price->property("Value").toDouble(), 9.5);

        // Yes stores the change on the way out.
        price->findChild<QWidget *>(QStringLiteral("Text1"))->setFocus(Qt::TabFocusReason);
        fill(QStringLiteral("11"));
        m_services->answer = 6;
        QTest::keyClick(focused(), Qt::Key_PageUp);
        QCOMPARE(m_form->currentRow(), row - 1);
        QSqlQuery stored(QStringLiteral("SELECT unit_price FROM orders WHERE customer_ref = 'PO-9001'"));
        QVERIFY(stored.next());
        QCOMPARE(stored.value(0).toDouble(), 11.0);
    }

    void emptyTimeIsStoredAsNull()
    {
        enterOrder(QStringLiteral("PO-7"), QStringLiteral("Ba"), QString(), QStringLiteral("3"), QStringLiteral("1"));
        save();
        QCOMPARE(storedOrders(), 6);
        QSqlQuery q(QStringLiteral("SELECT delivery_time IS NULL, customer_id FROM orders WHERE customer_ref = 'PO-7'"));
        QVERIFY(q.next());
        QVERIFY(q.value(0).toBool());
        QCOMPARE(q.value(1).toInt(), 102);
        QVERIFY(control("delivery_time")->property("Value").value<Variant>().isNull());
        QVERIFY(!m_form->changedSaved());
    }

    // The seeded table opens on its first record, unchanged; the batch then reprices every order.
    void seededThenBatchReprices()
    {
        QCOMPARE(m_form->rowCount(), 5);
        QCOMPARE(m_form->currentRow(), 0);
        QCOMPARE(control("customer_id")->property("Text").toString(), QStringLiteral("Acme Tools Ltd"));
        QCOMPARE(control("quantity")->property("Value").toDouble(), 40.0);
        QVERIFY(!m_form->changedSaved());
        QVERIFY(!m_form->saveAction()->isEnabled());
        QList<double> before, after;
        for (QList<double> *prices : {&before, &after}) {
            if (prices == &after)
                QVERIFY(m_form->runBatch());
            QSqlQuery q(QStringLiteral("SELECT unit_price FROM orders ORDER BY id"));
            while (q.next())
                *prices << q.value(0).toDouble();
        }
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
