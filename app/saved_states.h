#pragma once

class QByteArray;
class QRect;
class QSize;

/// Whether bytes from the settings store may be given to Qt, which believes what they say. A state
/// that is sound was saved by Qt 5, as far as its bytes can tell, and its numbers lie within what
/// windows and screens are like.

/// Of QWidget::saveGeometry(). The window has to be no larger than `largest` and must not show a
/// mere edge on the desktop. One that is completely outside is brought back by Qt.
bool isSoundGeometry(const QByteArray& geometry, const QRect& desktop, const QSize& largest);

/// Of QMainWindow::saveState(0), for a window whose tool bars cannot be hidden. It has to place the
/// docks and tool bars that are in `own`, the present state of the window, and no others; what
/// floats has to lie on the desktop.
bool isSoundDockState(const QByteArray& state, const QByteArray& own, const QRect& desktop);

/// Of QSplitter::saveState(). It has to be like `own`, the present state of the splitter, in all
/// but the sizes.
bool isSoundSplitterState(const QByteArray& state, const QByteArray& own);
