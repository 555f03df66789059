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
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace kel::kelform {

namespace {

constexpr int YesNoCancelQuestion = 3 + 32;
constexpr int YesNoQuestionNoFirst = 4 + 32 + 256; // No is the default button
constexpr int YesNoWarningNoFirst = 4 + 48 + 256;
constexpr int Critical = 16, Information = 64;
constexpr int Yes = 6, No = 7;

// Why the database refused a write, in the user's words: SQLite's result code or PostgreSQL's
// SQLSTATE, whichever the driver reports.
QString reason(const QSqlError &error)
{
    const QString code = error.nativeErrorCode();
    bool numeric = false;
    const int sqlite = code.toInt(&numeric) & 0xff;
    auto tr = [](const char *text) { return QCoreApplication::translate("RecordForm", text); };
    if (numeric && code.size() < 5) {
        switch (sqlite) {
        case 8: return tr("the database file is read-only");
        case 13: return tr("the disk is full");
        case 5:
        case 6: return tr("someone else is writing to the database right now; please try again in a moment");
        case 19: return tr("the database refused one of its values");
        case 10: return tr("the database file could not be written");
        case 11:
        case 26: return tr("the database file is damaged");
        }
    } else if (code == u"25006") {
        return tr("the database is read-only");
    } else if (code == u"42501") {
        return tr("you are not allowed to change this table");
    } else if (code == u"53100") {
        return tr("the database server's disk is full");
    } else if (code == u"55P03" || code == u"40P01" || code == u"40001") {
        return tr("someone else is writing to the database right now; please try again in a moment");
    } else if (code.startsWith(u"23")) {
        return tr("the database refused one of its values");
    } else if (code.startsWith(u"08") || error.type() == QSqlError::ConnectionError) {
        return tr("the connection to the database was lost");
    }
    return tr("the database reported an error");
}

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
    : QWidget(parent), m_form(form), m_tools(new QToolBar(this)), m_banner(new QLabel(this)), m_position(new QLabel(this))
{
    setWindowTitle(form->windowTitle());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tools);
    m_banner->setContentsMargins(8, 4, 8, 4);
    m_banner->setAutoFillBackground(true);
    m_banner->setBackgroundRole(QPalette::ToolTipBase);
    m_banner->setForegroundRole(QPalette::ToolTipText);
    m_banner->hide();
    layout->addWidget(m_banner);
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
    add(tr("Ne&w"), "document-new", QKeySequence::New, [this] { newRecord(); })->setObjectName(QStringLiteral("new"));
    m_save = add(tr("&Save"), "document-save", QKeySequence::Save, [this] { save(); });
    m_save->setObjectName(QStringLiteral("save"));
    m_revert = add(tr("Re&vert"), "document-revert", QKeySequence(Qt::CTRL | Qt::Key_R), [this] { revert(); });
    m_revert->setObjectName(QStringLiteral("revert"));
    // Ctrl+Delete alone deletes a word in a text field.
    add(tr("&Delete"), "edit-delete", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete), [this] { deleteRecord(); })
        ->setObjectName(QStringLiteral("delete"));
    if (!m_form->property("batch").toString().isEmpty()) {
        record->addSeparator();
        m_tools->addSeparator();
        const QString batchTitle = m_form->property("batchTitle").toString();
        add(batchTitle.isEmpty() ? tr("Run &batch") : batchTitle, "", QKeySequence(), [this] { runBatch(); })
            ->setObjectName(QStringLiteral("batch"));
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
    auto store = std::make_unique<RecordStore>(db, m_form->property("table").toString());
    if (!store->isValid()) {
        m_tableError = store->lastError().text();
        return;
    }
    const QSqlRecord columns = store->columns();
    for (QWidget *c : m_controls) {
        const QString column = fieldName(c);
        if (!columns.contains(column))
            continue;
        m_fields.append({c, column, columns.indexOf(column)});
        for (QWidget *w : c->findChildren<QWidget *>())
            if (w->focusPolicy() != Qt::NoFocus)
                w->installEventFilter(this);
        for (const char *signal : {SIGNAL(Change()), SIGNAL(Click())})
            if (c->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal + 1)) >= 0)
                connect(c, signal, this, SLOT(controlChanged()));
    }
    m_store = std::move(store);
    fillLists(db);
    setDateRanges();
    connect(qApp, &QApplication::focusChanged, this, [this] { refresh(); });
    addActions();
    if (m_store->isReadOnly())
        setReadOnly();
    if (m_store->first())
        showCurrent();
}

// Said at once rather than at the first failed save: the fields are locked and every action that
// writes is off.
void RecordForm::setReadOnly()
{
    m_readOnly = true;
    setWindowTitle(tr("%1 (read-only)").arg(title()));
    m_banner->setText(tr("This database is read-only: you can look at the records but not change them."));
    m_banner->show();
    for (const Field &f : std::as_const(m_fields))
        if (f.control->metaObject()->indexOfProperty("Locked") >= 0)
            f.control->setProperty("Locked", true);
    for (QAction *a : std::as_const(m_recordActions))
        if (!a->objectName().isEmpty() && a->objectName() != u"revert")
            a->setVisible(false);
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
        q.setForwardOnly(true);
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

QVariant RecordForm::currentKey() const
{
    return m_store && !m_newRow ? m_store->currentKey() : QVariant();
}

bool RecordForm::changedSaved() const
{
    for (const Field &f : m_fields)
        if (f.control->property("ChangedSaved").toBool())
            return true;
    return false;
}

void RecordForm::showValues(const std::function<QVariant(const Field &)> &cell)
{
    m_loading = true;
    for (const Field &f : std::as_const(m_fields))
        showCell(f.control, cell(f));
    m_loading = false;
    refresh(true);
}

void RecordForm::showDefaults()
{
    showValues([](const Field &f) {
        const QVariant d = defaultCell(f.control);
        return d.isValid() ? d : QVariant(QMetaType::fromType<QString>());
    });
}

void RecordForm::showCurrent()
{
    const QSqlRecord &record = m_store->current();
    showValues([&record](const Field &f) { return record.value(f.index); });
}

QVariantHash RecordForm::shownValues() const
{
    QVariantHash values;
    for (const Field &f : m_fields)
        values.insert(f.column, cellValue(f.control));
    return values;
}

bool RecordForm::move(Move to)
{
    if (!m_store || !leaveRecord())
        return false;
    const bool wasNew = std::exchange(m_newRow, false);
    // Leaving a new record goes on from the record that was shown before it.
    bool moved = false;
    switch (to) {
    case Move::First: moved = m_store->first(); break;
    case Move::Last: moved = m_store->last(); break;
    case Move::Next: moved = wasNew ? m_store->hasCurrent() : m_store->next(); break;
    case Move::Previous: moved = wasNew ? m_store->hasCurrent() : m_store->previous(); break;
    }
    if (moved || wasNew)
        showCurrent();
    return moved;
}

bool RecordForm::first() { return move(Move::First); }
bool RecordForm::previous() { return move(Move::Previous); }
bool RecordForm::next() { return move(Move::Next); }
bool RecordForm::last() { return move(Move::Last); }

bool RecordForm::leaveRecord()
{
    if (!m_readOnly && changedSaved()) {
        const int answer = services().MsgBox(tr("Save changes to this record?"), YesNoCancelQuestion, title());
        if (answer == Yes)
            return save();
        if (answer != No)
            return false;
    }
    return true;
}

bool RecordForm::newRecord()
{
    if (!m_store || m_readOnly || !leaveRecord())
        return false;
    m_newRow = true;
    showDefaults();
    if (!m_controls.isEmpty())
        if (QWidget *w = focusTarget(m_controls.first()))
            w->setFocus(Qt::OtherFocusReason);
    return true;
}

bool RecordForm::validAll()
{
    for (const Field &f : std::as_const(m_fields)) {
        QWidget *c = f.control;
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
        services().MsgBox(tr("Please fill in \"%1\".").arg(caption.isEmpty() ? c->objectName() : caption), Information, title());
        if (QWidget *w = focusTarget(c))
            w->setFocus(Qt::OtherFocusReason);
        return false;
    }
    return true;
}

QString RecordForm::failure(const QString &what, const QSqlError &error) const
{
    const QString details = error.text().trimmed();
    return details.isEmpty() ? what : what + QStringLiteral("\n\n") + tr("Details: %1").arg(details);
}

// The user's version of a record someone else deleted goes back in as a new one.
bool RecordForm::insertShown()
{
    if (m_store->insert(shownValues()) != RecordStore::Outcome::Stored) {
        services().MsgBox(failure(tr("The %1 could not be saved: %2. Your changes are still on the form.").arg(noun(), reason(m_store->lastError())),
                                  m_store->lastError()),
                          Critical, title());
        refresh();
        return false;
    }
    m_newRow = false;
    showCurrent();
    return true;
}

bool RecordForm::save()
{
    if (!m_store || m_readOnly || (!m_newRow && !m_store->hasCurrent()) || !validAll())
        return false;
    if (m_newRow)
        return insertShown();
    switch (m_store->update(shownValues())) {
    case RecordStore::Outcome::Stored:
        // Shown as stored, which also moves every control's saved reference.
        showCurrent();
        return true;
    case RecordStore::Outcome::Changed: {
        const QString prompt = tr("This %1 was changed by someone else since you opened it.").arg(noun()) + QStringLiteral("\n\n")
                               + tr("Show their version? Your changes will be discarded. Choose No to keep editing.");
        if (services().MsgBox(prompt, YesNoWarningNoFirst, title()) == Yes && m_store->find(m_store->currentKey()))
            showCurrent();
        break;
    }
    case RecordStore::Outcome::Deleted: {
        const QString prompt = tr("This %1 was deleted by someone else since you opened it.").arg(noun()) + QStringLiteral("\n\n")
                               + tr("Save your version as a new %1? Choose No to keep editing.").arg(noun());
        if (services().MsgBox(prompt, YesNoWarningNoFirst, title()) == Yes)
            return insertShown();
        break;
    }
    case RecordStore::Outcome::Failed:
        services().MsgBox(failure(tr("The %1 could not be saved: %2. Your changes are still on the form.").arg(noun(), reason(m_store->lastError())),
                                  m_store->lastError()),
                          Critical, title());
        break;
    }
    refresh();
    return false;
}

void RecordForm::revert()
{
    if (!m_store)
        return;
    if (m_newRow)
        showDefaults();
    else if (m_store->hasCurrent())
        showCurrent();
}

bool RecordForm::deleteRecord()
{
    if (!m_store || m_readOnly || (!m_newRow && !m_store->hasCurrent()))
        return false;
    if (m_newRow) {
        m_newRow = false;
        showCurrent();
        return true;
    }
    if (services().MsgBox(tr("Delete this record?"), YesNoQuestionNoFirst, title()) != Yes)
        return false;
    switch (m_store->remove()) {
    case RecordStore::Outcome::Stored:
        break;
    case RecordStore::Outcome::Changed:
        services().MsgBox(tr("This %1 was changed by someone else since you opened it. It was not deleted; their version is shown now.").arg(noun()),
                          Information, title());
        if (m_store->find(m_store->currentKey()))
            showCurrent();
        return false;
    case RecordStore::Outcome::Deleted:
        services().MsgBox(tr("This %1 was already deleted by someone else.").arg(noun()), Information, title());
        break;
    case RecordStore::Outcome::Failed:
        services().MsgBox(failure(tr("The %1 could not be deleted: %2.").arg(noun(), reason(m_store->lastError())), m_store->lastError()),
                          Critical, title());
        return false;
    }
    if (m_store->hasCurrent())
        showCurrent();
    else
        showValues([](const Field &) { return QVariant(QMetaType::fromType<QString>()); });
    return true;
}

bool RecordForm::runBatch()
{
    const QString statement = m_form->property("batch").toString();
    if (!m_store || m_readOnly || statement.isEmpty() || !leaveRecord())
        return false;
    QSqlDatabase db = m_store->database();
    auto *bar = m_form->findChild<KelProgressBar *>();
    qint64 total = 0;
    if (QSqlQuery count(db); count.exec(QStringLiteral("SELECT count(*) FROM %1").arg(db.driver()->escapeIdentifier(m_store->table(), QSqlDriver::TableName))) && count.next())
        total = count.value(0).toLongLong();
    const QString job = m_form->property("batchTitle").toString().remove(u'&');
    const QString question = job.isEmpty() ? tr("Run the batch on all %1 records?").arg(total)
                                           : tr("Run \"%1\" on all %2 records?").arg(job).arg(total);
    if (services().MsgBox(question, YesNoQuestionNoFirst, title()) != Yes)
        return false;
    // The bar shows this run only; it is empty again when the run ends, however it ends.
    const auto emptyBar = qScopeGuard([bar] {
        if (bar)
            bar->setValue(bar->Min());
    });
    if (bar) {
        bar->setMin(0);
        bar->setMax(qint32(std::clamp<qint64>(total, 1, std::numeric_limits<qint32>::max())));
        bar->Start();
    }
    QSqlError error;
    bool ok = db.transaction();
    if (!ok)
        error = db.lastError();
    QSqlQuery q(db);
    if (ok && !(ok = q.prepare(statement)))
        error = q.lastError();
    // Keys a chunk at a time, so that the batch's memory does not grow with the table.
    qint64 done = 0;
    for (QVariantList keys = ok ? m_store->keysAfter({}, 500) : QVariantList(); ok && !keys.isEmpty();
         keys = m_store->keysAfter(keys.last(), 500)) {
        for (const QVariant &key : std::as_const(keys)) {
            q.bindValue(QStringLiteral(":id"), key);
            if (!(ok = q.exec())) {
                error = q.lastError();
                break;
            }
            if (bar)
                bar->setValue(qint32(qMin<qint64>(++done, bar->Max())));
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
    }
    if (ok && m_store->lastError().type() != QSqlError::NoError) {
        ok = false;
        error = m_store->lastError();
    }
    if (ok && !(ok = db.commit()))
        error = db.lastError();
    if (!ok) {
        db.rollback();
        services().MsgBox(failure(tr("The batch was not run: %1. Nothing was changed.").arg(reason(error)), error), Critical, title());
        return false;
    }
    if (m_store->hasCurrent() && m_store->find(m_store->currentKey()))
        showCurrent();
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
    if (m_loading || m_readOnly)
        return;
    for (QAction *a : {m_save, m_revert})
        if (a)
            a->setEnabled(true);
}

QString RecordForm::positionText() const
{
    if (!m_store)
        return m_tableError.isEmpty() ? QString() : tr("No records: %1").arg(m_tableError);
    if (m_newRow)
        return tr("New record");
    if (!m_store->hasCurrent())
        return tr("No records");
    // Counted only up to a limit, so that a move costs the same on any table.
    const RecordStore::Position p = m_store->position(CountLimit);
    if (p.count > 0)
        return tr("Record %1 of %2").arg(p.index).arg(p.count);
    if (p.index > 0)
        return tr("Record %1 of more than %2").arg(p.index).arg(CountLimit);
    return tr("Record %1 %2").arg(m_store->keyName(), m_store->currentKey().toString());
}

// Reads every control's ChangedSaved, which commits typed text in some fields: done when the
// focus moves and after loading, never while the user types.
void RecordForm::refresh(bool justLoaded)
{
    // Freshly shown controls hold their saved references: nothing to read back.
    const bool changed = !m_readOnly && !justLoaded && changedSaved();
    if (m_save)
        m_save->setEnabled(changed);
    if (m_revert)
        m_revert->setEnabled(!m_readOnly && (m_newRow || changed));
    // The label is the status bar's text: screen readers hear each change of its name.
    m_position->setText(positionText());
}

QString RecordForm::title() const
{
    const QString own = m_form->windowTitle();
    return own.isEmpty() ? QApplication::applicationName() : own;
}

// What the form calls one record in its messages: its "recordName", else its table's name in the
// singular.
QString RecordForm::noun() const
{
    if (const QString name = m_form->property("recordName").toString(); !name.isEmpty())
        return name;
    QString table = m_store ? m_store->table() : QString();
    if (table.size() > 1 && table.endsWith(u's'))
        table.chop(1);
    return table.isEmpty() ? tr("record") : table;
}

void RecordForm::closeEvent(QCloseEvent *event)
{
    if (m_store && !leaveRecord())
        event->ignore();
    else
        event->accept();
}

} // namespace kel::kelform
