#include "tests/support/FaultyEcu.h"

#include <chrono>
#include <utility>

namespace {

using Frame = std::vector<std::uint8_t>;

constexpr std::uint8_t kProbeCode = 2;
constexpr std::uint8_t kCalibrationAborted = 0xFF;

// The calibration is over by the time that the program asks for the first time.
const ecusim::EcuBehaviour kBehaviour{.calibrationMs = 200, .forcedStatus = {}};

std::int64_t nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

FaultyEcu::FaultyEcu() : mCommands(mState, kBehaviour), mPort(mPeer->port()) {}

void FaultyEcu::expect(const FaultPlan& plan)
{
    mPlan = plan;
    mRequests.clear();
    mLateReply.reset();
    if (plan.exchange == 0)
        prepare();
}

void FaultyEcu::serveWaiting()
{
    if (mPeer) {
        while (const auto frame = mPeer ? mPeer->receive(0) : std::nullopt)
            answer(*frame);
    } else if (--mMissedExchanges == 0) {
        mPeer.emplace(mPort);
        mPlan.reset();
    }
}

void FaultyEcu::settle()
{
    mCommands.advance(nowMs() + kBehaviour.calibrationMs);
}

void FaultyEcu::sendLateReply()
{
    if (const auto reply = std::exchange(mLateReply, std::nullopt))
        send(*reply);
}

void FaultyEcu::stream(std::uint16_t port, const Frame& datagram)
{
    mOtherPeer.sendTo(port, datagram);
}

void FaultyEcu::answer(const Frame& frame)
{
    mProgramPort = mPeer->lastSenderPort();
    const auto request = orv::decodeRequest(frame);
    const bool counts = request && ((mPlan && mPlan->isProbe) || request->code != kProbeCode);
    if (counts)
        mRequests.push_back(*request);
    const bool isHit = counts && mPlan && mRequests.size() == mPlan->exchange + 1;
    if (isHit) {
        spoil(frame);
        return;
    }
    if (mPlan && mPlan->fault == Fault::ReplyInNextExchange)
        sendLateReply();
    send(execute(frame));
    if (counts && mPlan && mRequests.size() == mPlan->exchange)
        prepare();
}

void FaultyEcu::spoil(const Frame& frame)
{
    switch (mPlan->fault) {
    case Fault::ReplyAfterTimeout:
    case Fault::ReplyInNextExchange:
        mLateReply = execute(frame);
        break;
    case Fault::ReplyFromAnotherPort:
        mOtherPeer.sendTo(mProgramPort, execute(frame));
        break;
    case Fault::Refused:
        send(refusal(frame));
        break;
    case Fault::StaleReply:
        send(bringsData(mRequests.back()) ? execute(frame) : refusal(frame));
        break;
    case Fault::Restarted:
        restart();
        break;
    default:
        for (const Frame& reply : spoiledReplies(*mPlan, execute(frame)))
            send(reply);
        break;
    }
}

// What has to be so before the request that is hit.
void FaultyEcu::prepare()
{
    if (mPlan->fault == Fault::StaleReply && mProgramPort != 0)
        send(staleReply());
    if (mPlan->fault == Fault::Gone) {
        mPeer.reset();
        mMissedExchanges = mPlan->exchanges;
    }
}

void FaultyEcu::restart()
{
    mPeer.reset();
    mPeer.emplace(mPort);
    mState.thresholds = mState.keptThresholds;
}

void FaultyEcu::send(const Frame& reply)
{
    mPeer->sendTo(mProgramPort, reply);
}

Frame FaultyEcu::refusal(const Frame& frame) const
{
    return orv::encodeReply(frame.front(), {}, mPlan->status);
}

// The success of an earlier write, or data that are not those of today.
Frame FaultyEcu::staleReply()
{
    const auto& [code, payload] = mPlan->request;
    if (!bringsData(mPlan->request))
        return orv::encodeReply(code, {}, 0);
    const auto command = static_cast<orv::ControlCommand>(code);
    if (command == orv::ControlCommand::AutoCalibration)
        return orv::encodeReply(code, std::vector<std::uint8_t>{kCalibrationAborted}, 0);
    return withOtherData(execute(orv::encodeRequest(command, payload)));
}

Frame FaultyEcu::execute(const Frame& frame)
{
    return mCommands.answer(frame, nowMs()).reply;
}
