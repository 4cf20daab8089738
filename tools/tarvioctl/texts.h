#pragma once

#include <QString>

#include <cstdint>

namespace orv {
class OrvCtrlClient;
}

namespace tarvioctl {

/// The dotted text of an address whose first octet is the lowest byte.
QString dotted(std::uint32_t address);

/// The number 0..11 of the sensor that is shown as 1..12. Throws std::invalid_argument for a text
/// that is none.
std::uint8_t sensorOf(const QString& text);

/// A sentence for an exchange that failed: the client's reason and what to do.
QString noAnswer(const orv::OrvCtrlClient& client);

} // namespace tarvioctl
