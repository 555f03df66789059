#pragma once
// A loaded form in a window with record navigation: when the form names a table (its dynamic
// property "table"), each control whose object name (or dynamic property "field") is a column of
// it shows that column of the current record.
#include "recordstore.h"

#include <QSqlDatabase>
#include <QWidget>

#include <functional>
#include <memory>

class QAction;
class QLabel;
class QMenuBar;
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
    bool hasTable() const { return m_store != nullptr; }
    /// Why the table could not be opened, or "".
    QString tableError() const { return m_tableError; }
    /// The database refuses changes: the form only shows records.
    bool isReadOnly() const { return m_readOnly; }
    /// The key of the record shown, invalid when none or a new one.
    QVariant currentKey() const;
    /// "Record n of N", "New record", ...
    QString positionText() const;
    /// A control of the form differs from what was last loaded or stored.
    bool changedSaved() const;

    /// Each moves to the record it names, first asking whether to save a changed record.
    /// False when it stayed.
    bool first();
    bool previous();
    bool next();
    bool last();
    /// Shows a new record with the fields' defaults; it is stored by save().
    bool newRecord();
    /// Asks every control Valid(True) in tab order, stops at the first invalid one, otherwise
    /// stores the record. False when nothing was stored; the form then still holds the edits.
    bool save();
    /// Shows the record as last stored again.
    void revert();
    /// Deletes the record shown, after asking.
    bool deleteRecord();
    /// Runs the form's batch statement (dynamic property "batch", with :id) for every record in
    /// one transaction, feeding the form's progress bar. False when the form has none or it failed.
    bool runBatch();

    QAction *saveAction() const { return m_save; }
    QAction *revertAction() const { return m_revert; }
    /// The window's menu bar, made on first use.
    QMenuBar *menuBar();

    /// Up to how many records "Record n of N" is counted; beyond, the position is not counted.
    static constexpr int CountLimit = 1000;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void controlChanged();

private:
    struct Field {
        QWidget *control;
        QString column;
        int index; // in the store's records
    };
    enum class Move { First, Previous, Next, Last };

    void openTable(const QSqlDatabase &db);
    void addActions();
    void fillLists(const QSqlDatabase &db);
    void setDateRanges();
    void setReadOnly();
    bool move(Move to);
    bool leaveRecord();
    bool validAll();
    void showCurrent();
    void showDefaults();
    void showValues(const std::function<QVariant(const Field &)> &cell);
    QVariantHash shownValues() const;
    bool insertShown();
    QString failure(const QString &what, const QSqlError &error) const;
    void refresh(bool justLoaded = false);
    QString title() const;
    QString noun() const;

    QWidget *m_form;
    QToolBar *m_tools;
    QLabel *m_banner;
    QLabel *m_position;
    std::unique_ptr<RecordStore> m_store;
    QList<QWidget *> m_controls; // tab order
    QList<Field> m_fields;       // the controls that show a column
    QString m_tableError;
    QAction *m_save = nullptr;
    QAction *m_revert = nullptr;
    QMenuBar *m_menuBar = nullptr;
    QList<QAction *> m_recordActions;
    bool m_loading = false;
    bool m_newRow = false;
    bool m_readOnly = false;
};

} // namespace kel::kelform
