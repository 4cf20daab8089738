#include "orv_decoder/EcuNetworkSettings.h"

#include "orv_decoder/ByteReader.h"
#include "orv_decoder/ByteWriter.h"

namespace orv {

std::vector<std::uint8_t> encodeNetworkSettings(const EcuNetworkSettings& settings)
{
    ByteWriter writer;
    writer.u32(settings.ecuIp);
    writer.u32(settings.subnetMask);
    writer.u32(settings.gateway);
    writer.u32(settings.hostIp);
    writer.u16(settings.receivePort);
    writer.u16(settings.controlPort);
    writer.u16(settings.freespacePort);
    return writer.take();
}

std::optional<EcuNetworkSettings> decodeNetworkSettings(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() != EcuNetworkSettings::kWireSize)
        return std::nullopt;
    ByteReader reader(bytes);
    EcuNetworkSettings settings{.valid = true};
    settings.ecuIp = reader.u32();
    settings.subnetMask = reader.u32();
    settings.gateway = reader.u32();
    settings.hostIp = reader.u32();
    settings.receivePort = reader.u16();
    settings.controlPort = reader.u16();
    settings.freespacePort = reader.u16();
    return settings;
}

} // namespace orv
