#include "tests/support/native_sockets.h"

#ifdef _WIN32
#include <mswsock.h>
#else
#include <poll.h>
#include <unistd.h>
#endif

namespace native {

#ifdef _WIN32

namespace {

// For as long as the program runs.
bool startWinsock()
{
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

void shareNoPort(Socket handle)
{
    const BOOL yes = TRUE;
    ::setsockopt(handle, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
                 sizeof yes);
}

void ignoreUnreachablePorts(Socket handle)
{
    BOOL isReported = FALSE;
    DWORD size = 0;
    WSAIoctl(handle, SIO_UDP_CONNRESET, &isReported, sizeof isReported, nullptr, 0, &size, nullptr,
             nullptr);
}

} // namespace

Socket openDatagramSocket()
{
    static const bool isStarted = startWinsock();
    const Socket handle = isStarted ? ::socket(AF_INET, SOCK_DGRAM, 0) : INVALID_SOCKET;
    shareNoPort(handle);
    ignoreUnreachablePorts(handle);
    return handle;
}

bool isOpen(Socket handle)
{
    return handle != INVALID_SOCKET;
}

void close(Socket handle)
{
    ::closesocket(handle);
}

bool isReadable(Socket handle, int timeoutMs)
{
    WSAPOLLFD waiting{.fd = handle, .events = POLLRDNORM, .revents = 0};
    return WSAPoll(&waiting, 1, timeoutMs) == 1;
}

#else

Socket openDatagramSocket()
{
    return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

bool isOpen(Socket handle)
{
    return handle >= 0;
}

void close(Socket handle)
{
    ::close(handle);
}

bool isReadable(Socket handle, int timeoutMs)
{
    pollfd waiting{.fd = handle, .events = POLLIN, .revents = 0};
    return ::poll(&waiting, 1, timeoutMs) == 1;
}

#endif

} // namespace native
