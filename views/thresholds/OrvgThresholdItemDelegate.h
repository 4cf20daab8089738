#pragma once

#include <QStyledItemDelegate>

/// Edits a threshold cell in a pop-up: its edit value is a QPoint of time index and level index.
class OrvgThresholdItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

    /// Puts the pop-up on the cell, or left of it where it would leave the view to the right.
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
};

/// Where an editor of this width stands over a cell, in coordinates of a parent of this width.
QPoint thresholdEditorPosition(const QRect& cell, int editorWidth, int parentWidth);
