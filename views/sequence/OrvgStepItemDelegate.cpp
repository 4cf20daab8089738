#include "views/sequence/OrvgStepItemDelegate.h"

#include "ecu/configuration/step_words.h"
#include "views/common/contrast.h"
#include "views/common/item_tables.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/StepComboBox.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>

namespace {

constexpr int kFrameWidth = 2;

// The view that an item is painted for.
const QAbstractItemView* viewOf(const QStyleOptionViewItem& option)
{
    return qobject_cast<const QAbstractItemView*>(option.widget);
}

bool isInCurrentRow(const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QAbstractItemView* view = viewOf(option);
    return view && view->currentIndex().row() == index.row();
}

// This cell's part of a frame around its row.
void paintRowFrame(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QRect cell = option.rect;
    const QColor color = option.palette.color(QPalette::Highlight);
    const QRect edge(cell.topLeft(), QSize(cell.width(), kFrameWidth));
    painter.fillRect(edge, color);
    painter.fillRect(edge.translated(0, cell.height() - kFrameWidth), color);
    const QRect side(cell.topLeft(), QSize(kFrameWidth, cell.height()));
    if (index.column() == 0)
        painter.fillRect(side, color);
    if (index.column() == index.model()->columnCount() - 1)
        painter.fillRect(side.translated(cell.width() - kFrameWidth, 0), color);
}

} // namespace

QWidget* OrvgStepItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                            const QModelIndex& index) const
{
    const bool isMode = index.column() == OrvgMseqStepItemModel::kModeColumn;
    auto* editor = new StepComboBox(isMode ? modeWords() : stateWords(), parent);
    connect(editor, &StepComboBox::chosenFromList, this, &OrvgStepItemDelegate::takeChoice);
    return editor;
}

void OrvgStepItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* box = qobject_cast<QComboBox*>(editor);
    if (!box)
        return QStyledItemDelegate::setEditorData(editor, index);
    const int word = box->findText(index.data(Qt::EditRole).toString(), Qt::MatchFixedString);
    if (word >= 0)
        box->setCurrentIndex(word);
}

void OrvgStepItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const
{
    const auto* box = qobject_cast<QComboBox*>(editor);
    if (!box)
        return QStyledItemDelegate::setModelData(editor, model, index);
    storeChange(*model, index, box->currentText(), box->currentIndex());
}

void OrvgStepItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    CellEditorDelegate::paint(painter, option, index);
    if (isInCurrentRow(option, index))
        paintRowFrame(*painter, option, index);
}

bool OrvgStepItemDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                       const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QAbstractItemView* view = viewOf(option);
    auto* editor = view ? qobject_cast<QComboBox*>(view->indexWidget(index)) : nullptr;
    // An earlier list would take this release for a choice.
    if (!editor || event->type() != QEvent::MouseButtonRelease)
        return CellEditorDelegate::editorEvent(event, model, option, index);
    editor->showPopup();
    return true;
}

void OrvgStepItemDelegate::initStyleOption(QStyleOptionViewItem* option,
                                           const QModelIndex& index) const
{
    CellEditorDelegate::initStyleOption(option, index);
    if (option->backgroundBrush.style() == Qt::NoBrush)
        return;
    const QColor text = option->palette.color(QPalette::Text);
    option->palette.setColor(QPalette::Text,
                             readableTextColor(text, option->backgroundBrush.color()));
}

void OrvgStepItemDelegate::takeChoice(QWidget* editor)
{
    commitAndClose(*this, editor);
}
