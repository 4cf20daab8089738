#pragma once

#include <cstdint>
#include <set>

/// The file descriptors that this process holds; where sockets are none, its sockets.
std::set<int> openDescriptors();

/// The only descriptor that came since `before`; -1 when there is none or more than one.
int descriptorSince(const std::set<int>& before);

/// How long a receive on the socket may wait: 0 = for ever.
std::uint32_t receiveTimeoutMsOf(int descriptor);

/// Makes the descriptor one that is no socket.
void breakSocket(int descriptor);
