#pragma once

#include "tests/support/LoopbackEcu.h"
#include "tests/support/LoopbackPeer.h"
#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/EcuState.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <limits>
#include <mutex>

/// A simulated ECU that stands before a wall, two metres away, and answers and measures when the
/// test has it so: what a program sees of it does not depend on how fast anybody is. It lives on a
/// thread of its own; what it shall do is said before the program starts.
class StagedEcu
{
public:
    using Choice = std::function<bool(const orv::ControlRequest&)>;

    static constexpr int kNever = std::numeric_limits<int>::max();

    StagedEcu();
    ~StagedEcu();

    std::uint16_t port() const { return mEcu.port(); }

    /// The first request that is chosen is answered once release() is called.
    void holdAt(Choice choice);

    /// False when no such request has come for half a minute.
    bool waitUntilHeld();
    void release();

    /// Measures into a port of 127.0.0.1, and fast enough for a recording of one sample a step:
    /// when its answer to a writing of thresholds arrives, so has the measurement that followed it.
    /// @param lastWriting after which it still does, counted from 1
    void measureInto(std::uint16_t port, int lastWriting = kNever);

    /// Refuses thresholds from this writing on, counted from 1.
    void refuseFrom(int writing);

    /// How often thresholds were written to this sensor for this run only.
    int writingsForThisRun(std::uint8_t sensor) const;

private:
    using Frame = LoopbackEcu::Frame;

    Frame answer(const orv::ControlRequest& request);
    void holdBack(const orv::ControlRequest& request, std::unique_lock<std::mutex>& lock);
    Frame answerThresholds(const orv::ControlRequest& request);
    void measure(int count);

    std::mutex mMutex; // of all that follows but for the last
    std::condition_variable mChange;
    Choice mHeldRequest;
    bool mIsHeld = false;
    bool mIsReleased = false;

    ecusim::EcuState mState = ecusim::defaultEcuState();
    ecusim::EcuCommands mCommands;
    ecusim::Echoes mEchoes;
    std::uint16_t mStreamPort = 0;
    int mLastMeasured = kNever;
    int mFirstRefused = kNever;
    int mWritings = 0;
    std::uint32_t mMeasurements = 0;
    LoopbackEcu mEcu; // last: its thread ends first
};

/// Choices for StagedEcu::holdAt().
bool isReading(const orv::ControlRequest& request);
bool isWriting(const orv::ControlRequest& request);
