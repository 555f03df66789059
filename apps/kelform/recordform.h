#pragma once
// A loaded form in a window with record navigation: when the form names a table (its dynamic
// property "table"), each control whose object name (or dynamic property "field") is a column of
// it shows that column of the current record.
#include <QDataWidgetMapper>
#include <QSqlDatabase>
#include <QWidget>

class QAction;
class QLabel;
class QMenuBar;
class QSqlTableModel;
class QToolBar;

namespace kel::kelform {

class RecordForm : public QWidget
{
    Q_OBJECT
public:
    /// Takes `form` as its child; `db` is used only when the form names a table.
    RecordForm(QWidget *form, const QSqlDatabase &db, QWidget *parent = nullptr);
    ~RecordForm() override;

    QWidget *form() const { return m_form; }
    /// The form names a table that could be opened.
    bool hasTable() const { return m_model != nullptr; }
    /// Why the table could not be opened, or "".
    QString tableError() const { return m_tableError; }
    int rowCount() const;
    /// The row shown, -1 when none.
    int currentRow() const { return m_mapper.currentIndex(); }
    /// A control of the form differs from what was last loaded or stored.
    bool changedSaved() const;

    /// Moves to `row`, first asking whether to save a changed record. False when it stayed.
    bool goTo(int row);
    bool first() { return goTo(0); }
    bool previous() { return goTo(currentRow() - 1); }
    bool next() { return goTo(currentRow() + 1); }
    bool last() { return goTo(rowCount() - 1); }
    /// Shows a new record with the fields' defaults; it is stored by save().
    bool newRecord();
    /// Asks every control Valid(True) in tab order, stops at the first invalid one, otherwise
    /// stores the record. False when nothing was stored.
    bool save();
    /// Shows the record as last stored again.
    void revert();
    /// Deletes the record shown, after asking.
    bool deleteRecord();
    /// Runs the form's batch statement (dynamic property "batch", with :id) for every record,
    /// feeding the form's progress bar. False when the form has none or it failed.
    bool runBatch();

    QAction *saveAction() const { return m_save; }
    QAction *revertAction() const { return m_revert; }
    /// The window's menu bar, made on first use.
    QMenuBar *menuBar();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void controlChanged();

private:
    void openTable(const QSqlDatabase &db);
    void addActions();
    void fillLists(const QSqlDatabase &db);
    void setDateRanges();
    bool leaveRecord();
    bool validAll();
    void showRow(int row);
    void discardNew();
    int keyColumn() const;
    int rowOfId(const QVariant &id);
    void refresh();
    QString title() const;

    QWidget *m_form;
    QToolBar *m_tools;
    QLabel *m_position;
    QSqlTableModel *m_model = nullptr;
    QDataWidgetMapper m_mapper;
    QList<QWidget *> m_controls; // tab order
    QString m_tableError;
    QAction *m_save = nullptr;
    QAction *m_revert = nullptr;
    QMenuBar *m_menuBar = nullptr;
    QList<QAction *> m_recordActions;
    bool m_loading = false;
    bool m_newRow = false;
};

} // namespace kel::kelform
