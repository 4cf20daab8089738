#include "views/sequence/OrvgStepItemDelegate.h"

#include "ecu/configuration/step_words.h"
#include "views/common/item_tables.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/StepComboBox.h"

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
    model->setData(index, box->currentIndex(), Qt::EditRole);
}

void OrvgStepItemDelegate::takeChoice(QWidget* editor)
{
    commitAndClose(*this, editor);
}
