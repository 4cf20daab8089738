#include "orv_decoder/OrvMeasurementResult.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"
#include "orv_decoder/constants.h"

#include <algorithm>
#include <bitset>
#include <utility>

namespace orv {

namespace {

constexpr std::size_t kEchoSize = 4;
constexpr std::size_t kMaxEchoCount = 255;
constexpr std::uint32_t kLongestRawTime = 1279;

// One raw unit is 51.2 us. Kept in 16 bits: a raw value of 1280 or more wraps.
std::uint16_t timeOfFlightFromRaw(std::uint16_t raw)
{
    return static_cast<std::uint16_t>(std::uint32_t{raw} * 512 / 10);
}

// Rounded up, the inverse of the truncation above; never to a value that would wrap.
std::uint16_t rawFromTimeOfFlight(std::uint16_t timeOfFlight)
{
    const std::uint32_t raw = (std::uint32_t{timeOfFlight} * 10 + 511) / 512;
    return static_cast<std::uint16_t>(std::min(raw, kLongestRawTime));
}

OrvSensorEcho decodeEcho(ByteReader& reader)
{
    OrvSensorEcho echo;
    echo.timeOfFlight = timeOfFlightFromRaw(reader.u16());
    echo.magnitude = reader.u8();
    echo.secondValue = reader.u8();
    return echo;
}

void encodeEcho(ByteWriter& writer, const OrvSensorEcho& echo)
{
    writer.u16(rawFromTimeOfFlight(echo.timeOfFlight));
    writer.u8(echo.magnitude);
    writer.u8(echo.secondValue);
}

// Sensor ids, also those that no ECU has.
using Ids = std::bitset<256>;

bool decodeSensorBlock(ByteReader& reader, OrvMeasurementResult& result, Ids& reporting)
{
    const std::uint8_t sensorId = reader.u8();
    const std::uint8_t echoCount = reader.u8();
    if (!reader || reader.left() < echoCount * kEchoSize)
        return false;
    if (echoCount == 0)
        return true;
    std::vector<OrvSensorEcho>& echoes = result.echoes[sensorId];
    echoes.resize(echoCount);
    for (OrvSensorEcho& echo : echoes)
        echo = decodeEcho(reader);
    reporting.set(sensorId);
    return true;
}

// What is left of the record that was there before goes.
void decodeSensorBlocks(ByteReader& reader, int count, OrvMeasurementResult& result)
{
    Ids reporting;
    for (int i = 0; i < count && decodeSensorBlock(reader, result, reporting); ++i) {
    }
    std::erase_if(result.echoes, [&](const auto& entry) { return !reporting[entry.first]; });
}

void encodeSensorBlock(ByteWriter& writer, std::uint8_t sensorId,
                       std::span<const OrvSensorEcho> echoes)
{
    const auto kept = echoes.first(std::min(echoes.size(), kMaxEchoCount));
    writer.u8(sensorId);
    writer.u8(static_cast<std::uint8_t>(kept.size()));
    for (const OrvSensorEcho& echo : kept)
        encodeEcho(writer, echo);
}

} // namespace

OrvSensorRole OrvMeasurementResult::role(std::uint8_t sensorId) const
{
    if (sensorId >= kSensorCount)
        return OrvSensorRole::NotInvolved;
    if ((sendMask >> sensorId) & 1)
        return OrvSensorRole::Sending;
    if ((receiveMask >> sensorId) & 1)
        return OrvSensorRole::ReceivingOnly;
    return OrvSensorRole::NotInvolved;
}

const std::vector<OrvSensorEcho>& OrvMeasurementResult::echoesOf(std::uint8_t sensorId) const
{
    static const std::vector<OrvSensorEcho> kNoEchoes;
    const auto found = echoes.find(sensorId);
    return found == echoes.end() ? kNoEchoes : found->second;
}

bool decodeInto(std::span<const std::uint8_t> datagram, OrvMeasurementResult& result)
{
    ByteReader reader(datagram);
    result.measurementWord = reader.u32();
    result.sendMask = reader.u16();
    result.receiveMask = reader.u16();
    const std::uint8_t blockCount = reader && reader.left() > 0 ? reader.u8() : std::uint8_t{0};
    result.valid = reader && blockCount <= kSensorCount;
    result.hasMasks = result.valid;
    if (result.valid)
        decodeSensorBlocks(reader, blockCount, result);
    else
        result = {};
    return result.valid;
}

std::vector<std::uint8_t> encodeMeasurementResult(const OrvMeasurementResult& result)
{
    std::vector<std::pair<std::uint8_t, std::span<const OrvSensorEcho>>> blocks;
    for (const auto& [sensorId, echoes] : result.echoes) {
        if (blocks.size() < kSensorCount && !echoes.empty())
            blocks.emplace_back(sensorId, echoes);
    }
    ByteWriter writer;
    writer.u32(result.measurementWord);
    writer.u16(result.sendMask);
    writer.u16(result.receiveMask);
    writer.u8(static_cast<std::uint8_t>(blocks.size()));
    for (const auto& [sensorId, echoes] : blocks)
        encodeSensorBlock(writer, sensorId, echoes);
    return writer.take();
}

} // namespace orv
