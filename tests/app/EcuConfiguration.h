#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"

#include <array>
#include <cstdint>
#include <vector>

/// Everything that the tool reads from an ECU and writes to it in one go.
struct EcuConfiguration
{
    std::vector<orv::MseqStep> sequence;
    std::array<orv::SensorThreshold, 12> thresholds{};
    orv::SensorMountPositions positions{};

    /// A configuration that differs in every item from that of another seed.
    static EcuConfiguration ofSeed(int seed);

    bool operator==(const EcuConfiguration&) const = default;
};

/// A control channel of the test's own to the ECU that the window talks to.
class EcuAccess
{
public:
    explicit EcuAccess(std::uint16_t port) : mSocket("127.0.0.1", port), mClient(&mSocket) {}

    /// False when any part failed.
    bool write(const EcuConfiguration& configuration);
    /// What could not be read stays empty.
    EcuConfiguration read();

    orv::OrvCtrlClient& client() { return mClient; }

private:
    orv::OrvCtrlSocket mSocket;
    orv::OrvCtrlClient mClient;
};
