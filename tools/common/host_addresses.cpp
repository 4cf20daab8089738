#include "tools/common/host_addresses.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <ifaddrs.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#endif

namespace cli {

#ifdef Q_OS_UNIX

bool isOwnAddress(std::uint32_t address)
{
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0)
        return true;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        // In network order the first octet is the first byte in memory.
        const auto* own = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr);
        const std::uint32_t bigEndian = ntohl(own->sin_addr.s_addr);
        const std::uint32_t packed = bigEndian >> 24 | (bigEndian >> 8 & 0xFF00) |
                                     (bigEndian & 0xFF00) << 8 | bigEndian << 24;
        if (packed == address)
            return true;
    }
    return false;
}

#else

bool isOwnAddress(std::uint32_t)
{
    return true;
}

#endif

} // namespace cli
