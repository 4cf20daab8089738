#include "tests/support/TestClock.h"

#include <atomic>
#include <cstdint>
#include <ctime>
#include <poll.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::int64_t kRunning = -1;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

// Where time stands, in nanoseconds.
std::atomic<std::int64_t> stoppedAt = kRunning;

// Only one thread lives by the clock: those of the peers really wait.
std::atomic<std::thread::id> owner;

bool isStoppedHere()
{
    return stoppedAt != kRunning && owner.load() == std::this_thread::get_id();
}

std::int64_t systemNanoseconds()
{
    timespec now{};
    ::syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
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

TestClock::TestClock()
{
    owner = std::this_thread::get_id();
    stoppedAt = systemNanoseconds();
}

TestClock::~TestClock()
{
    stoppedAt = kRunning;
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
