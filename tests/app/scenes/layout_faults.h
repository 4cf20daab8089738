#pragma once

#include <QStringList>

class QWidget;

/// Texts of the window that are cut or shortened for want of room, by what the fonts and the style
/// need and what there is.
QStringList cutTexts(QWidget& window);

/// Parts of a layout that lie above each other, and parts that are cut by what is around them.
QStringList overlaps(QWidget& window);

/// Icons and pictures with fewer pixels than the screen has in their place.
QStringList blurredIcons(QWidget& window);
