#pragma once

#include <chrono>
#include <functional>

/// The program's monotonic clock in the hand of a test: while an object of this class lives, time
/// stands still but for advance(). Timers of Qt and of the standard library follow it. A sleep of
/// the thread that made it, or its wait in poll() for what is not there yet, takes no time and
/// advances the clock by what it would have taken; so does a socket's own time-out once
/// whileReceiving() has told who could answer meanwhile.
///
/// One at a time. Conditions that wait with a time-out (QTRY_VERIFY) never time out meanwhile.
class TestClock
{
public:
    TestClock();
    ~TestClock();
    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;

    void advance(std::chrono::milliseconds time);
    std::chrono::milliseconds now() const;

    /// Runs `peers` on the owner's thread when a receive of it finds nothing. What they have not
    /// sent by then never comes before the time-out.
    void whileReceiving(std::function<void()> peers);
};
