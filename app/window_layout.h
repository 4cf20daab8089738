#pragma once

class QDockWidget;
class QMainWindow;
class QMdiArea;
class QMenu;
class QToolBar;

/// How the parts of the window are placed before a user moves them. All parts are borrowed and
/// belong to the window.
namespace window_layout {

/// The docks with the editors of the ECU's configuration.
struct EditorDocks
{
    QDockWidget* sequence;
    QDockWidget* thresholds;
    QDockWidget* positions;
};

/// Draws the titles without the mnemonics of the menu entries.
void styleTitles(QMainWindow& window, const EditorDocks& docks);

/// Tabs the docks, thresholds in front, at a height that leaves the live views room, and keeps the
/// window inside its screen.
void arrange(QMainWindow& window, const EditorDocks& docks);

/// Adds an entry for each dock that shows it, in front of those that share its tabs, and hides it.
void addToggles(QMenu& menu, const EditorDocks& docks);

/// Takes away the one entry of the window's context menu that has no text and hides the tool bar.
void keepToolBar(QToolBar& bar);

/// Asks for the height of the tabs besides that of the views, which the area forgets.
void makeRoomForTabs(QMdiArea& area);

} // namespace window_layout
