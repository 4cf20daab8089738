#pragma once

class QSettings;
class QWidget;

/// Writes what was changed in the settings store to its file at once, and tells in a box over
/// `parent` when that is not possible.
void storeOrTell(const QSettings& store, QWidget* parent);
