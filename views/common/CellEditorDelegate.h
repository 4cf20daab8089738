#pragma once

#include "views/common/item_tables.h"

#include <QStyleOptionViewItem>

/// A delegate of a table with narrow cells: an editor stands on its cell and, where it needs more
/// width, on the neighbour.
/// @tparam Delegate QItemDelegate or QStyledItemDelegate
template<typename Delegate>
class CellEditorDelegate : public Delegate
{
public:
    using Delegate::Delegate;

    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex&) const override
    {
        placeEditor(*editor, option.rect);
    }
};
