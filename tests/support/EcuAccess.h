#pragma once

#include "ecu/configuration/EcuConfiguration.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/patience.h"

#include <cstdint>

/// A configuration that differs in every item from that of another seed.
EcuConfiguration configurationOfSeed(int seed);

/// A control channel of the test's own to the ECU that the window talks to.
class EcuAccess
{
public:
    explicit EcuAccess(std::uint16_t port) : mSocket("127.0.0.1", port), mClient(&mSocket)
    {
        mSocket.setReceiveTimeout(kAnswerPatienceMs);
    }

    /// False when any part failed.
    bool write(const EcuConfiguration& configuration);
    /// What could not be read stays empty.
    EcuConfiguration read();

    orv::OrvCtrlClient& client() { return mClient; }

private:
    orv::OrvCtrlSocket mSocket;
    orv::OrvCtrlClient mClient;
};
