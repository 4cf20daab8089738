#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// Why nothing arrives: looks at ports, addresses, control channel and streams, and says of each
/// finding what to do next.
Command doctorCommand();

} // namespace tarvioctl
