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

SensorThreshold decodeThreshold(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() != SensorThreshold::kWireSize)
        return {};
    ByteReader reader(bytes);
    SensorThreshold threshold;
    threshold.sensorId = reader.u8();
    for (std::uint8_t& entry : threshold.entries)
        entry = reader.u8();
    threshold.scale = reader.u8();
    threshold.valid = static_cast<bool>(reader);
    return threshold;
}

} // namespace orv
