// The order-entry example worked through real keys against a temporary database.
#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"

#include "controls/progress/kelprogressbar.h"
#include "kelfixture.h"
#include "runform.h"
#include "answering.h"

#include <QAccessible>
#include <QAccessibleValueInterface>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
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

// A key as the user presses it: to an open menu, else to the focused widget.
void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget *target = QApplication::activePopupWidget() ? QApplication::activePopupWidget() : focused();
    QVERIFY(target);
    QTest::keyClick(target, Qt::Key(key), modifiers);
}

// What a screen reader sees under `a`: one line an object, indented by depth.
void dumpTree(QAccessibleInterface *a, QStringList &out, int depth = 0)
{
    if (!a || a->state().invisible)
        return;
    out << QStringLiteral("%1%2 \"%3\" value=\"%4\" description=\"%5\"")
               .arg(QString(depth * 2, u' '), QString::fromLatin1(qAccessibleRoleString(a->role())), a->text(QAccessible::Name),
                    a->text(QAccessible::Value), a->text(QAccessible::Description));
    for (int i = 0; i < a->childCount(); ++i)
        dumpTree(a->child(i), out, depth + 1);
}

struct SpokenField { const char *field; const char16_t *role, *name, *value; bool required; };

} // namespace

Q_DECLARE_METATYPE(SpokenField)

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
    QString position() const { return m_form->findChild<QLabel *>(u"recordPosition"_qs)->text(); }
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

    // Each field as a screen reader gets it: the caption names it, it has its value, a mandatory
    // field says "required", a spinner's steps are the field's own actions.
    void accessibilityTree_data()
    {
        QTest::addColumn<SpokenField>("c");
        QTest::newRow("text") << SpokenField{"customer_ref", u"EditableText", u"Customer ref.", u"PO-2291", true};
        QTest::newRow("combo") << SpokenField{"customer_id", u"ComboBox", u"Customer", u"Acme Tools Ltd", true};
        QTest::newRow("number") << SpokenField{"quantity", u"SpinBox", u"Quantity", u"40", true};
        QTest::newRow("optional") << SpokenField{"unit_price", u"SpinBox", u"Unit price", u"12.50", false};
        QTest::newRow("time") << SpokenField{"delivery_time", u"SpinBox", u"Delivery time", u"09:30", false};
        QTest::newRow("multi-line") << SpokenField{"notes", u"EditableText", u"Notes", u"Deliver to the loading bay.", false};
    }
    void accessibilityTree()
    {
        QFETCH(SpokenField, c);
        const QString role = QString::fromUtf16(c.role), value = QString::fromUtf16(c.value);
        QStringList tree;
        dumpTree(QAccessible::queryAccessibleInterface(m_form.get()), tree);
        const QString line = QStringLiteral("%1 \"%2\" value=\"%3\" description=\"%4\"")
                                     .arg(role, QString::fromUtf16(c.name), value, c.required ? u"required"_qs : QString());
        QVERIFY2(tree.filter(line).size() == 1, qPrintable(tree.join(u'\n')));
        // No nameless spinner or empty text box beside the fields.
        QVERIFY2(tree.filter(u"Up Down"_qs).isEmpty() && tree.filter(u"EditableText \"\""_qs).isEmpty(), qPrintable(tree.join(u'\n')));

        QWidget *box = control(c.field)->findChild<QWidget *>(QStringLiteral("Text1"));
        if (role != u"SpinBox")
            return;
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(box);
        QVERIFY(a->actionInterface()->actionNames().contains(QAccessibleActionInterface::increaseAction()));
        bool numeric = false;
        const double number = value.toDouble(&numeric);
        QCOMPARE(a->valueInterface() != nullptr, numeric); // a number field's value is a number too
        if (numeric)
            QCOMPARE(a->valueInterface()->currentValue().toDouble(), number);
        a->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QVERIFY(a->text(QAccessible::Value) != value);
        if (numeric)
            QVERIFY(a->valueInterface()->currentValue().toDouble() > number);
        QVERIFY(m_form->saveAction()->isEnabled());
    }

    // The position is the status bar's text, which screen readers hear as it changes.
    void recordPosition()
    {
        QAccessibleInterface *label = QAccessible::queryAccessibleInterface(m_form->findChild<QLabel *>(u"recordPosition"_qs));
        QCOMPARE(label->parent()->role(), QAccessible::StatusBar);
        QVERIFY(m_form->next());
        QCOMPARE(label->text(QAccessible::Name), u"Record 2 of 5"_qs);
    }

    // A whole order by keys alone, as a clerk works: the menu by its Alt letters, typing over
    // each tabbed-into value, save, move about, delete after the question.
    void keyboardOnlyOrderEntry()
    {
        QVERIFY(!m_form->revertAction()->isEnabled());
        press(Qt::Key_R, Qt::AltModifier);
        QVERIFY(QApplication::activePopupWidget());
        press(Qt::Key_W);
        QVERIFY(focusInside(control("customer_ref")));
        QVERIFY(m_form->revertAction()->isEnabled());
        const QDate day = QDate::currentDate().addDays(-3);
        const QStringList typed = {u"PO-4711"_qs, u"Cr"_qs, day.toString(u"d/M/yyyy"_qs), u"1415"_qs, u"7"_qs, u"5"_qs};
        for (const QString &text : typed) {
            QTest::keyClicks(focused(), text);
            press(Qt::Key_Tab);
        }
        press(Qt::Key_Space); // paid
        press(Qt::Key_Tab);
        QTest::keyClicks(focused(), u"Ring twice"_qs);
        press(Qt::Key_S, Qt::ControlModifier);
        QVERIFY2(m_services->boxes.empty(), m_services->boxes.empty() ? "" : qPrintable(m_services->boxes.front().prompt));
        QCOMPARE(firstRow(u"SELECT customer_id, order_date, delivery_time, quantity, unit_price, paid, notes FROM orders "
                          "WHERE customer_ref = 'PO-4711'"_qs),
                 (QStringList{u"103"_qs, day.toString(Qt::ISODate), u"14:15:00"_qs, u"7"_qs, u"5"_qs, u"1"_qs, u"Ring twice"_qs}));
        QVERIFY(!m_form->revertAction()->isEnabled());

        press(Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(m_form->positionText(), u"Record 1 of 6"_qs);
        press(Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(control("customer_ref")->property("Text").toString(), u"PO-4711"_qs);

        // Delete by its key from inside a text field, refused once, then by the menu.
        QVERIFY(focusInside(control("notes")));
        press(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(m_services->boxes.back().prompt, u"Delete this record?"_qs);
        QCOMPARE(storedOrders(), 6);
        m_services->answer = 6;
        press(Qt::Key_R, Qt::AltModifier);
        press(Qt::Key_D);
        QCOMPARE(m_services->boxes.back().style & 0x300, 256); // No is the default
        QCOMPARE(storedOrders(), 5);
        QCOMPARE(position(), u"Record 5 of 5"_qs);
    }

    // The same form in another language: a message of the library, one of kelform, the menu
    // and the status line.
    void translated_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("de_DE") << QLocale(QLocale::German, QLocale::Germany)
                               << QStringList{u"Bitte geben Sie in dieses Feld einen Wert ungleich null ein."_qs, u"Ungültiger Wert"_qs,
                                              u"Bitte füllen Sie „Customer ref.“ aus."_qs, u"&Datensatz"_qs, u"Neuer Datensatz"_qs};
        QTest::newRow("fr_FR") << QLocale(QLocale::French, QLocale::France)
                               << QStringList{u"Veuillez saisir une valeur non nulle dans ce champ."_qs, u"Valeur non valide"_qs,
                                              u"Veuillez remplir « Customer ref. »."_qs, u"&Enregistrement"_qs, u"Nouvel enregistrement"_qs};
    }
    void translated()
    {
        QFETCH(QLocale, locale);
        QFETCH(QStringList, texts);
        QLocale::setDefault(locale);
        installTranslations();
        const auto english = qScopeGuard([] {
            QLocale::setDefault(QLocale::c());
            installTranslations();
        });
        open();
        QVERIFY(m_form->newRecord());
        focusField("quantity");
        fill(u"0"_qs);
        bool valid = true;
        QMetaObject::invokeMethod(control("quantity"), "Valid", Q_RETURN_ARG(bool, valid), Q_ARG(bool, true));
        QVERIFY(!valid);
        QCOMPARE(m_services->boxes.back().prompt, texts[0]);
        QCOMPARE(m_services->boxes.back().title, texts[1]);
        save();
        QCOMPARE(m_services->boxes.back().prompt, texts[2]);
        QCOMPARE(m_form->menuBar()->actions().first()->text(), texts[3]);
        QCOMPARE(position(), texts[4]);
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
        QVERIFY(!m_form->runBatch()); // asked first; Cancel runs nothing
        QCOMPARE(m_services->boxes.back().style, 4 + 32 + 256);
        QCOMPARE(prices(), before);
        m_services->answer = 6;
        QVERIFY(m_form->runBatch());
        const QList<double> after = prices();
        QCOMPARE(after.size(), before.size());
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY2(qAbs(after[i] - before[i] * 1.05) <= 0.00501, qPrintable(QString::number(after[i])));
        auto *bar = m_form->form()->findChild<KelProgressBar *>();
        QCOMPARE(bar->Value(), bar->Min()); // empty again once done
        QCOMPARE(control("unit_price")->property("Value").toDouble(), after.front());
    }
};

QTEST_MAIN(TestOrderForm)
#include "tst_orderform.moc"
