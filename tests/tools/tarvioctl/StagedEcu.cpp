#include "tests/tools/tarvioctl/StagedEcu.h"

#include "ecu/recording/RecordingSweep.h"
#include "tools/ecu_simulator/Scene.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr std::uint16_t kSender = 1U << 3;
constexpr std::uint64_t kSeed = 1;
constexpr std::uint8_t kRefusal = 7;
constexpr std::chrono::seconds kPatience{30};

constexpr auto kThresholds = static_cast<std::uint8_t>(orv::ControlCommand::Thresholds);
constexpr auto kForThisRun = static_cast<std::uint8_t>(orv::ControlAccess::WriteTemporarily);

bool hasAccess(const orv::ControlRequest& request, orv::ControlAccess access)
{
    return !request.payload.empty() && request.payload[0] == static_cast<std::uint8_t>(access);
}

} // namespace

// One sensor alone sends, so that each measurement is one of the wall.
StagedEcu::StagedEcu()
    : mCommands(mState, {}), mEchoes(ecusim::Scene(ecusim::SceneKind::Wall), 0, kSeed)
{
    mState.sequence = {{.valid = true, .activeMask = kSender, .passiveMask = kSender}};
    mEcu.setHandler([this](const orv::ControlRequest& request) { return answer(request); });
}

StagedEcu::~StagedEcu()
{
    release();
}

void StagedEcu::holdAt(Choice choice)
{
    const std::scoped_lock lock(mMutex);
    mHeldRequest = std::move(choice);
}

bool StagedEcu::waitUntilHeld()
{
    std::unique_lock lock(mMutex);
    return mChange.wait_for(lock, kPatience, [this] { return mIsHeld; });
}

void StagedEcu::release()
{
    const std::scoped_lock lock(mMutex);
    mIsReleased = true;
    mChange.notify_all();
}

void StagedEcu::measureInto(std::uint16_t port, int lastWriting)
{
    const std::scoped_lock lock(mMutex);
    mStreamPort = port;
    mLastMeasured = lastWriting;
}

void StagedEcu::refuseFrom(int writing)
{
    const std::scoped_lock lock(mMutex);
    mFirstRefused = writing;
}

int StagedEcu::writingsForThisRun(std::uint8_t sensor) const
{
    const auto requests = mEcu.requests();
    return static_cast<int>(std::ranges::count_if(requests, [sensor](const auto& request) {
        return request.code == kThresholds && request.payload.size() > 1 &&
               request.payload[0] == kForThisRun && request.payload[1] == sensor;
    }));
}

StagedEcu::Frame StagedEcu::answer(const orv::ControlRequest& request)
{
    std::unique_lock lock(mMutex);
    holdBack(request, lock);
    if (request.code == kThresholds && !isReading(request))
        return answerThresholds(request);
    const auto command = static_cast<orv::ControlCommand>(request.code);
    return mCommands.answer(orv::encodeRequest(command, request.payload), 0).reply;
}

void StagedEcu::holdBack(const orv::ControlRequest& request, std::unique_lock<std::mutex>& lock)
{
    if (mIsHeld || !mHeldRequest || !mHeldRequest(request))
        return;
    mIsHeld = true;
    mChange.notify_all();
    mChange.wait(lock, [this] { return mIsReleased; });
}

StagedEcu::Frame StagedEcu::answerThresholds(const orv::ControlRequest& request)
{
    if (++mWritings >= mFirstRefused)
        return orv::encodeReply(request.code, {}, kRefusal);
    Frame reply =
        mCommands.answer(orv::encodeRequest(orv::ControlCommand::Thresholds, request.payload), 0)
            .reply;
    // A recording takes one more than it writes to begin, and some at its last position.
    if (mStreamPort != 0 && mWritings <= mLastMeasured)
        measure(mWritings == 1 ? 1 + static_cast<int>(kTailResults) : 1);
    return reply;
}

void StagedEcu::measure(int count)
{
    for (int left = count; left > 0; --left)
        mEcu.stream(mStreamPort,
                    orv::encodeMeasurementResult(mEchoes.measure(mState, mMeasurements++, 0)));
}

bool isReading(const orv::ControlRequest& request)
{
    return hasAccess(request, orv::ControlAccess::Read);
}

bool isWriting(const orv::ControlRequest& request)
{
    return hasAccess(request, orv::ControlAccess::Write) ||
           hasAccess(request, orv::ControlAccess::WriteTemporarily);
}
