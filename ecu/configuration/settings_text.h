#pragma once

#include <QString>

/// Files that are longer are no settings files: a complete one has less than 10 kB.
inline constexpr qint64 kMaxSettingsFileSize = 1'048'576;

/// Files with more attributes are none either: a complete one has 26. The XML reader compares each
/// attribute of a tag, and each namespace that is in force, with every other.
inline constexpr int kMaxSettingsAttributes = 512;

/// The text of a settings file, for an XML reader; empty for a file that cannot be one. Not a byte
/// more than the largest size is read. Bytes that are no UTF-8 become a character at which the
/// reader stops.
QString settingsText(const QString& fileName);
