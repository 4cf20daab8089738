#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#else
#include <netinet/in.h>
#include <sys/socket.h>
#endif

#include <cstddef>

/// What differs between Winsock and BSD sockets for the tests' own sockets; the rest of their calls
/// reads the same on both.
namespace native {

#ifdef _WIN32
using Socket = SOCKET;
using Size = int;
using Length = int;
#else
using Socket = int;
using Size = std::size_t;
using Length = socklen_t;
#endif

/// A UDP socket that shares its port with nobody and hears nothing of ports that nobody holds.
Socket openDatagramSocket();

bool isOpen(Socket handle);
void close(Socket handle);

/// True as soon as a datagram waits; false when none came within `timeoutMs`.
bool isReadable(Socket handle, int timeoutMs);

} // namespace native
