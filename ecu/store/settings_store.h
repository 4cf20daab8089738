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

/// True when the store holds a top-level group of this name.
bool hasGroup(const QSettings& store, const QString& group);

} // namespace settings
