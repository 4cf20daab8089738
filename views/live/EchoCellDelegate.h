#pragma once

#include <QStyledItemDelegate>

/// Paints the cells of the echo table: text in the middle, as the style would paint it. Ten cells
/// change with each result, and for a cell with nothing but text the style does twice the work.
class EchoCellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
