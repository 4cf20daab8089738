#pragma once

#include "views/common/CellEditorDelegate.h"

#include <QStyledItemDelegate>

/// Edits a cell of the sequence table in a combo box whose item index becomes the cell's value. Its
/// list opens when the double click that starts the editing is released.
///
/// Frames the current row, which is what the step buttons act on: the table selects nothing. Texts
/// stay readable on the colours of the model whatever the palette is.
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
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    void takeChoice(QWidget* editor);
};
