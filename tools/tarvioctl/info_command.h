#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// Who answers: firmware version, network settings, length of the sequence, and how fast.
Command infoCommand();

} // namespace tarvioctl
