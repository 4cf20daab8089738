#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// The live records on standard output as they arrive, in the end rates and losses.
Command monitorCommand();

} // namespace tarvioctl
