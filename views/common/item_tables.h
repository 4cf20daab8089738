#pragma once

class QAbstractItemDelegate;
class QAbstractItemView;
class QRect;
class QString;
class QTableView;
class QWidget;

/// Stretches the columns of a table over its width, but keeps each wide enough for `longestText`.
void stretchColumns(QTableView& table, const QString& longestText);

/// Takes the value of the editor and closes it.
void commitAndClose(QAbstractItemDelegate& delegate, QWidget* editor);

/// Takes the value of the cell that is being edited, if there is one, and closes its editor. Tool
/// buttons and menus take no focus: without this what they write is not what is shown.
void commitOpenEditor(QAbstractItemView& view);

/// Puts the editor on its cell, and over the neighbour where it needs more width, but not over
/// the right edge of the table.
void placeEditor(QWidget& editor, const QRect& cell);
