#pragma once

#include <QString>

class QMainWindow;

/// What keeps the program's window from being used; empty when nothing does.
QString faultOf(const QMainWindow& window);
