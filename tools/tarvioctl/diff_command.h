#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// What differs between the ECU and a settings file, or between two files.
Command diffCommand();

} // namespace tarvioctl
