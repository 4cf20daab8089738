#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// Plays a capture of the live streams to the programs of this computer.
Command replayCommand();

} // namespace tarvioctl
