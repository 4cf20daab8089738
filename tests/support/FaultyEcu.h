#pragma once

#include "orv_decoder/ControlFrame.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/LoopbackPeer.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/EcuState.h"

#include <cstdint>
#include <optional>
#include <vector>

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
