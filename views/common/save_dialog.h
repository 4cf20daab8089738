#pragma once

class QString;
class QWidget;

/// Asks where to save a file. `suffix`, ".orv" for example, is added to a name without it; a file
/// that exists under that full name is returned only after a question, and the dialog opens again
/// when it is to be kept. Empty when the user cancels.
QString askSaveFileName(QWidget* parent, const QString& caption, const QString& filter,
                        const QString& suffix);
