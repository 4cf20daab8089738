#pragma once

#include <chrono>

/// The program's monotonic clock in the hand of a test: while an object of this class lives, time
/// stands still but for advance(). Timers of Qt and of the standard library follow it. A sleep of
/// the thread that made it, or its wait in poll() for what is not there yet, takes no time and
/// advances the clock by what it would have taken; a socket's own time-out still really passes.
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
};
