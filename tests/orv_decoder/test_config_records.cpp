#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/OrvSensorPosition.h"
#include "orv_decoder/SensorMountPosition.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::EcuNetworkSettings;
using orv::MseqStep;
using orv::SensorMountPosition;

const Bytes kStepBytes = {0x01, 0x08, 0xFE, 0x07, 0x01, 0x00, 0x02, 0x01, 0x34, 0x12};
const MseqStep kStep = {.valid = true,
                        .activeMask = 0x0801,
                        .passiveMask = 0x07FE,
                        .modulation = 1,
                        .code = 0x0102,
                        .fifthValue = 0x1234};

TEST(MseqStep, encodesAndDecodesKnownBytes)
{
    EXPECT_EQ(orv::encodeStep(kStep), kStepBytes);
    EXPECT_EQ(orv::decodeStep(kStepBytes), kStep);
    EXPECT_TRUE(orv::decodeStep(kStepBytes).value().valid);
}

TEST(MseqStep, cutAtAnyLengthIsInvalid)
{
    for (std::size_t length = 0; length < kStepBytes.size(); ++length)
        EXPECT_FALSE(orv::decodeStep(std::span(kStepBytes).first(length))) << length;
}

TEST(MseqStep, isReadOffTheFront)
{
    Bytes bytes = kStepBytes;
    bytes.push_back(0xFF);
    EXPECT_EQ(orv::decodeStep(bytes), kStep);
}

TEST(MseqStep, shortFormNeedsTheTwoMasksAlone)
{
    const auto masks = orv::decodeStepMasks(std::span(kStepBytes).first(4));
    EXPECT_EQ(masks, (MseqStep{.activeMask = 0x0801, .passiveMask = 0x07FE}));
    EXPECT_TRUE(masks.value().valid);
    EXPECT_FALSE(orv::decodeStepMasks(std::span(kStepBytes).first(3)));
}

const Bytes kNetworkBytes = {192, 168, 1,   3, 255, 255,  255,  0,    192,  168,  1,
                             1,   192, 168, 1, 2,   0x51, 0xC3, 0x52, 0xC3, 0x53, 0xC3};
const EcuNetworkSettings kNetwork = {.valid = true,
                                     .ecuIp = 0x0301A8C0,
                                     .subnetMask = 0x00FFFFFF,
                                     .gateway = 0x0101A8C0,
                                     .controlPort = 50002,
                                     .hostIp = 0x0201A8C0,
                                     .receivePort = 50001,
                                     .freespacePort = 50003};

TEST(EcuNetworkSettings, encodesTheControlPortBehindTheReceivingPort)
{
    EXPECT_EQ(orv::encodeNetworkSettings(kNetwork), kNetworkBytes);
}

TEST(EcuNetworkSettings, decodesKnownBytes)
{
    EXPECT_EQ(orv::decodeNetworkSettings(kNetworkBytes), kNetwork);
    EXPECT_TRUE(orv::decodeNetworkSettings(kNetworkBytes).value().valid);
}

TEST(EcuNetworkSettings, ofAnyOtherSizeIsInvalid)
{
    Bytes bytes = kNetworkBytes;
    bytes.resize(30);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const auto settings = orv::decodeNetworkSettings(std::span(bytes).first(length));
        EXPECT_EQ(settings.has_value(), length == 22) << length;
    }
}

// Sensor n: x = -n, y = n, height 500, yaw n * 0x1000, pitch 1, roll 0xFFFF.
orv::SensorMountPositions knownPositions()
{
    orv::SensorMountPositions positions;
    for (std::size_t n = 0; n < positions.size(); ++n) {
        positions[n] = {.x = static_cast<std::int16_t>(-static_cast<int>(n)),
                        .y = static_cast<std::int16_t>(n),
                        .height = 500,
                        .yaw = static_cast<std::uint16_t>(n * 0x1000),
                        .pitch = 1,
                        .roll = 0xFFFF};
    }
    return positions;
}

TEST(SensorMountPositions, encodeTwelveRecordsInSensorOrder)
{
    const Bytes bytes = orv::encodeMountPositions(knownPositions());
    ASSERT_EQ(bytes.size(), 144U);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 12),
              (Bytes{0x00, 0x00, 0x00, 0x00, 0xF4, 0x01, 0x00, 0x00, 0x01, 0x00, 0xFF, 0xFF}));
    EXPECT_EQ(Bytes(bytes.end() - 12, bytes.end()),
              (Bytes{0xF5, 0xFF, 0x0B, 0x00, 0xF4, 0x01, 0x00, 0xB0, 0x01, 0x00, 0xFF, 0xFF}));
}

TEST(SensorMountPositions, surviveARoundTrip)
{
    EXPECT_EQ(orv::decodeMountPositions(orv::encodeMountPositions(knownPositions())),
              knownPositions());
}

TEST(SensorMountPositions, ofAnyOtherSizeAreRefused)
{
    Bytes bytes = orv::encodeMountPositions(knownPositions());
    bytes.resize(160);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const auto positions = orv::decodeMountPositions(std::span(bytes).first(length));
        EXPECT_EQ(positions.has_value(), length == 144) << length;
    }
}

const SensorMountPosition kMount = {
    .x = -500, .y = 300, .height = 450, .yaw = 0x4000, .pitch = 7, .roll = 9};

TEST(OrvSensorPosition, isTheMountPositionSeenFromAbove)
{
    const orv::OrvSensorPosition expected = {
        .leadingWord = 0, .x = -500, .y = 300, .direction = 0x4000};
    EXPECT_EQ(orv::planarPosition(kMount), expected);
}

TEST(OrvSensorPosition, movesAMountPositionAndKeepsItsHeightPitchAndRoll)
{
    const auto moved = orv::movedTo(kMount, {.leadingWord = 0, .x = 1, .y = -2, .direction = 3});
    const SensorMountPosition expected = {
        .x = 1, .y = -2, .height = 450, .yaw = 3, .pitch = 7, .roll = 9};
    EXPECT_EQ(moved, expected);
}

TEST(FirmwareVersion, isThreeBytes)
{
    const Bytes bytes = {2, 14, 0, 9};
    EXPECT_EQ(orv::decodeFirmwareVersion(std::span(bytes).first(3)),
              (orv::FirmwareVersion{{2, 14, 0}}));
    for (const std::size_t length : {0U, 1U, 2U, 4U})
        EXPECT_FALSE(orv::decodeFirmwareVersion(std::span(bytes).first(length))) << length;
}

TEST(FirmwareVersion, isShownInDecimalWithDots)
{
    EXPECT_EQ((orv::FirmwareVersion{{2, 14, 0}}.text()), "2.14.0");
    EXPECT_EQ((orv::FirmwareVersion{{255, 0, 1}}.text()), "255.0.1");
}

} // namespace
