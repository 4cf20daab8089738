#include "views/live/EchoCellDelegate.h"

#include <QPainter>

void EchoCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    // The keyboard's and the mouse's cell are the style's to mark.
    if (option.state & (QStyle::State_HasFocus | QStyle::State_MouseOver)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QSize size(option.rect.width(), option.fontMetrics.height());
    const QRect line = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, option.rect);
    painter->drawText(line, Qt::AlignHCenter | Qt::AlignTop, index.data().toString());
}
