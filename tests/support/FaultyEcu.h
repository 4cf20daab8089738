#pragma once

#include "orv_decoder/ControlFrame.h"
#include "tests/support/LoopbackPeer.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/EcuState.h"

#include <cstdint>
#include <optional>
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

/// A simulated ECU on 127.0.0.1 that spoils one exchange according to a plan. It answers when it is
/// told that the program waits for a reply, on the same thread.
class FaultyEcu
{
public:
    FaultyEcu();

    std::uint16_t port() const { return mPort; }
    ecusim::EcuState& state() { return mState; }

    void expect(const FaultPlan& plan);

    /// Ends a calibration that is under way.
    void settle();

    /// What the program waits for comes now or never.
    void serveWaiting();

    /// Sends what came too late for the exchange that it belongs to.
    void sendLateReply();

    /// All that was received since the plan is known, probes only where they count.
    const std::vector<orv::ControlRequest>& requests() const { return mRequests; }

    /// Sends a live datagram to a port of 127.0.0.1.
    void stream(std::uint16_t port, const std::vector<std::uint8_t>& datagram);

private:
    using Frame = std::vector<std::uint8_t>;

    void answer(const Frame& frame);
    void spoil(const Frame& frame);
    void prepare();
    void restart();
    void send(const Frame& reply);
    void sendTwice(const Frame& reply);
    void sendAfterWrongCode(const Frame& reply);
    Frame execute(const Frame& frame);
    Frame refusal(const Frame& frame) const;
    Frame staleReply();

    ecusim::EcuState mState = ecusim::defaultEcuState();
    ecusim::EcuCommands mCommands;
    std::optional<LoopbackPeer> mPeer{std::in_place};
    LoopbackPeer mOtherPeer;
    std::uint16_t mPort;
    std::uint16_t mProgramPort = 0;
    std::optional<FaultPlan> mPlan;
    std::size_t mMissedExchanges = 0;
    std::optional<Frame> mLateReply;
    std::vector<orv::ControlRequest> mRequests;
};
