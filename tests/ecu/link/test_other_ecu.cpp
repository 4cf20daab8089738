#include "ecu/link/other_ecu.h"
#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/PatientReceive.h"
#include "tests/support/ScriptedControlSocket.h"

#include <gtest/gtest.h>

namespace {

LoopbackEcu::Frame recordWithReceivePort(std::uint16_t port)
{
    return orv::encodeNetworkSettings({.receivePort = port});
}

TEST(OtherEcu, IsAskedThroughTheSameClientWhichKeepsItsOwn)
{
    const PatientReceive patience;
    LoopbackEcu own;
    LoopbackEcu other;
    own.answerAll(recordWithReceivePort(1));
    other.answerAll(recordWithReceivePort(2));
    orv::OrvCtrlSocket socket("127.0.0.1", own.port());
    orv::OrvCtrlClient client(&socket);
    orv::EcuNetworkSettings settings;

    ASSERT_TRUE(readNetworkSettingsAt("127.0.0.1", other.port(), client, settings));
    EXPECT_EQ(settings.receivePort, 2);
    EXPECT_TRUE(own.requests().empty());

    ASSERT_TRUE(client.readNetworkSettings(settings));
    EXPECT_EQ(settings.receivePort, 1);
}

TEST(OtherEcu, FailureIsTheClientsAndLeavesItItsOwn)
{
    const PatientReceive patience;
    LoopbackEcu own;
    LoopbackEcu other;
    other.answerAll({}, 5);
    orv::OrvCtrlSocket socket("127.0.0.1", own.port());
    orv::OrvCtrlClient client(&socket);
    orv::EcuNetworkSettings settings;

    EXPECT_FALSE(readNetworkSettingsAt("127.0.0.1", other.port(), client, settings));
    EXPECT_EQ(client.lastError(), "ECU error (5)");
    EXPECT_EQ(client.socket(), &socket);
}

TEST(OtherEcu, ClientWithoutANetworkAsksTheOneItHas)
{
    LoopbackEcu other;
    ScriptedControlSocket socket;
    socket.queueReply(3, recordWithReceivePort(3));
    orv::OrvCtrlClient client(&socket);
    orv::EcuNetworkSettings settings;

    ASSERT_TRUE(readNetworkSettingsAt("127.0.0.1", other.port(), client, settings));
    EXPECT_EQ(settings.receivePort, 3);
    EXPECT_TRUE(other.requests().empty());
}

} // namespace
