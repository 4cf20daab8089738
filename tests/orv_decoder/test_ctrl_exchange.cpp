#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/LoopbackEcu.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::FirmwareVersion;

// The client on its real socket, and an ECU that answers from its own thread.
class CtrlExchange : public testing::Test
{
protected:
    CtrlExchange() { mSocket.setReceiveTimeout(10000); }

    LoopbackEcu mEcu;
    orv::OrvCtrlSocket mSocket{"127.0.0.1", mEcu.port()};
    orv::OrvCtrlClient mClient{&mSocket};
    FirmwareVersion mVersion;
};

TEST_F(CtrlExchange, reachesTheEcuAndBringsItsAnswer)
{
    mEcu.answerAll({2, 14, 0});
    EXPECT_TRUE(mClient.readFirmwareVersion(mVersion)) << mClient.lastError();
    EXPECT_EQ(mVersion.text(), "2.14.0");
    ASSERT_EQ(mEcu.requests().size(), 1U);
    EXPECT_EQ(mEcu.requests()[0].code, 2);
    EXPECT_TRUE(mEcu.requests()[0].payload.empty());
}

TEST_F(CtrlExchange, carriesTheLargestRecordsBothWays)
{
    orv::SensorMountPositions sent;
    sent[11].roll = 4711;
    mEcu.answerAll({});
    ASSERT_TRUE(mClient.writeSensorPositions(sent)) << mClient.lastError();
    Bytes received = mEcu.requests()[0].payload;
    ASSERT_EQ(received.size(), 145U);
    received.erase(received.begin());

    mEcu.answerAll(received);
    orv::SensorMountPositions read;
    EXPECT_TRUE(mClient.readSensorPositions(read)) << mClient.lastError();
    EXPECT_EQ(read, sent);
}

TEST_F(CtrlExchange, reportsASilentEcu)
{
    mSocket.setReceiveTimeout(2);
    EXPECT_FALSE(mClient.readFirmwareVersion(mVersion));
    EXPECT_EQ(mClient.lastError(), "socket: receive timeout");
}

TEST_F(CtrlExchange, reportsARequestThatCannotBeSent)
{
    mSocket.reconnect("no address", 0);
    EXPECT_FALSE(mClient.readFirmwareVersion(mVersion));
    EXPECT_EQ(mClient.lastError(), "socket: send error");
}

TEST_F(CtrlExchange, reportsTheStatusOfTheEcu)
{
    mEcu.answerAll({}, 5);
    EXPECT_FALSE(mClient.readFirmwareVersion(mVersion));
    EXPECT_EQ(mClient.lastError(), "ECU error (5)");
}

TEST_F(CtrlExchange, worksAgainOnceTheEcuIsBack)
{
    mSocket.setReceiveTimeout(2);
    ASSERT_FALSE(mClient.readFirmwareVersion(mVersion));
    mSocket.setReceiveTimeout(10000);
    mEcu.answerAll({3, 0, 1});
    EXPECT_TRUE(mClient.readFirmwareVersion(mVersion)) << mClient.lastError();
    EXPECT_EQ(mVersion.text(), "3.0.1");
}

} // namespace
