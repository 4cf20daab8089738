#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tests/support/MeasurementBuilder.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using orv::OrvMeasurementResult;
using orv::OrvSensorEcho;
using orv::OrvSensorRole;

// Sensor 3 sends, 2 and 4 listen; two echoes at sensor 3, one at sensor 2.
const Bytes kDatagram = {
    0x78, 0x56, 0x34, 0x12, // measurement word
    0x08, 0x00, 0x14, 0x00, // masks
    0x02,                   // blocks
    0x03, 0x02,             // sensor 3, two echoes
    0x64, 0x00, 0x07, 0x01, // raw 100
    0x2C, 0x01, 0x0F, 0x00, // raw 300
    0x02, 0x01,             // sensor 2, one echo
    0xFF, 0x04, 0x01, 0xAB, // raw 1279
};

OrvMeasurementResult knownResult()
{
    OrvMeasurementResult result = aMeasurement().withSender(3).withReceiver(2).withReceiver(4);
    result.measurementWord = 0x12345678;
    result.echoes[3] = {OrvSensorEcho{.magnitude = 7, .secondValue = 1, .timeOfFlight = 5120},
                        OrvSensorEcho{.magnitude = 15, .secondValue = 0, .timeOfFlight = 15360}};
    result.echoes[2] = {OrvSensorEcho{.magnitude = 1, .secondValue = 0xAB, .timeOfFlight = 65484}};
    return result;
}

Bytes withHeader(const Bytes& blocks)
{
    Bytes datagram = {0, 0, 0, 0, 0, 0, 0, 0};
    datagram.insert(datagram.end(), blocks.begin(), blocks.end());
    return datagram;
}

bool isRefused(std::span<const std::uint8_t> datagram)
{
    return !orv::decodeDatagram<OrvMeasurementResult>(datagram);
}

// Throws when there is none.
OrvMeasurementResult resultIn(std::span<const std::uint8_t> datagram)
{
    return orv::decodeDatagram<OrvMeasurementResult>(datagram).value();
}

TEST(MeasurementResult, decodesKnownBytes)
{
    EXPECT_EQ(resultIn(kDatagram), knownResult());
    EXPECT_TRUE(resultIn(kDatagram).valid);
}

TEST(MeasurementResult, encodesInAscendingOrderOfTheSensors)
{
    const Bytes expected = {0x78, 0x56, 0x34, 0x12, 0x08, 0x00, 0x14, 0x00, 0x02,
                            0x02, 0x01, 0xFF, 0x04, 0x01, 0xAB, 0x03, 0x02, 0x64,
                            0x00, 0x07, 0x01, 0x2C, 0x01, 0x0F, 0x00};
    EXPECT_EQ(orv::encodeMeasurementResult(knownResult()), expected);
}

TEST(MeasurementResult, survivesARoundTrip)
{
    const auto datagram = orv::encodeMeasurementResult(knownResult());
    EXPECT_EQ(resultIn(datagram), knownResult());
}

TEST(MeasurementResult, cutInsideItsHeaderIsInvalid)
{
    for (std::size_t length = 0; length < 8; ++length) {
        OrvMeasurementResult result = knownResult();
        EXPECT_FALSE(orv::decodeInto(std::span(kDatagram).first(length), result)) << length;
        EXPECT_FALSE(result.valid) << length << " bytes";
        EXPECT_TRUE(result.echoes.empty());
    }
}

TEST(MeasurementResult, cutAnywhereBehindKeepsTheWholeBlocksBefore)
{
    for (std::size_t length = 8; length < kDatagram.size(); ++length) {
        const auto result = resultIn(std::span(kDatagram).first(length));
        EXPECT_TRUE(result.valid) << length << " bytes";
        EXPECT_EQ(result.sendMask, 0x0008);
        EXPECT_EQ(result.echoes.count(3), length >= 19 ? 1U : 0U) << length << " bytes";
        EXPECT_EQ(result.echoes.count(2), 0U) << length << " bytes";
    }
}

TEST(MeasurementResult, ofEightBytesHasMasksAndNoEchoes)
{
    const auto result = resultIn(Bytes{1, 0, 0, 0, 0x01, 0x08, 0xFE, 0x07});
    EXPECT_TRUE(result.valid);
    EXPECT_TRUE(result.hasMasks);
    EXPECT_EQ(result.measurementWord, 1U);
    EXPECT_EQ(result.sendMask, 0x0801);
    EXPECT_EQ(result.receiveMask, 0x07FE);
    EXPECT_TRUE(result.echoes.empty());
}

TEST(MeasurementResult, withoutBlocksIsValidAndEmpty)
{
    const auto result = resultIn(withHeader({0}));
    EXPECT_TRUE(result.valid);
    EXPECT_TRUE(result.echoes.empty());
}

TEST(MeasurementResult, mayHaveTwelveBlocksButNotThirteen)
{
    Bytes blocks = {12};
    for (std::uint8_t sensor = 0; sensor < 12; ++sensor)
        blocks.insert(blocks.end(), {sensor, 1, 100, 0, sensor, 0});
    const auto twelve = resultIn(withHeader(blocks));
    EXPECT_TRUE(twelve.valid);
    EXPECT_EQ(twelve.echoes.size(), 12U);

    blocks[0] = 13;
    blocks.insert(blocks.end(), {12, 1, 100, 0, 12, 0});
    EXPECT_TRUE(isRefused(withHeader(blocks)));
    EXPECT_TRUE(isRefused(withHeader({13})));
    EXPECT_TRUE(isRefused(withHeader({255})));
}

TEST(MeasurementResult, leavesASensorWithoutEchoesOut)
{
    const auto result = resultIn(withHeader({2, 5, 0, 6, 1, 100, 0, 7, 0}));
    EXPECT_TRUE(result.valid);
    EXPECT_EQ(result.echoes.count(5), 0U);
    EXPECT_EQ(result.echoes.count(6), 1U);
}

TEST(MeasurementResult, takesTheSecondBlockOfASensorForTheFirst)
{
    const auto result =
        resultIn(withHeader({2, 5, 2, 100, 0, 7, 0, 110, 0, 7, 0, 5, 1, 200, 0, 9, 0}));
    ASSERT_EQ(result.echoes.at(5).size(), 1U);
    EXPECT_EQ(result.echoes.at(5).front().timeOfFlight, 10240);
}

TEST(MeasurementResult, keepsTheEchoesOfASensorWhoseSecondBlockIsEmpty)
{
    const auto result = resultIn(withHeader({2, 5, 1, 100, 0, 7, 0, 5, 0}));
    EXPECT_EQ(result.echoes.at(5).size(), 1U);
}

TEST(MeasurementResult, keepsEchoesInDatagramOrder)
{
    const auto result = resultIn(withHeader({1, 0, 3, 200, 0, 1, 0, 100, 0, 2, 0, 150, 0, 3, 0}));
    const auto& echoes = result.echoes.at(0);
    ASSERT_EQ(echoes.size(), 3U);
    EXPECT_EQ(echoes[0].magnitude, 1);
    EXPECT_EQ(echoes[1].magnitude, 2);
    EXPECT_EQ(echoes[2].magnitude, 3);
}

TEST(MeasurementResult, ignoresBytesBehindTheLastBlock)
{
    const auto result = resultIn(withHeader({1, 0, 1, 100, 0, 7, 0, 1, 2, 3}));
    EXPECT_TRUE(result.valid);
    EXPECT_EQ(result.echoes.size(), 1U);
}

TEST(MeasurementResult, keepsASensorNumberThatTheEcuDoesNotHave)
{
    const Bytes datagram = withHeader({1, 200, 1, 100, 0, 7, 0});
    const auto result = resultIn(datagram);
    EXPECT_EQ(result.echoes.count(200), 1U);
    EXPECT_EQ(orv::encodeMeasurementResult(result), datagram);
}

TEST(MeasurementResult, encodesAtMostTwelveSensorsWithTheirFirst255Echoes)
{
    OrvMeasurementResult result = aMeasurement();
    for (std::uint8_t sensor = 0; sensor < 20; ++sensor)
        result.echoes[sensor].assign(300, OrvSensorEcho{.magnitude = 1});
    result.echoes[4].clear();
    const auto decoded = resultIn(orv::encodeMeasurementResult(result));
    EXPECT_TRUE(decoded.valid);
    ASSERT_EQ(decoded.echoes.size(), 12U);
    EXPECT_EQ(decoded.echoes.count(4), 0U);
    EXPECT_EQ(decoded.echoes.at(12).size(), 255U);
}

struct Time
{
    const char* name;
    std::uint16_t raw;
    std::uint16_t timeOfFlight;
};

class TimeOfFlight : public testing::TestWithParam<Time>
{};

TEST_P(TimeOfFlight, isTruncatedAndKeptInSixteenBits)
{
    const std::uint16_t raw = GetParam().raw;
    const auto result = resultIn(withHeader({1, 0, 1, static_cast<std::uint8_t>(raw & 0xFF),
                                             static_cast<std::uint8_t>(raw >> 8), 0, 0}));
    EXPECT_EQ(result.echoes.at(0).front().timeOfFlight, GetParam().timeOfFlight);
}

INSTANTIATE_TEST_SUITE_P(
    Raw, TimeOfFlight,
    testing::Values(Time{"zero", 0, 0}, Time{"one", 1, 51}, Time{"four", 4, 204},
                    Time{"five", 5, 256}, Time{"hundred", 100, 5120}, Time{"fullScale", 585, 29952},
                    Time{"longest", 1279, 65484}, Time{"firstThatWraps", 1280, 0},
                    Time{"secondThatWraps", 1281, 51}, Time{"allBits", 65535, 13056}),
    [](const auto& row) { return row.param.name; });

std::uint16_t throughTheWire(std::uint16_t timeOfFlight)
{
    const OrvMeasurementResult result = aMeasurement().withEcho(0, timeOfFlight, 0);
    const auto decoded = resultIn(orv::encodeMeasurementResult(result));
    return decoded.echoes.at(0).front().timeOfFlight;
}

TEST(TimeOfFlightEncoder, everyTimeThatADatagramCanHoldSurvives)
{
    for (unsigned raw = 0; raw < 1280; ++raw) {
        const auto timeOfFlight = static_cast<std::uint16_t>(raw * 512 / 10);
        ASSERT_EQ(throughTheWire(timeOfFlight), timeOfFlight);
    }
}

TEST(TimeOfFlightEncoder, aTimePastTheLongestBecomesTheLongest)
{
    EXPECT_EQ(throughTheWire(65485), 65484);
    EXPECT_EQ(throughTheWire(65535), 65484);
}

TEST(SensorRole, isSendingWhenBothMasksNameTheSensor)
{
    const OrvMeasurementResult result =
        aMeasurement().withSender(3).withReceiver(3).withReceiver(4);
    EXPECT_EQ(result.role(3), OrvSensorRole::Sending);
    EXPECT_EQ(result.role(4), OrvSensorRole::ReceivingOnly);
    EXPECT_EQ(result.role(5), OrvSensorRole::NotInvolved);
}

TEST(SensorRole, readsTheMasksToTheirTwelfthBit)
{
    const OrvMeasurementResult result = aMeasurement().withSender(0).withReceiver(11);
    EXPECT_EQ(result.role(0), OrvSensorRole::Sending);
    EXPECT_EQ(result.role(11), OrvSensorRole::ReceivingOnly);
}

TEST(SensorRole, isNotInvolvedForASensorThatTheEcuDoesNotHave)
{
    OrvMeasurementResult result = aMeasurement();
    result.sendMask = 0xFFFF;
    for (const std::uint8_t sensor : Bytes{12, 15, 16, 32, 255})
        EXPECT_EQ(result.role(sensor), OrvSensorRole::NotInvolved) << unsigned{sensor};
}

TEST(SensorRole, hasTheValuesThatTheViewsCount)
{
    EXPECT_EQ(static_cast<int>(OrvSensorRole::NotInvolved), 0);
    EXPECT_EQ(static_cast<int>(OrvSensorRole::Sending), 1);
    EXPECT_EQ(static_cast<int>(OrvSensorRole::ReceivingOnly), 2);
}

TEST(SensorEchoes, areThoseOfTheSensorAlone)
{
    const OrvMeasurementResult result = knownResult();
    EXPECT_EQ(&result.echoesOf(3), &result.echoes.at(3));
    EXPECT_EQ(&result.echoesOf(2), &result.echoes.at(2));
}

TEST(SensorEchoes, ofASensorThatHeardNothingAreNone)
{
    const OrvMeasurementResult result = knownResult();
    for (const std::uint8_t sensor : Bytes{0, 4, 12, 255})
        EXPECT_TRUE(result.echoesOf(sensor).empty()) << unsigned{sensor};
    EXPECT_EQ(result.echoes.size(), 2U);
}

TEST(MeasurementResult, usedRecordHoldsTheNextDatagramAlone)
{
    const Bytes first = {1, 0, 0, 0, 3, 0, 0, 0, 2, 0, 2, 100, 0,
                         7, 0, 1, 0, 8, 0, 5, 1, 9, 0, 1, 2};
    const Bytes second = {2, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 9, 0, 4, 0};
    orv::OrvMeasurementResult result;
    ASSERT_TRUE(orv::decodeInto(first, result));
    ASSERT_EQ(result.echoes.size(), 2U);
    ASSERT_TRUE(orv::decodeInto(second, result));
    EXPECT_EQ(result, resultIn(second));
    EXPECT_EQ(result.echoes.size(), 1U);
    EXPECT_FALSE(orv::decodeInto(Bytes{1, 2, 3}, result));
    EXPECT_EQ(result, orv::OrvMeasurementResult{});
}

TEST(MeasurementResult, usedRecordDoesNotDependOnTheOrderOfTheBlocks)
{
    const Bytes used = withHeader({3, 2, 1, 9, 0, 1, 0, 5, 1, 8, 0, 2, 0, 7, 1, 7, 0, 3, 0});
    const std::vector<Bytes> orders = {
        {3, 2, 1, 1, 0, 4, 0, 5, 1, 2, 0, 5, 0, 7, 1, 3, 0, 6, 0},
        {3, 7, 1, 1, 0, 4, 0, 5, 1, 2, 0, 5, 0, 2, 1, 3, 0, 6, 0},
        {3, 5, 1, 1, 0, 4, 0, 7, 1, 2, 0, 5, 0, 6, 1, 3, 0, 6, 0},
        {3, 1, 1, 1, 0, 4, 0, 8, 1, 2, 0, 5, 0, 2, 1, 3, 0, 6, 0},
    };
    for (const Bytes& blocks : orders) {
        OrvMeasurementResult result = resultIn(used);
        ASSERT_TRUE(orv::decodeInto(withHeader(blocks), result));
        EXPECT_EQ(result, resultIn(withHeader(blocks)));
        EXPECT_EQ(result.echoes.size(), 3U);
    }
}

TEST(MeasurementResult, sensorThatIsNamedTwiceDoesNotKeepAnotherInAUsedRecord)
{
    const Bytes twice = withHeader({2, 3, 1, 1, 0, 4, 0, 3, 1, 2, 0, 5, 0});
    OrvMeasurementResult result = resultIn(withHeader({2, 3, 1, 9, 0, 1, 0, 5, 1, 8, 0, 2, 0}));
    ASSERT_TRUE(orv::decodeInto(twice, result));
    EXPECT_EQ(result.echoes.size(), 1U);
    EXPECT_EQ(result, resultIn(twice));
}

} // namespace
