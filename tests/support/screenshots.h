#pragma once

class QString;
class QWidget;

/// Saves a picture of the widget as NAME.png for the user guide when the environment variable
/// TARVIO_SCREENSHOTS names a folder; does nothing otherwise.
void saveScreenshot(QWidget& widget, const QString& name);
