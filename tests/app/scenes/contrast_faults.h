#pragma once

#include <QStringList>

class QImage;
class QWidget;

/// Texts of what can be used that do not stand out enough from their ground in a picture of the
/// window, 4.5 to 1.
QStringList paleTexts(QWidget& window, const QImage& picture);

/// Icons of buttons with no part that does, 3 to 1.
QStringList paleIcons(QWidget& window, const QImage& picture);
