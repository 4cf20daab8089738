#pragma once

#include "tools/tarvioctl/Command.h"

namespace tarvioctl {

/// An envelope curve recording of one sensor into a CSV file. The sensor's thresholds are as before
/// afterwards, whatever ends it.
Command envelopeCommand();

} // namespace tarvioctl
