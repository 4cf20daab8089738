#include "orv_decoder/OrvMeasurementResult.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"
#include "orv_decoder/constants.h"

#include <algorithm>
#include <bitset>
#include <iterator>
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

OrvSensorEcho decodeEcho(std::span<const std::uint8_t, kEchoSize> bytes)
{
    ByteReader reader(bytes);
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

// Puts sensor blocks into the echoes of the record that was there before.
class EchoesDecoder
{
public:
    using Echoes = decltype(OrvMeasurementResult::echoes);

    explicit EchoesDecoder(Echoes& echoes) : mEchoes(echoes), mNext(echoes.begin()) {}

    bool decodeSensorBlock(ByteReader& reader)
    {
        const std::uint8_t sensorId = reader.u8();
        const std::uint8_t echoCount = reader.u8();
        auto bytes = reader.bytes(echoCount * kEchoSize);
        if (!reader || echoCount == 0)
            return static_cast<bool>(reader);
        for (OrvSensorEcho& echo : entryOf(sensorId, echoCount)) {
            echo = decodeEcho(bytes.first<kEchoSize>());
            bytes = bytes.subspan(kEchoSize);
        }
        return true;
    }

    // What no block was about goes.
    void dropOthers()
    {
        if (mReportingCount != mEchoes.size())
            std::erase_if(mEchoes, [&](const auto& entry) { return !mReporting[entry.first]; });
    }

private:
    // The ECU reports its sensors in order: most often the entry is the one behind the last.
    std::vector<OrvSensorEcho>& entryOf(std::uint8_t sensorId, std::size_t echoCount)
    {
        mReportingCount += mReporting[sensorId] ? 0 : 1;
        mReporting.set(sensorId);
        if (mNext == mEchoes.end() || mNext->first != sensorId)
            mNext = mEchoes.try_emplace(sensorId).first;
        std::vector<OrvSensorEcho>& entry = (mNext++)->second;
        entry.resize(echoCount);
        return entry;
    }

    Echoes& mEchoes;
    Echoes::iterator mNext;
    std::bitset<256> mReporting; // sensor ids, also those that no ECU has
    std::size_t mReportingCount = 0;
};

void decodeSensorBlocks(ByteReader& reader, int count, OrvMeasurementResult& result)
{
    EchoesDecoder echoes(result.echoes);
    for (int i = 0; i < count && echoes.decodeSensorBlock(reader); ++i) {
    }
    echoes.dropOthers();
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
