#include "recordstore.h"

#include <QSqlDriver>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>

namespace kel::kelform {

namespace {

bool isPostgres(const QSqlDatabase &db) { return db.driverName() == QLatin1String("QPSQL"); }

bool run(QSqlQuery &q, const QString &sql, const QVariantList &bind, QSqlError *error)
{
    q.setForwardOnly(true);
    if (!q.prepare(sql)) {
        *error = q.lastError();
        return false;
    }
    for (const QVariant &v : bind)
        q.addBindValue(v);
    if (!q.exec()) {
        *error = q.lastError();
        return false;
    }
    return true;
}

} // namespace

// A check box gives a boolean; PostgreSQL will not put one in an integer column by itself.
QVariant RecordStore::forColumn(const QString &column, const QVariant &value) const
{
    if (value.typeId() == QMetaType::Bool && m_columns.field(column).metaType().id() != QMetaType::Bool)
        return value.toBool() ? 1 : 0;
    return value;
}

RecordStore::RecordStore(const QSqlDatabase &db, const QString &table) : m_db(db), m_table(table)
{
    m_columns = db.record(table);
    if (m_columns.isEmpty()) {
        m_error = db.lastError().type() != QSqlError::NoError
                      ? db.lastError()
                      : QSqlError(QString(), QStringLiteral("no table \"%1\"").arg(table), QSqlError::StatementError);
        return;
    }
    const QSqlIndex primary = db.primaryIndex(table);
    m_key = primary.isEmpty() ? m_columns.fieldName(0) : primary.fieldName(0);
    m_quotedTable = db.driver()->escapeIdentifier(table, QSqlDriver::TableName);
    QStringList names;
    for (int i = 0; i < m_columns.count(); ++i)
        names << quoted(m_columns.fieldName(i));
    m_select = QStringLiteral("SELECT %1 FROM %2").arg(names.join(u", "), m_quotedTable);
}

QString RecordStore::quoted(const QString &column) const
{
    return m_db.driver()->escapeIdentifier(column, QSqlDriver::FieldName);
}

QVariant RecordStore::currentKey() const
{
    return m_current.isEmpty() ? QVariant() : m_current.value(m_key);
}

bool RecordStore::load(const QString &where, const QString &order, const QVariant &bound)
{
    QString sql = m_select;
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE %1 %2 ?").arg(quoted(m_key), where);
    if (!order.isEmpty())
        sql += QStringLiteral(" ORDER BY %1 %2").arg(quoted(m_key), order);
    sql += QStringLiteral(" LIMIT 1");
    QSqlQuery *q = prepared(sql, where.isEmpty() ? QVariantList() : QVariantList{bound}, &m_error);
    if (!q)
        return false;
    m_error = QSqlError();
    const bool found = q->next();
    if (found)
        m_current = q->record();
    // A statement left open would hold SQLite's read lock against other users' saves.
    q->finish();
    return found;
}

// The reads a record move makes are prepared once: parsing a statement of many columns, or a
// round trip to the server, costs more than running it.
QSqlQuery *RecordStore::prepared(const QString &sql, const QVariantList &bind, QSqlError *error) const
{
    auto it = m_prepared.find(sql);
    if (it != m_prepared.end()) {
        for (qsizetype i = 0; i < bind.size(); ++i)
            it->second.bindValue(int(i), bind[i]);
        if (it->second.exec())
            return &it->second;
        m_prepared.erase(it); // the connection was reopened, or the table changed
    }
    QSqlQuery q(m_db);
    if (!run(q, sql, bind, error))
        return nullptr;
    return &m_prepared.insert_or_assign(sql, q).first->second;
}

bool RecordStore::first() { return load(QString(), QStringLiteral("ASC"), {}); }
bool RecordStore::last() { return load(QString(), QStringLiteral("DESC"), {}); }
bool RecordStore::next() { return hasCurrent() ? load(QStringLiteral(">"), QStringLiteral("ASC"), currentKey()) : first(); }
bool RecordStore::previous() { return hasCurrent() ? load(QStringLiteral("<"), QStringLiteral("DESC"), currentKey()) : last(); }
bool RecordStore::find(const QVariant &key) { return load(QStringLiteral("="), QString(), key); }

bool RecordStore::readBack(const QVariant &key)
{
    if (find(key))
        return true;
    if (m_error.type() == QSqlError::NoError)
        m_error = QSqlError(QString(), QStringLiteral("the record was not found after it was written"), QSqlError::TransactionError);
    return false;
}

QString RecordStore::unchangedClause(QVariantList &bind) const
{
    QStringList terms{quoted(m_key) + QStringLiteral(" = ?")};
    bind << currentKey();
    for (int i = 0; i < m_current.count(); ++i) {
        const QString name = m_current.fieldName(i);
        if (name == m_key)
            continue;
        if (m_current.isNull(i)) {
            terms << quoted(name) + QStringLiteral(" IS NULL");
        } else {
            terms << quoted(name) + QStringLiteral(" = ?");
            bind << m_current.value(i);
        }
    }
    return terms.join(QStringLiteral(" AND "));
}

// The written row as stored becomes the current one, and only then is the write committed.
RecordStore::Outcome RecordStore::readBackAndCommit(const QVariant &key)
{
    const QSqlRecord shown = m_current;
    if (!readBack(key) || !m_db.commit()) {
        if (m_error.type() == QSqlError::NoError)
            m_error = m_db.lastError();
        m_db.rollback();
        m_current = shown;
        return Outcome::Failed;
    }
    return Outcome::Stored;
}

// Nothing was written: tell a row someone changed from one someone deleted.
RecordStore::Outcome RecordStore::notWritten()
{
    QSqlQuery q(m_db);
    const QString sql = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(m_quotedTable, quoted(m_key));
    if (!run(q, sql, {currentKey()}, &m_error))
        return Outcome::Failed;
    return q.next() ? Outcome::Changed : Outcome::Deleted;
}

RecordStore::Outcome RecordStore::update(const QVariantHash &values)
{
    if (!hasCurrent())
        return Outcome::Failed;
    QStringList sets;
    QVariantList bind;
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (it.key() == m_key || !m_columns.contains(it.key()))
            continue;
        sets << quoted(it.key()) + QStringLiteral(" = ?");
        bind << forColumn(it.key(), it.value());
    }
    if (sets.isEmpty())
        return Outcome::Stored;
    const QString sql = QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(m_quotedTable, sets.join(u", "), unchangedClause(bind));
    if (!m_db.transaction()) {
        m_error = m_db.lastError();
        return Outcome::Failed;
    }
    QSqlQuery q(m_db);
    const QVariant key = currentKey();
    if (!run(q, sql, bind, &m_error)) {
        m_db.rollback();
        return Outcome::Failed;
    }
    if (q.numRowsAffected() != 1) {
        m_db.rollback();
        return notWritten();
    }
    q.finish();
    return readBackAndCommit(key);
}

RecordStore::Outcome RecordStore::insert(const QVariantHash &values)
{
    QStringList names, marks;
    QVariantList bind;
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (!m_columns.contains(it.key()) || (it.key() == m_key && it.value().isNull()))
            continue;
        names << quoted(it.key());
        marks << QStringLiteral("?");
        bind << forColumn(it.key(), it.value());
    }
    QString sql = names.isEmpty() ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(m_quotedTable)
                                  : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(m_quotedTable, names.join(u", "), marks.join(u", "));
    // PostgreSQL's last insert id is an OID, not the key.
    const bool returning = isPostgres(m_db);
    if (returning)
        sql += QStringLiteral(" RETURNING ") + quoted(m_key);
    if (!m_db.transaction()) {
        m_error = m_db.lastError();
        return Outcome::Failed;
    }
    QSqlQuery q(m_db);
    if (!run(q, sql, bind, &m_error)) {
        m_db.rollback();
        return Outcome::Failed;
    }
    QVariant key = values.value(m_key);
    if (returning && q.next())
        key = q.value(0);
    else if (key.isNull())
        key = q.lastInsertId();
    q.finish();
    return readBackAndCommit(key);
}

RecordStore::Outcome RecordStore::remove()
{
    if (!hasCurrent())
        return Outcome::Failed;
    QVariantList bind;
    const QString sql = QStringLiteral("DELETE FROM %1 WHERE %2").arg(m_quotedTable, unchangedClause(bind));
    QSqlQuery q(m_db);
    if (!run(q, sql, bind, &m_error))
        return Outcome::Failed;
    Outcome outcome = q.numRowsAffected() == 1 ? Outcome::Stored : notWritten();
    if (outcome == Outcome::Changed || outcome == Outcome::Failed)
        return outcome;
    const QVariant gone = currentKey();
    q.finish();
    // Gone either way: on to the next record, else the one before, else none.
    if (!load(QStringLiteral(">"), QStringLiteral("ASC"), gone) && !load(QStringLiteral("<"), QStringLiteral("DESC"), gone))
        m_current = QSqlRecord();
    m_error = QSqlError();
    return outcome;
}

RecordStore::Position RecordStore::position(int limit) const
{
    auto countUpTo = [&](const QString &where, const QVariantList &bind) -> qint64 {
        QSqlError ignored;
        const QString sql = QStringLiteral("SELECT count(*) FROM (SELECT 1 FROM %1%2 LIMIT %3) AS capped")
                                .arg(m_quotedTable, where)
                                .arg(limit + 1);
        QSqlQuery *q = prepared(sql, bind, &ignored);
        const qint64 n = q && q->next() ? q->value(0).toLongLong() : 0;
        if (q)
            q->finish();
        return n > limit ? 0 : n;
    };
    Position p;
    p.count = countUpTo(QString(), {});
    if (hasCurrent())
        p.index = countUpTo(QStringLiteral(" WHERE %1 <= ?").arg(quoted(m_key)), {currentKey()});
    return p;
}

QVariantList RecordStore::keysAfter(const QVariant &key, int chunk)
{
    QString sql = QStringLiteral("SELECT %1 FROM %2").arg(quoted(m_key), m_quotedTable);
    if (key.isValid())
        sql += QStringLiteral(" WHERE %1 > ?").arg(quoted(m_key));
    sql += QStringLiteral(" ORDER BY %1 LIMIT %2").arg(quoted(m_key)).arg(chunk);
    QSqlQuery q(m_db);
    QVariantList keys;
    if (run(q, sql, key.isValid() ? QVariantList{key} : QVariantList(), &m_error))
        while (q.next())
            keys << q.value(0);
    return keys;
}

bool RecordStore::isReadOnly()
{
    QSqlQuery q(m_db);
    if (isPostgres(m_db)) {
        const QString sql = QStringLiteral("SELECT has_table_privilege(?, 'UPDATE') AND current_setting('transaction_read_only') = 'off'");
        return run(q, sql, {m_table}, &m_error) && q.next() && !q.value(0).toBool();
    }
    // A delete of no row changes nothing, and a read-only file refuses it.
    if (q.exec(QStringLiteral("DELETE FROM %1 WHERE 1 = 0").arg(m_quotedTable)))
        return false;
    return (q.lastError().nativeErrorCode().toInt() & 0xff) == 8; // SQLITE_READONLY
}

} // namespace kel::kelform
