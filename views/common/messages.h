#pragma once

#include <QtGlobal>

#include <string>

class QMessageBox;
class QString;
class QWidget;

/// Asks a Yes/No question in an information box; true for Yes.
bool askYesNo(QWidget* parent, const QString& title, const QString& text);

/// Asks whether what the user changed may be overwritten by what the ECU holds.
bool confirmOverwrite(QWidget* parent, const QString& title);

/// The next three open a box that blocks its window and return at once: what called them, live data
/// or a timer, goes on while the box waits. The box deletes itself.
void openInformation(QWidget* parent, const QString& title, const QString& text);
void openWarning(QWidget* parent, const QString& title, const QString& text);

/// Asks a Yes/No question; No is what Enter and Escape choose. The box finishes with the button.
QMessageBox* openQuestion(QWidget* parent, const QString& title, const QString& text);

/// Shows a warning box titled "Communication error".
void showCommunicationError(QWidget* parent, const QString& text);

/// The same with the control client's last error.
void showCommunicationError(QWidget* parent, const std::string& lastError);
