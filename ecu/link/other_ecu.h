#pragma once

#include <cstdint>
#include <string>

namespace orv {
class OrvCtrlClient;
struct EcuNetworkSettings;
} // namespace orv

/// Reads the network settings of the ECU at another address than the client's own, which the client
/// has again afterwards. Blocks; false with the reason in the client's last error. A client that
/// talks over no network asks the one it has.
bool readNetworkSettingsAt(const std::string& address, std::uint16_t controlPort,
                           orv::OrvCtrlClient& client, orv::EcuNetworkSettings& settings);
