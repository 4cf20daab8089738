#pragma once

#include "views/common/CellEditorDelegate.h"

#include <QStyledItemDelegate>

/// Edits a cell of the sequence table in a combo box whose item index becomes the cell's value.
class OrvgStepItemDelegate : public CellEditorDelegate<QStyledItemDelegate>
{
    Q_OBJECT

public:
    using CellEditorDelegate::CellEditorDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

private:
    void takeChoice(QWidget* editor);
};
