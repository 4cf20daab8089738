#pragma once

#include <QString>

/// The names of network values: keys in the settings store and elements of a settings file.
namespace settings {

inline const QString kEcuIp = QStringLiteral("ecu_ip");
inline const QString kEcuSubnet = QStringLiteral("ecu_subnet");
inline const QString kEcuGateway = QStringLiteral("ecu_gateway");
inline const QString kControlPort = QStringLiteral("control_port");
inline const QString kHostIp = QStringLiteral("host_ip");
inline const QString kReceivePort = QStringLiteral("receive_port");
inline const QString kFreespacePort = QStringLiteral("fsp_port");

/// What the program uses.
inline const QString kNetworkGroup = QStringLiteral("network");

/// What a settings file brought, until it is accepted or the window closes.
inline const QString kImportedNetworkGroup = QStringLiteral("network_imported");

} // namespace settings
