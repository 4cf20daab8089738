#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// A settings file to the ECU.
Command writeCommand();

} // namespace tarvioctl
