#pragma once
// Carries values between database cells and the controls' USER properties for
// QDataWidgetMapper.
#include <QStyledItemDelegate>

namespace kel::kelform {

class FieldDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
};

/// What `editor` shows, as a plain value a database column takes (NULL for no date or no item).
QVariant cellValue(QWidget *editor);
/// Shows `cell` in `editor` as a freshly loaded value: Original and Saved references follow it.
void showCell(QWidget *editor, const QVariant &cell);

} // namespace kel::kelform
