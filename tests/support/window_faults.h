#pragma once

#include <QString>

class QMainWindow;

/// What keeps a window that is shown from being used: it or a floating part is not on the screen,
/// too large or too small, a section of a splitter is smaller than its view can be. Empty when
/// nothing does.
QString faultOf(const QMainWindow& window);
