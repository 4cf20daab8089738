#include "tests/support/FaultPlan.h"

#include "orv_decoder/Crc8.h"

#include <span>
#include <utility>

namespace {

using Frame = std::vector<std::uint8_t>;

constexpr std::size_t kSurplusBytes = 1500;

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

} // namespace

bool bringsData(const orv::ControlRequest& request)
{
    return !request.payload.empty() &&
           request.payload.front() == static_cast<std::uint8_t>(orv::ControlAccess::Read);
}

std::vector<Frame> spoiledReplies(const FaultPlan& plan, const Frame& reply)
{
    switch (plan.fault) {
    case Fault::ReplyTwice:
        return {reply, reply};
    case Fault::ChecksumDamaged:
        return {withWrongBit(reply, plan.noise)};
    case Fault::WrongCode:
        return {withWrongCode(reply, plan.noise)};
    case Fault::WrongCodeFirst:
        return {withWrongCode(reply, plan.noise), reply};
    case Fault::Cut:
        return {cutTo(reply, plan.length)};
    case Fault::ShortPayload:
        return {shortenedTo(reply, plan.length)};
    case Fault::PayloadByteTooMany:
        return {withMorePayload(reply, 1)};
    case Fault::LongerThanADatagram:
        return {withMorePayload(reply, kSurplusBytes)};
    default:
        return {};
    }
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
