#pragma once

#include <chrono>

/// The program's monotonic clock in the hand of a test: while an object of this class lives, time
/// stands still but for advance(). Timers of Qt and of the standard library follow it; what the
/// system itself waits for (a socket's time-out, a sleep) does not.
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
};
