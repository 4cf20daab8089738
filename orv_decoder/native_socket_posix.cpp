#include "orv_decoder/native_socket.h"

#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace orv::native {

bool startSocketSystem()
{
    return true;
}

void stopSocketSystem() {}

Socket createSocket()
{
    return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

void closeSocket(Socket handle)
{
    ::close(handle);
}

// A port is shared only when both ask for it.
bool refuseToShareAddress(Socket)
{
    return true;
}

bool setReceiveTimeout(Socket handle, std::uint32_t timeoutMs)
{
    timeval value{};
    value.tv_sec = static_cast<decltype(value.tv_sec)>(timeoutMs / 1000);
    value.tv_usec = static_cast<decltype(value.tv_usec)>(timeoutMs % 1000 * 1000);
    return setSocketOption(handle, SO_RCVTIMEO, value);
}

bool isReadable(Socket handle, std::uint32_t timeoutMs)
{
    pollfd entry{.fd = handle, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, static_cast<int>(timeoutMs)) > 0;
}

std::string lastErrorText()
{
    return std::system_category().message(errno);
}

bool wasCut()
{
    return false;
}

bool wasInterrupted()
{
    return errno == EINTR;
}

bool wasDisturbed()
{
    return wasInterrupted();
}

} // namespace orv::native
