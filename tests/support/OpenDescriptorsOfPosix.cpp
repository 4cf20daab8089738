#include "tests/support/OpenDescriptors.h"

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

std::set<int> openDescriptors()
{
    std::set<int> listed;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        listed.insert(std::stoi(entry.path().filename().string()));
    // The listing held a descriptor of its own, which is closed by now.
    std::erase_if(listed, [](int descriptor) { return ::fcntl(descriptor, F_GETFD) == -1; });
    return listed;
}

std::uint32_t receiveTimeoutMsOf(int descriptor)
{
    timeval value{};
    socklen_t size = sizeof value;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &value, &size) != 0)
        throw std::runtime_error("no socket");
    return static_cast<std::uint32_t>(value.tv_sec * 1000 + (value.tv_usec + 999) / 1000);
}

void breakSocket(int descriptor)
{
    const int other = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(other, descriptor);
    ::close(other);
}
