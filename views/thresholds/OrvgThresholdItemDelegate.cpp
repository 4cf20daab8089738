#include "views/thresholds/OrvgThresholdItemDelegate.h"

#include "views/common/item_tables.h"
#include "views/thresholds/ThresholdEditor.h"

#include <QCursor>

namespace {

constexpr QPoint kCursorOffset(10, 10);
constexpr int kRightMargin = 20;

} // namespace

QPoint thresholdEditorPosition(const QRect& cell, int editorWidth, int parentWidth)
{
    const int room = parentWidth - cell.left();
    const int needed = editorWidth + kRightMargin;
    if (room > needed)
        return cell.topLeft();
    return cell.topLeft() - QPoint(needed - room, 0);
}

QWidget* OrvgThresholdItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                                 const QModelIndex&) const
{
    auto* editor = new ThresholdEditor(parent);
    const QString color = parent->palette().color(QPalette::Window).name();
    editor->setStyleSheet(QStringLiteral("background-color: %1;").arg(color));
    editor->move(QCursor::pos() - kCursorOffset);
    editor->adjustSize();
    return editor;
}

void OrvgThresholdItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    static_cast<ThresholdEditor*>(editor)->setIndexes(index.data(Qt::EditRole).toPoint());
}

void OrvgThresholdItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                             const QModelIndex& index) const
{
    const QPoint indexes = static_cast<ThresholdEditor*>(editor)->indexes();
    storeChange(*model, index, indexes, indexes);
}

void OrvgThresholdItemDelegate::updateEditorGeometry(QWidget* editor,
                                                     const QStyleOptionViewItem& option,
                                                     const QModelIndex&) const
{
    const QWidget* parent = editor->parentWidget();
    const QPoint position = thresholdEditorPosition(option.rect, editor->width(), parent->width());
    editor->move(editor->isWindow() ? parent->mapToGlobal(position) : position);
}
