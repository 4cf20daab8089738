#include "tests/tools/wireshark/RandomRecords.h"

#include "orv_decoder/ByteWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace {

void append(Bytes& to, const Bytes& what)
{
    to.insert(to.end(), what.begin(), what.end());
}

} // namespace

std::uint32_t RandomRecords::below(std::uint32_t limit)
{
    return static_cast<std::uint32_t>(mRandom.below(limit));
}

std::uint8_t RandomRecords::around(std::size_t limit)
{
    return chance(0.2) ? byte() : static_cast<std::uint8_t>(limit - 1 + below(3));
}

Bytes RandomRecords::bytes(std::size_t count)
{
    Bytes bytes(count);
    std::ranges::generate(bytes, [this] { return byte(); });
    return bytes;
}

orv::SensorThreshold RandomRecords::threshold()
{
    orv::SensorThreshold threshold{.valid = true, .sensorId = sensorId()};
    std::ranges::generate(threshold.entries, [this] { return byte(); });
    threshold.scale = static_cast<std::uint8_t>(below(orv::kThresholdScaleLimit));
    return threshold;
}

std::vector<orv::MseqStep> RandomRecords::steps()
{
    std::vector<orv::MseqStep> steps(1 + below(orv::kMaxStepCount));
    for (orv::MseqStep& step : steps)
        step = {.valid = true,
                .activeMask = word(),
                .passiveMask = word(),
                .modulation = static_cast<std::uint16_t>(below(2)),
                .code = static_cast<std::uint16_t>(below(2)),
                .fifthValue = word()};
    return steps;
}

orv::EcuNetworkSettings RandomRecords::network()
{
    const auto settings = orv::decodeNetworkSettings(bytes(orv::EcuNetworkSettings::kWireSize));
    return settings.value();
}

orv::SensorMountPositions RandomRecords::positions()
{
    orv::SensorMountPositions positions;
    for (orv::SensorMountPosition& position : positions)
        position = {.x = std::bit_cast<std::int16_t>(word()),
                    .y = std::bit_cast<std::int16_t>(word()),
                    .height = word(),
                    .yaw = word(),
                    .pitch = word(),
                    .roll = word()};
    return positions;
}

void RandomRecords::appendBlock(Bytes& datagram)
{
    const std::size_t echoCount = chance(0.02) ? byte() : below(6);
    datagram.push_back(chance(0.03) ? around(orv::kSensorCount) : sensorId());
    datagram.push_back(static_cast<std::uint8_t>(echoCount));
    for (std::size_t i = 0; i < echoCount; ++i) {
        const auto raw = static_cast<std::uint16_t>(chance(0.9) ? below(1280) : word());
        const std::uint8_t magnitude =
            chance(0.8) ? static_cast<std::uint8_t>(below(16)) : around(16);
        append(datagram, {static_cast<std::uint8_t>(raw), static_cast<std::uint8_t>(raw >> 8),
                          magnitude, byte()});
    }
}

Bytes RandomRecords::measurement()
{
    Bytes datagram = bytes(8);
    if (chance(0.02))
        return datagram;
    const std::uint32_t blockCount = below(orv::kSensorCount + 1);
    datagram.push_back(chance(0.05) ? around(orv::kSensorCount + 1)
                                    : static_cast<std::uint8_t>(blockCount));
    for (std::uint32_t i = 0; i < blockCount; ++i)
        appendBlock(datagram);
    return datagram;
}

void RandomRecords::appendEntry(Bytes& datagram, bool hasPosition)
{
    datagram.push_back(chance(0.03) ? around(orv::kSensorCount) : sensorId());
    append(datagram, bytes(32));
    if (hasPosition)
        append(datagram, bytes(6));
    // Without a position only absent distances leave the flags within reach.
    const std::uint8_t flags = hasPosition ? byte() : std::uint8_t{7};
    datagram.push_back(flags);
    const auto absent = static_cast<std::size_t>(std::popcount(flags & 7U));
    append(datagram, bytes(10 * (3 - absent)));
}

Bytes RandomRecords::freespace()
{
    const std::uint32_t entryCount = chance(0.02) ? 10 + below(246) : below(7);
    const bool lastHasPosition = chance(0.8);
    Bytes datagram = {static_cast<std::uint8_t>(entryCount)};
    for (std::uint32_t i = 0; i < entryCount; ++i)
        appendEntry(datagram, lastHasPosition || i + 1 < entryCount);
    return datagram;
}

Bytes RandomRecords::damaged(Bytes bytes)
{
    const std::uint32_t damages = 1 + below(3);
    for (std::uint32_t i = 0; i < damages; ++i)
        bytes = damagedOnce(std::move(bytes));
    return bytes;
}

Bytes RandomRecords::damagedOnce(Bytes bytes)
{
    if (bytes.empty())
        return this->bytes(1 + below(40));
    const auto at = bytes.begin() + below(static_cast<std::uint32_t>(bytes.size()));
    switch (below(6)) {
    case 0:
        *at = static_cast<std::uint8_t>(*at ^ 1U << below(8));
        break;
    case 1:
        *at = byte();
        break;
    case 2:
        bytes.erase(at, bytes.end());
        break;
    case 3:
        bytes.insert(at, 1 + below(8), byte());
        break;
    case 4:
        append(bytes, this->bytes(1 + below(20)));
        break;
    default:
        bytes.erase(at, at + std::min<std::ptrdiff_t>(bytes.end() - at, 1 + below(8)));
    }
    return bytes;
}

Bytes payloadOf(const std::vector<orv::MseqStep>& steps)
{
    orv::ByteWriter writer;
    writer.u8(static_cast<std::uint8_t>(steps.size()));
    for (const orv::MseqStep& step : steps)
        writer.bytes(orv::encodeStep(step));
    return writer.take();
}
