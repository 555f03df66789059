#include "fielddelegate.h"

#include "controls/combo/kelcombo.h"
#include "controls/datetime/keltime.h"

#include <QDateTime>
#include <QHash>
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
    // PostgreSQL's date and time columns arrive typed.
    if (!cell.isNull() && (cell.metaType() == QMetaType::fromType<QDate>() || cell.metaType() == QMetaType::fromType<QTime>()))
        return cell;
    const QString text = cell.isNull() ? QString() : cell.toString();
    if (qobject_cast<KelTime *>(editor)) {
        if (const QTime t = QTime::fromString(text, Qt::ISODate); t.isValid())
            return t;
    } else if (const QDate d = QDate::fromString(text, Qt::ISODate); d.isValid()) {
        return d;
    }
    return QVariant::fromValue(nullptr);
}

// A record move sets them on every control: looked up by name once per class.
struct References {
    QMetaProperty textSaved, textRaw, valueSaved;
};

const References &references(const QMetaObject *mo)
{
    static QHash<const QMetaObject *, References> known;
    auto it = known.find(mo);
    if (it == known.end()) {
        auto find = [mo](const char *name) { return mo->property(mo->indexOfProperty(name)); };
        it = known.insert(mo, {find("TextSaved"), find("TextRaw"), find("ValueSaved")});
    }
    return *it;
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
    const References &refs = references(editor->metaObject());
    if (refs.textSaved.isValid())
        refs.textSaved.write(editor, (refs.textRaw.isValid() ? refs.textRaw : user).read(editor));
    if (refs.valueSaved.isValid())
        refs.valueSaved.write(editor, user.read(editor));
}

} // namespace kel::kelform
