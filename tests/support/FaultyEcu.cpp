#include "tests/support/FaultyEcu.h"

#include "orv_decoder/Crc8.h"

#include <chrono>
#include <span>
#include <utility>

namespace {

using Frame = std::vector<std::uint8_t>;

constexpr std::uint8_t kProbeCode = 2;
constexpr std::uint8_t kCalibrationAborted = 0xFF;
constexpr std::size_t kSurplusBytes = 1500;

// The calibration is over by the time that the program asks for the first time.
const ecusim::EcuBehaviour kBehaviour{.calibrationMs = 200, .forcedStatus = {}};

std::int64_t nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

Frame withChecksum(Frame bytes)
{
    bytes.push_back(orv::crc8(bytes));
    return bytes;
}

Frame withWrongBit(Frame frame, std::uint64_t noise)
{
    const std::uint64_t bit = noise % (8 * frame.size());
    frame[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
    return frame;
}

Frame withWrongCode(Frame frame, std::uint64_t noise)
{
    frame.pop_back();
    frame.front() = static_cast<std::uint8_t>(frame.front() + 1 + noise % 255);
    return withChecksum(std::move(frame));
}

// One in 256 cut frames ends in a byte that happens to be its checksum: this is not what is meant.
Frame cutTo(Frame frame, std::size_t length)
{
    frame.resize(length);
    if (!frame.empty() && orv::crc8(std::span(frame).first(length - 1)) == frame.back())
        frame.back() ^= 1;
    return frame;
}

Frame shortenedTo(Frame frame, std::size_t length)
{
    frame.resize(length - 1);
    if (length > 2)
        frame.back() = 0; // the status
    return withChecksum(std::move(frame));
}

Frame withMorePayload(Frame frame, std::size_t count)
{
    frame.insert(frame.end() - 2, count, 0x55);
    frame.pop_back();
    return withChecksum(std::move(frame));
}

// Count or sensor stay as they are, and so does a threshold scale.
Frame withOtherData(Frame frame)
{
    constexpr std::size_t kFirst = 2;
    constexpr std::size_t kBehind = 3;
    for (std::size_t i = kFirst; i + kBehind < frame.size(); ++i)
        frame[i] ^= 0x11;
    frame.pop_back();
    return withChecksum(std::move(frame));
}

} // namespace

bool bringsData(const orv::ControlRequest& request)
{
    return !request.payload.empty() &&
           request.payload.front() == static_cast<std::uint8_t>(orv::ControlAccess::Read);
}

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
    case Fault::ReplyDropped:
        execute(frame);
        break;
    case Fault::ReplyAfterTimeout:
    case Fault::ReplyInNextExchange:
        mLateReply = execute(frame);
        break;
    case Fault::ReplyTwice:
        sendTwice(execute(frame));
        break;
    case Fault::ReplyFromAnotherPort:
        mOtherPeer.sendTo(mProgramPort, execute(frame));
        break;
    case Fault::ChecksumDamaged:
        send(withWrongBit(execute(frame), mPlan->noise));
        break;
    case Fault::WrongCode:
        send(withWrongCode(execute(frame), mPlan->noise));
        break;
    case Fault::WrongCodeFirst:
        sendAfterWrongCode(execute(frame));
        break;
    case Fault::Refused:
        send(refusal(frame));
        break;
    case Fault::Cut:
        send(cutTo(execute(frame), mPlan->length));
        break;
    case Fault::ShortPayload:
        send(shortenedTo(execute(frame), mPlan->length));
        break;
    case Fault::PayloadByteTooMany:
        send(withMorePayload(execute(frame), 1));
        break;
    case Fault::LongerThanADatagram:
        send(withMorePayload(execute(frame), kSurplusBytes));
        break;
    case Fault::StaleReply:
        send(bringsData(mRequests.back()) ? execute(frame) : refusal(frame));
        break;
    case Fault::Restarted:
        restart();
        break;
    case Fault::Gone: // before the request could come
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

void FaultyEcu::sendTwice(const Frame& reply)
{
    send(reply);
    send(reply);
}

void FaultyEcu::sendAfterWrongCode(const Frame& reply)
{
    send(withWrongCode(reply, mPlan->noise));
    send(reply);
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
