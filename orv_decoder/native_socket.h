#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define _WINSOCK_DEPRECATED_NO_WARNINGS
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#endif

#include <cstddef>
#include <cstdint>
#include <string>

/// What differs between Winsock and BSD sockets: for DatagramSocket alone, which makes the calls
/// that read the same on both.
namespace orv::native {

#ifdef _WIN32
using Socket = SOCKET;
using Size = int;
using Length = int;
#else
using Socket = int;
using Size = std::size_t;
using Length = socklen_t;
#endif

bool startSocketSystem();
void stopSocketSystem();

/// A UDP socket, or what is -1 as a number.
Socket createSocket();
void closeSocket(Socket handle);

/// Before a bind that shall not share its port.
bool refuseToShareAddress(Socket handle);

bool setReceiveTimeout(Socket handle, std::uint32_t timeoutMs);

/// True as soon as a receive would not wait, if only to tell an error.
bool isReadable(Socket handle, std::uint32_t timeoutMs);

/// What the system says about a call that has just failed.
std::string lastErrorText();

/// Of a receive that has just failed: it took a datagram, which was longer than the buffer.
bool wasCut();

/// Of the same: a signal ended it, which the program has answered by now.
bool wasInterrupted();

/// Of the same: it was neither time-out nor fault of the socket, and the next one may succeed.
bool wasDisturbed();

template<typename Value>
bool setSocketOption(Socket handle, int option, const Value& value)
{
    return ::setsockopt(handle, SOL_SOCKET, option, reinterpret_cast<const char*>(&value),
                        sizeof value) == 0;
}

} // namespace orv::native
