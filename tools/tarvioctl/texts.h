#pragma once

#include <QString>

#include <cstdint>

namespace orv {
class OrvCtrlClient;
}

namespace tarvioctl {

/// The dotted text of an address whose first octet is the lowest byte.
QString dotted(std::uint32_t address);

/// A sentence for an exchange that failed: the client's reason and what to do.
QString noAnswer(const orv::OrvCtrlClient& client);

} // namespace tarvioctl
