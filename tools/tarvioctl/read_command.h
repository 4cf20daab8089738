#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// The ECU's configuration into a settings file, as the window exports it.
Command readCommand();

} // namespace tarvioctl
