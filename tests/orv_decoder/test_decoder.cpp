#include "orv_decoder/OrvDecoder.h"
#include "orv_decoder/OrvUdpSocket.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/ScriptedStreamSocket.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvDecoder;
using orv::OrvDecoderMode;
using orv::OrvFreespacePackage;
using orv::OrvMeasurementResult;

constexpr std::uint32_t kLongMs = 5000;

// A measurement with the word `number` and an echo at sensor 0.
Bytes measurement(std::uint8_t number)
{
    return {number, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 100, 0, 7, 0};
}

template<typename T>
class AnyDecoder : public testing::Test
{};

using BothRecords = testing::Types<OrvMeasurementResult, OrvFreespacePackage>;
TYPED_TEST_SUITE(AnyDecoder, BothRecords);

TYPED_TEST(AnyDecoder, refusesANullSocketInBothModes)
{
    for (const auto mode : {OrvDecoderMode::Threaded, OrvDecoderMode::Synchronous}) {
        try {
            const OrvDecoder<TypeParam> decoder(nullptr, mode);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "Invalid socket pointer");
        }
    }
}

TYPED_TEST(AnyDecoder, opensItsSocketAndHasNoErrorAtFirst)
{
    ScriptedStreamSocket socket;
    const OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    EXPECT_EQ(socket.openCount(), 1);
    EXPECT_EQ(decoder.lastError(), "");
    EXPECT_TRUE(socket.timeouts().empty());
}

TYPED_TEST(AnyDecoder, waitsOnTheSocketAsLongAsItIsTold)
{
    ScriptedStreamSocket socket;
    OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    TypeParam record;
    EXPECT_FALSE(decoder.take(record, 10));
    EXPECT_FALSE(decoder.take(record, 1));
    EXPECT_EQ(socket.timeouts(), (std::vector<std::uint32_t>{10, 1}));
    EXPECT_EQ(decoder.lastError(), "receive error");
}

TYPED_TEST(AnyDecoder, dropsADatagramThatIsNoneAndReadsTheNext)
{
    ScriptedStreamSocket socket;
    OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    socket.queue({1, 2, 3});
    socket.queue(Bytes(9));
    TypeParam record;
    EXPECT_FALSE(decoder.take(record, 1));
    EXPECT_EQ(decoder.lastError(), "wrong datagram format");
    EXPECT_TRUE(decoder.take(record, 1));
    EXPECT_TRUE(record.valid);
    EXPECT_EQ(decoder.lastError(), "wrong datagram format");
}

TYPED_TEST(AnyDecoder, quietPortEndsInReceiveError)
{
    orv::OrvUdpSocket socket(freeUdpPort());
    OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    TypeParam record;
    EXPECT_FALSE(decoder.take(record, 10));
    EXPECT_EQ(decoder.lastError(), "receive error");
}

TYPED_TEST(AnyDecoder, portThatCannotBeBoundShowsItsReason)
{
    const LoopbackPeer other;
    orv::OrvUdpSocket socket(other.port());
    OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    TypeParam record;
    EXPECT_FALSE(decoder.take(record, 10));
    EXPECT_EQ(decoder.lastError(), "Can't bind socket");
}

TYPED_TEST(AnyDecoder, drainEndsAtTheFirstEmptyWait)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<TypeParam> decoder(&socket, OrvDecoderMode::Synchronous);
    LoopbackPeer ecu;
    for (int i = 0; i < 5; ++i)
        ecu.sendTo(port, Bytes(9));
    TypeParam record;
    int taken = 0;
    while (decoder.take(record, 1))
        ++taken;
    EXPECT_EQ(taken, 5);
}

TEST(MeasurementDecoder, handsOutRecordsInArrivalOrder)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<OrvMeasurementResult> decoder(&socket, OrvDecoderMode::Synchronous);
    LoopbackPeer ecu;
    for (std::uint8_t number = 1; number <= 20; ++number)
        ecu.sendTo(port, measurement(number));
    for (std::uint8_t number = 1; number <= 20; ++number) {
        OrvMeasurementResult result;
        ASSERT_TRUE(decoder.take(result, kLongMs));
        EXPECT_EQ(result.measurementWord, number);
        EXPECT_EQ(result.echoes.at(0).front().timeOfFlight, 5120);
    }
}

TEST(MeasurementDecoder, dropsADatagramCutInsideItsHeader)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<OrvMeasurementResult> decoder(&socket, OrvDecoderMode::Synchronous);
    LoopbackPeer ecu;
    ecu.sendTo(port, Bytes(7));
    ecu.sendTo(port, measurement(2));
    OrvMeasurementResult result;
    EXPECT_FALSE(decoder.take(result, kLongMs));
    EXPECT_EQ(decoder.lastError(), "wrong datagram format");
    EXPECT_TRUE(decoder.take(result, kLongMs));
    EXPECT_EQ(result.measurementWord, 2U);
}

TEST(MeasurementDecoder, decodesTheFirst1440BytesOfALongerDatagram)
{
    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<OrvMeasurementResult> decoder(&socket, OrvDecoderMode::Synchronous);
    // Two blocks of 255 echoes: the second one ends behind the 1440th byte.
    Bytes datagram = {0, 0, 0, 0, 0, 0, 0, 0, 2};
    for (const std::uint8_t sensor : Bytes{3, 4}) {
        datagram.insert(datagram.end(), {sensor, 255});
        datagram.resize(datagram.size() + 255 * 4);
    }
    LoopbackPeer().sendTo(port, datagram);
    OrvMeasurementResult result;
    ASSERT_TRUE(decoder.take(result, kLongMs));
    EXPECT_EQ(result.echoes.count(3), 1U);
    EXPECT_EQ(result.echoes.count(4), 0U);
}

TEST(FreespaceDecoder, handsOutThePackageOfADatagram)
{
    orv::OrvFreespaceEntry entry;
    entry.valid = true;
    entry.sensorId = 7;
    entry.corners[3] = {-5, 6};
    const OrvFreespacePackage sent = {.valid = true, .entries = {entry}};

    const std::uint16_t port = freeUdpPort();
    orv::OrvUdpSocket socket(port);
    OrvDecoder<OrvFreespacePackage> decoder(&socket, OrvDecoderMode::Synchronous);
    LoopbackPeer().sendTo(port, orv::encodeFreespacePackage(sent));
    OrvFreespacePackage package;
    EXPECT_TRUE(decoder.take(package, kLongMs));
    EXPECT_EQ(package, sent);
}

TEST(FreespaceDecoder, dropsADatagramWhoseEntryIsCut)
{
    ScriptedStreamSocket socket;
    OrvDecoder<OrvFreespacePackage> decoder(&socket, OrvDecoderMode::Synchronous);
    socket.queue(Bytes(40, 1));
    OrvFreespacePackage package;
    EXPECT_FALSE(decoder.take(package, 1));
    EXPECT_EQ(decoder.lastError(), "wrong datagram format");
}

} // namespace
