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

bool decodeMountPositions(std::span<const std::uint8_t> bytes, SensorMountPositions& positions)
{
    if (bytes.size() != kSensorCount * SensorMountPosition::kWireSize)
        return false;
    ByteReader reader(bytes);
    for (SensorMountPosition& position : positions) {
        position.x = reader.i16();
        position.y = reader.i16();
        position.height = reader.u16();
        position.yaw = reader.u16();
        position.pitch = reader.u16();
        position.roll = reader.u16();
    }
    return true;
}

} // namespace orv
