#include "orv_decoder/native_socket.h"

#include <mswsock.h>
#include <system_error>

namespace orv::native {

namespace {

// A port that nobody holds says so to its sender, and Winsock makes that an error of the sender's
// next receive. Where that cannot be turned off, wasDisturbed() knows the error.
void ignoreUnreachablePorts(Socket handle)
{
    BOOL isReported = FALSE;
    DWORD size = 0;
    WSAIoctl(handle, SIO_UDP_CONNRESET, &isReported, sizeof isReported, nullptr, 0, &size, nullptr,
             nullptr);
}

} // namespace

bool startSocketSystem()
{
    WSADATA data;
    const bool started = WSAStartup(MAKEWORD(2, 0), &data) == 0;
    if (!started)
        WSACleanup();
    return started;
}

void stopSocketSystem()
{
    WSACleanup();
}

Socket createSocket()
{
    const Socket handle = ::socket(AF_INET, SOCK_DGRAM, 0);
    if (handle != INVALID_SOCKET)
        ignoreUnreachablePorts(handle);
    return handle;
}

void closeSocket(Socket handle)
{
    ::closesocket(handle);
}

// Else any program that asks to share the port would take it.
bool refuseToShareAddress(Socket handle)
{
    return setSocketOption(handle, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
}

bool setReceiveTimeout(Socket handle, std::uint32_t timeoutMs)
{
    return setSocketOption(handle, SO_RCVTIMEO, DWORD{timeoutMs});
}

bool isReadable(Socket handle, std::uint32_t timeoutMs)
{
    WSAPOLLFD entry{.fd = handle, .events = POLLRDNORM, .revents = 0};
    return WSAPoll(&entry, 1, static_cast<INT>(timeoutMs)) > 0;
}

// With its number: not every system has words for Winsock's own errors.
std::string lastErrorText()
{
    const int code = WSAGetLastError();
    return std::system_category().message(code) + " (" + std::to_string(code) + ')';
}

// Winsock calls a datagram that was cut to the buffer an error.
bool wasCut()
{
    return WSAGetLastError() == WSAEMSGSIZE;
}

bool wasInterrupted()
{
    return false;
}

// By an earlier datagram that did not reach anybody.
bool wasDisturbed()
{
    const int code = WSAGetLastError();
    return code == WSAECONNRESET || code == WSAENETRESET;
}

} // namespace orv::native
