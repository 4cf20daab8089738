#pragma once

#include <QSettings>

class QIODevice;

namespace settings {

/// Qt's INI format, with one difference: a file that the disk does not take whole is an error, and
/// the former one stays. Qt itself puts a file that a full disk has cut short in its place.
QSettings::Format safeIniFormat();

/// The two functions behind the format.
bool readIni(QIODevice& device, QSettings::SettingsMap& values);
bool writeIni(QIODevice& device, const QSettings::SettingsMap& values);

} // namespace settings
