#pragma once

#include "orv_decoder/ControlFrame.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// What goes wrong with an exchange.
enum class Fault {
    ReplyDropped,
    ReplyAfterTimeout,   ///< it comes when it is sent by sendLateReply()
    ReplyInNextExchange, ///< it comes between the next request and its reply
    ReplyTwice,
    ReplyFromAnotherPort, ///< the answer itself
    ChecksumDamaged,      ///< one bit of the reply is wrong
    WrongCode,            ///< instead of the reply
    WrongCodeFirst,       ///< and then the reply
    Refused,              ///< with a status
    Cut,                  ///< to a length, the checksum does not fit
    ShortPayload,         ///< to a length of the whole frame, the checksum fits
    PayloadByteTooMany,   ///< the checksum fits
    LongerThanADatagram,  ///< of the protocol
    StaleReply,           ///< to an earlier request; a request that brings no data is refused then
    Restarted,            ///< between request and reply
    Gone,                 ///< nobody has the port: the system refuses the request
};

/// Which exchange goes wrong, and how.
struct FaultPlan
{
    Fault fault = Fault::ReplyDropped;
    std::size_t exchange = 0;    ///< counted from 0 on, from when the plan is known
    std::size_t exchanges = 1;   ///< that an ECU which is gone misses
    orv::ControlRequest request; ///< what a stale reply answers; its data do not matter
    bool isProbe = false;        ///< probes count, which they do not otherwise
    std::uint8_t status = 1;     ///< of a refusal
    std::size_t length = 0;      ///< of a frame that is too short
    std::uint64_t noise = 0;     ///< which bit is damaged, which code is the wrong one
};

/// False for writes and probes, whose replies all look alike.
bool bringsData(const orv::ControlRequest& request);

/// What is sent instead of a reply that was meant to be right.
std::vector<std::vector<std::uint8_t>> spoiledReplies(const FaultPlan& plan,
                                                      const std::vector<std::uint8_t>& reply);

/// A right reply to the same request whose data are others.
std::vector<std::uint8_t> withOtherData(std::vector<std::uint8_t> reply);
