#pragma once

#include <cstdint>

namespace cli {

/// Whether this machine has the address, whose first octet is the lowest byte. True where the
/// system does not tell.
bool isOwnAddress(std::uint32_t address);

} // namespace cli
