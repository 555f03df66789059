#pragma once
// One table read a record at a time in the order of its key (keyset navigation: each move is one
// indexed query, whatever the size of the table), and written with optimistic concurrency: an
// update or delete only touches the row when it still holds what was shown.
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <map>

namespace kel::kelform {

class RecordStore
{
public:
    enum class Outcome { Stored, Changed, Deleted, Failed };

    RecordStore(const QSqlDatabase &db, const QString &table);

    bool isValid() const { return m_error.type() == QSqlError::NoError; }
    QSqlDatabase database() const { return m_db; }
    QString table() const { return m_table; }
    QString keyName() const { return m_key; }
    /// The columns of the table, without values.
    QSqlRecord columns() const { return m_columns; }

    /// Each loads the record it names and answers whether there was one; otherwise the
    /// current record stays.
    bool first();
    bool last();
    bool next();
    bool previous();
    bool find(const QVariant &key);

    bool hasCurrent() const { return !m_current.isEmpty(); }
    /// The record as last read from the database.
    const QSqlRecord &current() const { return m_current; }
    QVariant currentKey() const;

    /// Writes `values` (column name to value) over the current record, when the row still holds
    /// what current() holds; then reads it back as stored. All or nothing.
    Outcome update(const QVariantHash &values);
    /// Adds a record and makes it the current one, read back as stored.
    Outcome insert(const QVariantHash &values);
    /// Deletes the current record when it still holds what current() holds; when it is gone
    /// (Stored or Deleted) the next record, else the one before, becomes the current one.
    Outcome remove();

    /// Position of the current record in key order and the number of records, each counted up
    /// to `limit` rows so that the cost does not grow with the table; 0 when beyond it.
    struct Position { qint64 index = 0, count = 0; };
    Position position(int limit) const;

    /// Every key in order, `chunk` at a time (keyset, so memory stays flat).
    /// An invalid key starts at the first; on failure the list is empty and lastError() says why.
    QVariantList keysAfter(const QVariant &key, int chunk);
    /// The database refuses every write to the table (a read-only file, no right to change it).
    bool isReadOnly();

    /// Why the last operation failed.
    QSqlError lastError() const { return m_error; }

private:
    bool load(const QString &where, const QString &order, const QVariant &bound);
    QSqlQuery *prepared(const QString &sql, const QVariantList &bind, QSqlError *error) const;
    bool readBack(const QVariant &key);
    Outcome readBackAndCommit(const QVariant &key);
    QString quoted(const QString &column) const;
    // "a = ? AND b IS NULL ...": the row holds what current() holds.
    QString unchangedClause(QVariantList &bind) const;
    Outcome notWritten();
    QVariant forColumn(const QString &column, const QVariant &value) const;

    QSqlDatabase m_db;
    QString m_table, m_quotedTable, m_key, m_select;
    QSqlRecord m_columns;
    QSqlRecord m_current;
    QSqlError m_error;
    mutable std::map<QString, QSqlQuery> m_prepared;
};

} // namespace kel::kelform
