#pragma once

#include <QtGlobal>

#include <string>

class QString;
class QWidget;

/// Asks a Yes/No question in an information box; true for Yes.
bool askYesNo(QWidget* parent, const QString& title, const QString& text);

/// Asks whether what the user changed may be overwritten by what the ECU holds.
bool confirmOverwrite(QWidget* parent, const QString& title);

/// Shows a warning box titled "Communication error".
void showCommunicationError(QWidget* parent, const QString& text);

/// The same with the control client's last error.
void showCommunicationError(QWidget* parent, const std::string& lastError);
