#include "fielddelegate.h"

#include "controls/combo/kelcombo.h"
#include "controls/datetime/keltime.h"

#include <QDateTime>
#include <QMetaProperty>

namespace kel::kelform {

namespace {

QVariant sqlNull() { return QVariant(QMetaType::fromType<QString>()); }

// The combo shows names while the column holds an id: the id travels as the item's tag.
void showTag(KelCombo *combo, const QVariant &cell)
{
    const QString tag = cell.isNull() ? QString() : cell.toString();
    for (qint16 i = 1; i <= combo->ListCount() && !tag.isEmpty(); ++i) {
        if (combo->ListTagItem(i) == tag) {
            combo->setListIndex(i);
            return;
        }
    }
    combo->setText(QString());
}

// Dates and times are stored as ISO text, which the field's own parser would read in the
// user's regional order; they go in as QDate/QTime instead, and NULL as a Null value.
QVariant dateTimeFromCell(QWidget *editor, const QVariant &cell)
{
    const QString text = cell.isNull() ? QString() : cell.toString();
    if (qobject_cast<KelTime *>(editor)) {
        if (const QTime t = QTime::fromString(text, Qt::ISODate); t.isValid())
            return t;
    } else if (const QDate d = QDate::fromString(text, Qt::ISODate); d.isValid()) {
        return d;
    }
    return QVariant::fromValue(nullptr);
}

} // namespace

QVariant cellValue(QWidget *editor)
{
    if (auto *combo = qobject_cast<KelCombo *>(editor))
        return combo->ListIndex() > 0 ? QVariant(combo->ListTagItem(combo->ListIndex())) : sqlNull();
    const QMetaProperty user = editor->metaObject()->userProperty();
    if (!user.isValid())
        return sqlNull();
    const QVariant value = user.read(editor);
    // Dates and times are stored as ISO text; Empty and Null as NULL.
    switch (value.metaType().id()) {
    case QMetaType::UnknownType: case QMetaType::Nullptr: return sqlNull();
    case QMetaType::QDate: return value.toDate().toString(Qt::ISODate);
    case QMetaType::QTime: return value.toTime().toString(QStringLiteral("HH:mm:ss"));
    default: return value;
    }
}

void showCell(QWidget *editor, const QVariant &cell)
{
    const QMetaProperty user = editor->metaObject()->userProperty();
    if (auto *combo = qobject_cast<KelCombo *>(editor))
        showTag(combo, cell);
    else if (qobject_cast<DateTimeField *>(editor))
        user.write(editor, dateTimeFromCell(editor, cell));
    else if (user.isValid())
        // NULL as the property's empty value; an untyped property takes an invalid QVariant (Empty).
        user.write(editor, !cell.isNull() ? cell
                           : user.metaType() == QMetaType::fromType<QVariant>() ? QVariant() : QVariant(user.metaType()));
    // The record as loaded is what ChangedSaved measures against. The references are set from
    // what the control now holds, so a value it rounded or clamped does not count as a change.
    if (editor->metaObject()->indexOfProperty("TextSaved") >= 0) {
        const char *shown = editor->metaObject()->indexOfProperty("TextRaw") >= 0 ? "TextRaw" : user.name();
        editor->setProperty("TextSaved", editor->property(shown));
    }
    if (editor->metaObject()->indexOfProperty("ValueSaved") >= 0)
        editor->setProperty("ValueSaved", user.read(editor));
}

void FieldDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    showCell(editor, index.data(Qt::EditRole));
}

void FieldDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    model->setData(index, cellValue(editor), Qt::EditRole);
}

} // namespace kel::kelform
