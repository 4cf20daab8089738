#pragma once

#include "views/common/CellEditorDelegate.h"

#include <QItemDelegate>

/// Edits a cell of the position table in a spin box whose range follows the cell's row.
class OrvgSensorPositionItemDelegate : public CellEditorDelegate<QItemDelegate>
{
    Q_OBJECT

public:
    using CellEditorDelegate::CellEditorDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
};
