#pragma once

#include "orv_decoder/ControlFrame.h"

#include <cstdint>
#include <string>

namespace ecusim {

/// "write thresholds of sensor 4", sensors numbered as shown.
std::string requestText(const orv::ControlRequest& request);

/// "ok" or "status 5 (wrong value)".
std::string statusText(std::uint8_t status);

} // namespace ecusim
