#include "tests/support/OpenDescriptors.h"
#include "tests/support/native_sockets.h"

#include <stdexcept>

namespace {

// Windows numbers its handles by fours from the lowest that is free.
constexpr int kHandleStep = 4;
constexpr int kHandleEnd = 4096;

template<typename Value>
bool readOption(int descriptor, int option, Value& value)
{
    int size = sizeof value;
    return ::getsockopt(static_cast<SOCKET>(descriptor), SOL_SOCKET, option,
                        reinterpret_cast<char*>(&value), &size) == 0;
}

bool isSocket(int handle)
{
    int type = 0;
    return readOption(handle, SO_TYPE, type);
}

// Nothing is known of sockets before the first one has been made.
void startSockets()
{
    static const native::Socket first = native::openDatagramSocket();
    if (!native::isOpen(first))
        throw std::runtime_error("no sockets");
}

} // namespace

std::set<int> openDescriptors()
{
    startSockets();
    std::set<int> sockets;
    for (int handle = kHandleStep; handle < kHandleEnd; handle += kHandleStep) {
        if (isSocket(handle))
            sockets.insert(handle);
    }
    return sockets;
}

std::uint32_t receiveTimeoutMsOf(int descriptor)
{
    DWORD timeoutMs = 0;
    if (!readOption(descriptor, SO_RCVTIMEO, timeoutMs))
        throw std::runtime_error("no socket");
    return timeoutMs;
}

void breakSocket(int descriptor)
{
    ::closesocket(static_cast<SOCKET>(descriptor));
}
