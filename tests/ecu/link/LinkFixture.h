#pragma once

#include "ecu/link/EcuLink.h"
#include "ecu/link/LinkSettings.h"
#include "ecu/link/LinkSupervisor.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/TestClock.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>

/// A supervisor with an ECU on loopback, and the time in the hand of the test. A datagram that was
/// sent over loopback is there at once.
class LinkFixture
{
public:
    LinkFixture()
    {
        clock.whileReceiving([this] { ecu.serveWaiting(); });
        connectLink();
    }

    /// Makes link and supervisor anew, on these ports.
    void connectLink()
    {
        supervisor.reset();
        link.reset(); // gives its ports back
        link = std::make_unique<EcuLink>(network());
        supervisor = std::make_unique<LinkSupervisor>(*link);
    }

    LinkSettings network() const { return {"127.0.0.1", ecu.port(), receivePort, freespacePort}; }

    void answer()
    {
        ecu.setHandler([](const orv::ControlRequest& request) {
            return orv::encodeReply(request.code, LoopbackEcu::Frame{2, 14, 0}, 0);
        });
    }

    int probes() const
    {
        const auto requests = ecu.requests();
        return static_cast<int>(std::ranges::count(requests, 2, &orv::ControlRequest::code));
    }

    void streamMeasurement(std::uint8_t word)
    {
        ecu.stream(receivePort, {word, 0, 0, 0, 1, 0, 2, 0, 0});
    }

    void streamFreespace() { ecu.stream(freespacePort, {0}); }

    /// Lets time go by and runs what is due then.
    void pass(int milliseconds)
    {
        clock.advance(std::chrono::milliseconds(milliseconds));
        QCoreApplication::processEvents();
    }

    LoopbackEcu ecu{LoopbackEcu::Serving::OnDemand};
    std::uint16_t receivePort = freeUdpPort();
    std::uint16_t freespacePort = freeUdpPort();
    TestClock clock;
    std::unique_ptr<EcuLink> link;
    std::unique_ptr<LinkSupervisor> supervisor;
};
