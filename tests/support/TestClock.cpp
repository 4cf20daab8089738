#include "tests/support/TestClock.h"

#include "tests/support/PatientReceive.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::int64_t kRunning = -1;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

// Where time stands, in nanoseconds.
std::atomic<std::int64_t> stoppedAt = kRunning;

// Only one thread lives by the clock: those of the peers really wait.
std::atomic<std::thread::id> owner;

// How many objects of this thread want it to be patient, and what they bound.
thread_local int patientReceives = 0;
constexpr std::int64_t kShortestReplyTime = 100 * kNanosecondsPerMillisecond;
constexpr std::int64_t kPatience = 30 * kNanosecondsPerSecond;

bool isStoppedHere()
{
    return stoppedAt != kRunning && owner.load() == std::this_thread::get_id();
}

std::function<void()>& peersOfOwner()
{
    static std::function<void()> peers;
    return peers;
}

std::int64_t receiveTimeoutNanoseconds(int handle)
{
    timeval timeout{};
    socklen_t size = sizeof timeout;
    ::getsockopt(handle, SOL_SOCKET, SO_RCVTIMEO, &timeout, &size);
    return timeout.tv_sec * kNanosecondsPerSecond + timeout.tv_usec * std::int64_t{1000};
}

std::int64_t systemNanoseconds()
{
    timespec now{};
    ::syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
}

ssize_t receivePatiently(int handle, const auto& receive)
{
    const bool isPatient =
        patientReceives > 0 && receiveTimeoutNanoseconds(handle) >= kShortestReplyTime;
    const std::int64_t end = systemNanoseconds() + (isPatient ? kPatience : 0);
    auto received = receive(0);
    while (received < 0 && errno == EAGAIN && systemNanoseconds() < end)
        received = receive(0);
    return received;
}

} // namespace

// Taken by the linker in the place of the system's own, for the shared libraries too.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept
{
    const std::int64_t stopped = stoppedAt;
    if (clock != CLOCK_MONOTONIC || stopped == kRunning)
        return static_cast<int>(::syscall(SYS_clock_gettime, clock, now));
    now->tv_sec = stopped / kNanosecondsPerSecond;
    now->tv_nsec = stopped % kNanosecondsPerSecond;
    return 0;
}

extern "C" int poll(pollfd* entries, nfds_t count, int timeoutMs)
{
    timespec timeout{.tv_sec = timeoutMs / 1000, .tv_nsec = timeoutMs % 1000 * 1'000'000L};
    if (isStoppedHere())
        timeout = {};
    const auto ready = static_cast<int>(
        ::syscall(SYS_ppoll, entries, count, timeoutMs < 0 && !isStoppedHere() ? nullptr : &timeout,
                  nullptr, 0));
    if (ready == 0 && timeoutMs > 0 && isStoppedHere())
        stoppedAt += timeoutMs * kNanosecondsPerMillisecond;
    return ready;
}

extern "C" int nanosleep(const timespec* time, timespec* remaining)
{
    if (!isStoppedHere())
        return static_cast<int>(::syscall(SYS_nanosleep, time, remaining));
    stoppedAt += time->tv_sec * kNanosecondsPerSecond + time->tv_nsec;
    return 0;
}

extern "C" ssize_t recvfrom(int handle, void* buffer, size_t size, int flags, sockaddr* sender,
                            socklen_t* senderSize)
{
    const auto receive = [=](int moreFlags) {
        return ::syscall(SYS_recvfrom, handle, buffer, size, flags | moreFlags, sender, senderSize);
    };
    if (!isStoppedHere() || !peersOfOwner())
        return receivePatiently(handle, receive);
    if (const auto received = receive(MSG_DONTWAIT); received >= 0 || errno != EAGAIN)
        return received;
    peersOfOwner()();
    const auto received = receive(MSG_DONTWAIT);
    if (received < 0 && errno == EAGAIN)
        stoppedAt += receiveTimeoutNanoseconds(handle);
    return received;
}

TestClock::TestClock()
{
    owner = std::this_thread::get_id();
    stoppedAt = systemNanoseconds();
}

TestClock::~TestClock()
{
    stoppedAt = kRunning;
    peersOfOwner() = {};
}

void TestClock::whileReceiving(std::function<void()> peers)
{
    peersOfOwner() = std::move(peers);
}

std::chrono::milliseconds TestClock::now() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::nanoseconds(stoppedAt));
}

void TestClock::advance(std::chrono::milliseconds time)
{
    stoppedAt += std::chrono::nanoseconds(time).count();
}

PatientReceive::PatientReceive()
{
    ++patientReceives;
}

PatientReceive::~PatientReceive()
{
    --patientReceives;
}
