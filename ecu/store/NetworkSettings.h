#pragma once

#include <QString>

#include <cstdint>

class QSettings;

/// The host's side of the link as the settings store keeps it in its group "network".
struct NetworkSettings
{
    QString ecuIp;
    std::uint16_t controlPort = 0;
    std::uint16_t receivePort = 0;   ///< measurement results
    std::uint16_t freespacePort = 0; ///< freespace packages
};

namespace settings {

inline const QString kNetworkGroup = QStringLiteral("network");
inline const QString kImportedNetworkGroup = QStringLiteral("network_imported");
inline const QString kWindowGroup = QStringLiteral("main_window");

/// True when the store holds a top-level group of this name.
bool hasGroup(const QSettings& store, const QString& group);

/// Writes what a first start begins with. The freespace port is left to its default, 50003.
void writeDefaultNetwork(QSettings& store);

/// Reads the group "network"; a port that is missing or no port number reads as 0, but for the
/// defaults 50002 (control) and 50003 (freespace) of missing ones.
NetworkSettings readNetwork(QSettings& store);

} // namespace settings
