#pragma once

class QAbstractItemDelegate;
class QAbstractItemModel;
class QAbstractItemView;
class QModelIndex;
class QRect;
class QString;
class QTableView;
class QVariant;
class QWidget;

/// Stretches the columns of a table over its width, but keeps each wide enough for `longestText`.
void stretchColumns(QTableView& table, const QString& longestText);

/// Takes the value of the editor and closes it.
void commitAndClose(QAbstractItemDelegate& delegate, QWidget* editor);

/// Takes the value of the cell that is being edited, if there is one, and closes its editor. Tool
/// buttons and menus take no focus: without this what they write is not what is shown.
void commitOpenEditor(QAbstractItemView& view);

/// Stores what an editor shows unless the cell shows the same. More than one stored value may show
/// alike: an editor that was only opened must not replace one by another.
/// @param shown the edit value that the cell has when it shows what the editor shows
/// @param stored the edit value to set then
void storeChange(QAbstractItemModel& model, const QModelIndex& index, const QVariant& shown,
                 const QVariant& stored);

/// Puts the editor on its cell, and over the neighbour where it needs more width, but not over
/// the right edge of the table.
void placeEditor(QWidget& editor, const QRect& cell);
