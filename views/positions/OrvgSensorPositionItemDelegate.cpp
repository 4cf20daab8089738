#include "views/positions/OrvgSensorPositionItemDelegate.h"

#include "ecu/configuration/mount_fields.h"

#include <QDoubleSpinBox>

QWidget* OrvgSensorPositionItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                                      const QModelIndex& index) const
{
    auto* editor = new QDoubleSpinBox(parent);
    const MountFieldRange range = rangeOf(index.row());
    editor->setRange(range.minimum, range.maximum);
    editor->setFrame(false);
    editor->setAlignment(Qt::AlignCenter);
    // The cells are narrow; the arrow keys and the wheel do the same.
    editor->setButtonSymbols(QAbstractSpinBox::NoButtons);
    return editor;
}

void OrvgSensorPositionItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    static_cast<QDoubleSpinBox*>(editor)->setValue(index.data(Qt::EditRole).toDouble());
}

void OrvgSensorPositionItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                                  const QModelIndex& index) const
{
    auto* spinBox = static_cast<QDoubleSpinBox*>(editor);
    spinBox->interpretText();
    storeChange(*model, index, spinBox->value(), spinBox->value());
}
