#include "tests/support/TestClock.h"

#include <atomic>
#include <cstdint>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr std::int64_t kRunning = -1;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

// Where time stands, in nanoseconds.
std::atomic<std::int64_t> stoppedAt = kRunning;

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

TestClock::TestClock()
{
    stoppedAt = systemNanoseconds();
}

TestClock::~TestClock()
{
    stoppedAt = kRunning;
}

void TestClock::advance(std::chrono::milliseconds time)
{
    stoppedAt += std::chrono::nanoseconds(time).count();
}
