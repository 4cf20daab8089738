#include "orv_decoder/SensorThreshold.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

namespace orv {

std::vector<std::uint8_t> encodeThreshold(const SensorThreshold& threshold)
{
    ByteWriter writer;
    writer.u8(threshold.sensorId);
    writer.bytes(threshold.entries);
    writer.u8(threshold.scale);
    return writer.take();
}

std::optional<SensorThreshold> decodeThreshold(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() != SensorThreshold::kWireSize)
        return std::nullopt;
    ByteReader reader(bytes);
    SensorThreshold threshold{.valid = true};
    threshold.sensorId = reader.u8();
    for (std::uint8_t& entry : threshold.entries)
        entry = reader.u8();
    threshold.scale = reader.u8();
    return threshold;
}

CheckedThreshold checkedThreshold(std::span<const std::uint8_t> bytes, std::uint8_t sensorId)
{
    const auto threshold = decodeThreshold(bytes);
    if (!threshold)
        return {.error = "wrong data size"};
    if (threshold->sensorId != sensorId)
        return {.error = "wrong sensor id"};
    if (threshold->scale >= kThresholdScaleLimit)
        return {.error = "wrong scale value read from sensor"};
    return {.record = threshold};
}

} // namespace orv
