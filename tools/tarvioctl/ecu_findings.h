#pragma once

#include "tools/common/StreamPorts.h"

struct LinkSettings;

namespace orv {
class OrvCtrlClient;
}

namespace tarvioctl {

class Findings;

/// Asks the ECU who it is, where it sends to and whether it measures at all, and tells what does
/// not fit the local ports. False when it does not answer.
bool lookAtEcu(orv::OrvCtrlClient& client, const LinkSettings& link, const cli::StreamPorts& ports,
               Findings& findings);

} // namespace tarvioctl
