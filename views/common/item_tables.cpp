#include "views/common/item_tables.h"

#include <QAbstractItemDelegate>
#include <QHeaderView>
#include <QStyle>
#include <QTableView>

#include <algorithm>

void stretchColumns(QTableView& table, const QString& longestText)
{
    const int margin = 2 * (table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1) + 2;
    table.horizontalHeader()->setMinimumSectionSize(
        table.fontMetrics().horizontalAdvance(longestText) + margin);
    table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

void commitAndClose(QAbstractItemDelegate& delegate, QWidget* editor)
{
    emit delegate.commitData(editor);
    emit delegate.closeEditor(editor);
}

void commitOpenEditor(QAbstractItemView& view)
{
    const QModelIndex current = view.currentIndex();
    if (QWidget* editor = view.indexWidget(current))
        commitAndClose(*view.itemDelegate(), editor);
}

void storeChange(QAbstractItemModel& model, const QModelIndex& index, const QVariant& shown,
                 const QVariant& stored)
{
    if (index.data(Qt::EditRole) != shown)
        model.setData(index, stored, Qt::EditRole);
}

void placeEditor(QWidget& editor, const QRect& cell)
{
    QRect place = cell;
    place.setWidth(std::max(cell.width(), editor.sizeHint().width()));
    place.moveRight(std::min(place.right(), editor.parentWidget()->rect().right()));
    editor.setGeometry(place);
}
