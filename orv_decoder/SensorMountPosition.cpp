#include "orv_decoder/SensorMountPosition.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

namespace orv {

std::vector<std::uint8_t> encodeMountPositions(const SensorMountPositions& positions)
{
    ByteWriter writer;
    for (const SensorMountPosition& position : positions) {
        writer.i16(position.x);
        writer.i16(position.y);
        writer.u16(position.height);
        writer.u16(position.yaw);
        writer.u16(position.pitch);
        writer.u16(position.roll);
    }
    return writer.take();
}

std::optional<SensorMountPositions> decodeMountPositions(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() != kSensorCount * SensorMountPosition::kWireSize)
        return std::nullopt;
    ByteReader reader(bytes);
    SensorMountPositions positions;
    for (SensorMountPosition& position : positions) {
        position.x = reader.i16();
        position.y = reader.i16();
        position.height = reader.u16();
        position.yaw = reader.u16();
        position.pitch = reader.u16();
        position.roll = reader.u16();
    }
    return positions;
}

} // namespace orv
