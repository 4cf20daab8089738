#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// Automatic calibration of one sensor.
Command calibrateCommand();

} // namespace tarvioctl
