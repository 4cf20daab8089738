#pragma once

class QMainWindow;
class QWidget;

/// Where the Tab key leads from the part of the window that has the focus: through what is seen,
/// the views first, then the docks as they stand below or beside each other. Parts of a dock or a
/// sub-window behind another one, which Qt counts as visible, are left out. Null when there is
/// nothing else.
QWidget* nextTabStop(const QMainWindow& window, bool next);

/// Scrolls the part into the sight of whatever it stands in.
void bringIntoSight(QWidget& part);
