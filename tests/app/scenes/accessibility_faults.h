#pragma once

#include <QStringList>

class QWidget;

/// What a screen reader is not told of a window and the parts of it that are seen: names of what
/// takes the focus or shows a picture only, and roles. One text for each fault.
QStringList namelessParts(QWidget& window);

/// Letters that two entries of the menu or two parts of the window share. Docks and menus have
/// theirs beside what is inside of them.
QStringList sharedMnemonics(QWidget& window);

/// Goes through the window with the Tab key, and back: what takes the focus and is never reached,
/// and what comes before something left of it or above.
QStringList tabFaults(QWidget& window);

/// True for parts of a dock or a sub-window that stands behind another one.
bool isBehindAnother(const QWidget& widget);

/// True for a file dialog and what else Qt makes by itself.
bool isPartOfQt(const QWidget& widget);

/// How a fault names a widget.
QString nameOf(const QWidget& widget);
