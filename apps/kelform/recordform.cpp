#include "recordform.h"

#include "fielddelegate.h"
#include "formloader.h"

#include "controls/combo/kelcombo.h"
#include "controls/datetime/keldate.h"
#include "controls/progress/kelprogressbar.h"
#include "platform/services.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QStatusBar>
#include <QMetaMethod>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlTableModel>
#include <QToolBar>
#include <QVBoxLayout>

namespace kel::kelform {

namespace {

constexpr int YesNoCancelQuestion = 3 + 32;
constexpr int YesNoQuestionNoFirst = 4 + 32 + 256; // No is the default button
constexpr int Yes = 6, No = 7;

QString fieldName(const QWidget *control)
{
    const QVariant field = control->property("field");
    return field.isValid() ? field.toString() : control->objectName();
}

// The first widget inside the control that takes the focus by Tab.
QWidget *focusTarget(QWidget *control)
{
    for (QWidget *w : control->findChildren<QWidget *>())
        if ((w->focusPolicy() & Qt::TabFocus) && w->isEnabled() && !w->isHidden())
            return w;
    return nullptr;
}

// The value a new record starts with: "today" and "now" name the services' clock.
QVariant defaultCell(const QWidget *control)
{
    const QVariant d = control->property("default");
    if (!d.isValid())
        return {};
    if (d.toString() == QLatin1String("today"))
        return services().Today().toString(Qt::ISODate);
    if (d.toString() == QLatin1String("now"))
        return services().Now().time().toString(QStringLiteral("HH:mm:ss"));
    return d;
}

} // namespace

RecordForm::RecordForm(QWidget *form, const QSqlDatabase &db, QWidget *parent)
    : QWidget(parent), m_form(form), m_tools(new QToolBar(this)), m_position(new QLabel(this))
{
    setWindowTitle(form->windowTitle());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tools);
    form->setParent(this);
    // A form with a layout says its own minimum; a form of fixed positions needs all of its size.
    if (!form->layout())
        form->setMinimumSize(form->size());
    layout->addWidget(form, 1);
    m_position->setObjectName(QStringLiteral("recordPosition"));
    auto *status = new QStatusBar(this);
    status->setSizeGripEnabled(false);
    status->addWidget(m_position, 1);
    layout->addWidget(status);
    m_controls = controlsInTabOrder(form);
    if (!form->property("table").toString().isEmpty())
        openTable(db);
    refresh();
}

RecordForm::~RecordForm()
{
    // QWidget's destructor still moves the focus, after our members are gone.
    disconnect(qApp, nullptr, this, nullptr);
}

// The same actions in the Record menu and on the tool bar: each with its Alt letter, its key
// shown in the menu and named in its tool tip, and an icon where the theme has one.
void RecordForm::addActions()
{
    QMenuBar *bar = menuBar();
    QMenu *record = bar->addMenu(tr("&Record"));
    auto add = [this, record](const QString &text, const char *icon, const QKeySequence &key, auto slot) {
        auto *a = new QAction(QIcon::fromTheme(QLatin1String(icon)), text, this);
        connect(a, &QAction::triggered, this, slot);
        a->setShortcut(key);
        a->setShortcutContext(Qt::WindowShortcut);
        a->setToolTip(key.isEmpty() ? a->iconText() : tr("%1 (%2)").arg(a->iconText(), key.toString(QKeySequence::NativeText)));
        record->addAction(a);
        m_tools->addAction(a);
        m_recordActions << a;
        return a;
    };
    add(tr("&First"), "go-first", QKeySequence(Qt::CTRL | Qt::Key_PageUp), [this] { first(); });
    add(tr("&Previous"), "go-previous", QKeySequence(Qt::Key_PageUp), [this] { previous(); });
    add(tr("&Next"), "go-next", QKeySequence(Qt::Key_PageDown), [this] { next(); });
    add(tr("&Last"), "go-last", QKeySequence(Qt::CTRL | Qt::Key_PageDown), [this] { last(); });
    record->addSeparator();
    m_tools->addSeparator();
    add(tr("Ne&w"), "document-new", QKeySequence::New, [this] { newRecord(); });
    m_save = add(tr("&Save"), "document-save", QKeySequence::Save, [this] { save(); });
    m_revert = add(tr("Re&vert"), "document-revert", QKeySequence(Qt::CTRL | Qt::Key_R), [this] { revert(); });
    // Ctrl+Delete alone deletes a word in a text field.
    add(tr("&Delete"), "edit-delete", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete), [this] { deleteRecord(); });
    if (!m_form->property("batch").toString().isEmpty()) {
        record->addSeparator();
        m_tools->addSeparator();
        const QString batchTitle = m_form->property("batchTitle").toString();
        add(batchTitle.isEmpty() ? tr("Run &batch") : batchTitle, "", QKeySequence(), [this] { runBatch(); });
    }
    // Every action stays in sight, whatever the font: the window is never narrower than the bar.
    m_tools->setMinimumWidth(m_tools->sizeHint().width());
}

QMenuBar *RecordForm::menuBar()
{
    if (!m_menuBar) {
        m_menuBar = new QMenuBar(this);
        static_cast<QVBoxLayout *>(layout())->setMenuBar(m_menuBar);
    }
    return m_menuBar;
}

void RecordForm::openTable(const QSqlDatabase &db)
{
    auto *model = new QSqlTableModel(this, db);
    model->setTable(m_form->property("table").toString());
    model->setEditStrategy(QSqlTableModel::OnManualSubmit);
    if (!model->select()) {
        m_tableError = model->lastError().text();
        delete model;
        return;
    }
    m_model = model;
    fillLists(db);
    setDateRanges();
    m_mapper.setModel(m_model);
    m_mapper.setSubmitPolicy(QDataWidgetMapper::ManualSubmit);
    m_mapper.setItemDelegate(new FieldDelegate(&m_mapper));
    for (QWidget *c : m_controls) {
        const int column = m_model->fieldIndex(fieldName(c));
        if (column < 0)
            continue;
        // The USER property is what the mapper moves; the delegate adapts it to the column.
        m_mapper.addMapping(c, column);
        for (QWidget *w : c->findChildren<QWidget *>())
            if (w->focusPolicy() != Qt::NoFocus)
                w->installEventFilter(this);
        for (const char *signal : {SIGNAL(Change()), SIGNAL(Click())})
            if (c->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal + 1)) >= 0)
                connect(c, signal, this, SLOT(controlChanged()));
    }
    connect(qApp, &QApplication::focusChanged, this, [this] { refresh(); });

    addActions();
    if (rowCount() > 0)
        showRow(0);
}

// Combo lists from the form's own queries: the first column gives the items, the second the tags.
void RecordForm::fillLists(const QSqlDatabase &db)
{
    for (QWidget *c : m_controls) {
        auto *combo = qobject_cast<KelCombo *>(c);
        const QString source = c->property("rowSource").toString();
        if (!combo || source.isEmpty())
            continue;
        QSqlQuery q(db);
        QStringList items, tags;
        if (q.exec(source)) {
            while (q.next()) {
                items << q.value(0).toString();
                tags << q.value(1).toString();
            }
        }
        combo->ListFromArray(items);
        combo->setListTag(tags.join(u','));
    }
}

// A date field's range around today: dynamic properties "daysBefore" and "daysAfter".
void RecordForm::setDateRanges()
{
    const QDate today = services().Today();
    for (QWidget *c : m_controls) {
        if (!qobject_cast<KelDate *>(c))
            continue;
        if (const QVariant after = c->property("daysAfter"); after.isValid())
            c->setProperty("MaxValue", today.addDays(after.toInt()));
        if (const QVariant before = c->property("daysBefore"); before.isValid())
            c->setProperty("MinValue", today.addDays(-before.toInt()));
    }
}

int RecordForm::rowCount() const
{
    if (!m_model)
        return 0;
    while (m_model->canFetchMore())
        m_model->fetchMore();
    return m_model->rowCount();
}

bool RecordForm::changedSaved() const
{
    if (!m_model)
        return false;
    for (QWidget *c : m_controls)
        if (m_mapper.mappedSection(c) >= 0 && c->property("ChangedSaved").toBool())
            return true;
    return false;
}

void RecordForm::showRow(int row)
{
    m_loading = true;
    m_mapper.setCurrentIndex(row);
    m_loading = false;
    refresh();
}

bool RecordForm::goTo(int row)
{
    if (!m_model || row < 0 || row >= rowCount() || (row == currentRow() && !m_newRow))
        return false;
    if (!leaveRecord())
        return false;
    if (row >= rowCount()) // a discarded new record was the last row
        row = rowCount() - 1;
    showRow(row);
    return true;
}

bool RecordForm::leaveRecord()
{
    if (changedSaved()) {
        const int answer = services().MsgBox(tr("Save changes to this record?"), YesNoCancelQuestion, title());
        if (answer == Yes)
            return save();
        if (answer != No)
            return false;
    }
    discardNew();
    return true;
}

void RecordForm::discardNew()
{
    if (m_newRow) {
        m_newRow = false;
        m_model->revertAll();
    }
}

bool RecordForm::newRecord()
{
    if (!m_model || !leaveRecord())
        return false;
    const int row = rowCount();
    if (!m_model->insertRow(row))
        return false;
    m_newRow = true;
    for (QWidget *c : m_controls) {
        const int column = m_mapper.mappedSection(c);
        if (const QVariant d = defaultCell(c); column >= 0 && d.isValid())
            m_model->setData(m_model->index(row, column), d);
    }
    showRow(row);
    if (!m_controls.isEmpty())
        if (QWidget *w = focusTarget(m_controls.first()))
            w->setFocus(Qt::OtherFocusReason);
    return true;
}

bool RecordForm::validAll()
{
    for (QWidget *c : m_controls) {
        if (m_mapper.mappedSection(c) < 0)
            continue;
        const int method = c->metaObject()->indexOfMethod("Valid(bool)");
        bool valid = true;
        if (method >= 0) {
            // The control says why itself and takes the focus back.
            c->metaObject()->method(method).invoke(c, Qt::DirectConnection, Q_RETURN_ARG(bool, valid), Q_ARG(bool, true));
            if (!valid)
                return false;
            continue;
        }
        if (c->property("Valid").toBool())
            continue;
        // Text, combo and check fields have no message of their own.
        const QString caption = c->property("Caption").toString();
        services().MsgBox(tr("Please fill in \"%1\".").arg(caption.isEmpty() ? c->objectName() : caption), 64, title());
        if (QWidget *w = focusTarget(c))
            w->setFocus(Qt::OtherFocusReason);
        return false;
    }
    return true;
}

bool RecordForm::save()
{
    if (!m_model || currentRow() < 0 || !validAll())
        return false;
    const int idColumn = keyColumn();
    QVariant id = m_model->index(currentRow(), idColumn).data();
    m_mapper.submit();
    if (!m_model->submitAll()) {
        services().MsgBox(m_model->lastError().text(), 16, title());
        return false;
    }
    if (m_newRow) {
        QSqlQuery q(m_model->database());
        if (q.exec(QStringLiteral("SELECT last_insert_rowid()")) && q.next())
            id = q.value(0);
        m_newRow = false;
    }
    // submitAll selected the table again: find the record and show it as stored, which also
    // moves every control's saved reference.
    showRow(rowOfId(id));
    return true;
}

int RecordForm::keyColumn() const
{
    const QSqlIndex key = m_model->primaryKey();
    return key.isEmpty() ? 0 : m_model->fieldIndex(key.fieldName(0));
}

int RecordForm::rowOfId(const QVariant &id)
{
    const int idColumn = keyColumn();
    const int rows = rowCount();
    for (int r = 0; r < rows; ++r)
        if (m_model->index(r, idColumn).data() == id)
            return r;
    return rows > 0 ? 0 : -1;
}

void RecordForm::revert()
{
    if (!m_model || currentRow() < 0)
        return;
    showRow(currentRow());
}

bool RecordForm::deleteRecord()
{
    if (!m_model || currentRow() < 0)
        return false;
    if (m_newRow) {
        discardNew();
        showRow(rowCount() - 1);
        return true;
    }
    if (services().MsgBox(tr("Delete this record?"), YesNoQuestionNoFirst, title()) != Yes)
        return false;
    const int row = currentRow();
    if (!m_model->removeRow(row) || !m_model->submitAll()) {
        services().MsgBox(m_model->lastError().text(), 16, title());
        m_model->revertAll();
        return false;
    }
    showRow(qMin(row, rowCount() - 1));
    return true;
}

bool RecordForm::runBatch()
{
    const QString statement = m_form->property("batch").toString();
    if (!m_model || statement.isEmpty() || !leaveRecord())
        return false;
    auto *bar = m_form->findChild<KelProgressBar *>();
    QSqlDatabase db = m_model->database();
    QSqlQuery ids(db);
    QList<QVariant> all;
    if (ids.exec(QStringLiteral("SELECT %1 FROM %2").arg(m_model->record().fieldName(keyColumn()), m_model->tableName())))
        while (ids.next())
            all << ids.value(0);
    const QString job = m_form->property("batchTitle").toString().remove(u'&');
    const QString question = job.isEmpty() ? tr("Run the batch on all %1 records?").arg(all.size())
                                           : tr("Run \"%1\" on all %2 records?").arg(job).arg(all.size());
    if (services().MsgBox(question, YesNoQuestionNoFirst, title()) != Yes)
        return false;
    // The bar shows this run only; it is empty again when the run ends, however it ends.
    const auto emptyBar = qScopeGuard([bar] {
        if (bar)
            bar->setValue(bar->Min());
    });
    if (bar) {
        bar->setMin(0);
        bar->setMax(qMax(1, int(all.size())));
        bar->Start();
    }
    const QVariant keep = currentRow() >= 0 ? m_model->index(currentRow(), keyColumn()).data() : QVariant();
    db.transaction();
    QSqlQuery q(db);
    bool ok = q.prepare(statement);
    for (qsizetype i = 0; ok && i < all.size(); ++i) {
        q.bindValue(QStringLiteral(":id"), all[i]);
        ok = q.exec();
        if (bar)
            bar->setValue(qint32(i + 1));
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    if (!ok) {
        db.rollback();
        services().MsgBox(q.lastError().text(), 16, title());
        return false;
    }
    db.commit();
    m_model->select();
    showRow(keep.isValid() ? rowOfId(keep) : 0);
    return true;
}

// Some fields raise Change only when they commit, and reading ChangedSaved would commit typed
// text under the user's hands: a key that edits counts as a change until the focus moves.
bool RecordForm::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (!key->text().isEmpty() && key->text().at(0).isPrint() && !(key->modifiers() & Qt::ControlModifier))
            controlChanged();
        else if (key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Delete)
            controlChanged();
    }
    return QWidget::eventFilter(watched, event);
}

void RecordForm::controlChanged()
{
    if (m_loading)
        return;
    for (QAction *a : {m_save, m_revert})
        if (a)
            a->setEnabled(true);
}

// Reads every control's ChangedSaved, which commits typed text in some fields: done when the
// focus moves and after loading, never while the user types.
void RecordForm::refresh()
{
    if (!m_model) {
        m_position->setText(m_tableError.isEmpty() ? QString() : tr("No records: %1").arg(m_tableError));
        return;
    }
    if (m_save)
        m_save->setEnabled(changedSaved());
    if (m_revert)
        m_revert->setEnabled(m_newRow || changedSaved());
    const int row = currentRow();
    // The label is the status bar's text: screen readers hear each change of its name.
    m_position->setText(m_newRow ? tr("New record") : row < 0 ? tr("No records") : tr("Record %1 of %2").arg(row + 1).arg(rowCount()));
}

QString RecordForm::title() const
{
    return windowTitle().isEmpty() ? QApplication::applicationName() : windowTitle();
}

void RecordForm::closeEvent(QCloseEvent *event)
{
    if (m_model && !leaveRecord())
        event->ignore();
    else
        event->accept();
}

} // namespace kel::kelform
