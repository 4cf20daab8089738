#include "tests/support/screenshots.h"

#include <QDir>
#include <QPixmap>
#include <QWidget>

void saveScreenshot(QWidget& widget, const QString& name)
{
    const QString folder = qEnvironmentVariable("TARVIO_SCREENSHOTS");
    if (!folder.isEmpty())
        widget.grab().save(QDir(folder).filePath(name + QStringLiteral(".png")));
}
