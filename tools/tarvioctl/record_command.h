#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// Both live streams into a capture file.
Command recordCommand();

} // namespace tarvioctl
