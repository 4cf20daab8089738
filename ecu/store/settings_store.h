#pragma once

#include <QString>

class QObject;
class QSettings;

/// The store in which the program keeps its settings from run to run: an INI file of the user.
namespace settings {

/// Files that are longer were not written by this program.
inline constexpr qint64 kMaxStoreSize = 16'777'216;

/// Opens the store; it belongs to `parent`. One that cannot be read, because it is no regular file
/// (a pipe would wait for a writer) or claims more than the memory holds, is left alone: an empty
/// one then stands for it until the program ends.
QSettings* openStore(QObject* parent);

/// The name of the file in which the user's store lies, whether it can be read or not.
QString storeFileName();

/// Writes what was changed to the file at once; false when that is not possible. The changes then
/// stay in use until the program ends.
bool writeStore(const QSettings& store);

/// True when the store holds a top-level group of this name.
bool hasGroup(const QSettings& store, const QString& group);

} // namespace settings
