#include "orv_decoder/ControlFrame.h"

#include "orv_decoder/ByteWriter.h"
#include "orv_decoder/Crc8.h"

namespace orv {

namespace {

// Takes the checksum off the end of a frame; false when it does not fit or there is none.
bool takeChecksum(std::span<const std::uint8_t>& frame)
{
    if (frame.empty())
        return false;
    const std::uint8_t received = frame.back();
    frame = frame.first(frame.size() - 1);
    return crc8(frame) == received;
}

std::vector<std::uint8_t> withChecksum(std::vector<std::uint8_t> frame)
{
    frame.push_back(crc8(frame));
    return frame;
}

ControlReply fault(std::string error)
{
    return {.error = std::move(error)};
}

ControlReply stray(std::string error)
{
    return {.error = std::move(error), .isStray = true};
}

} // namespace

std::vector<std::uint8_t> encodeRequest(ControlCommand command,
                                        std::span<const std::uint8_t> payload)
{
    ByteWriter writer;
    writer.u8(static_cast<std::uint8_t>(command));
    writer.bytes(payload);
    return withChecksum(writer.take());
}

std::optional<ControlRequest> decodeRequest(std::span<const std::uint8_t> frame)
{
    if (!takeChecksum(frame) || frame.empty())
        return std::nullopt;
    return ControlRequest{.code = frame.front(), .payload = {frame.begin() + 1, frame.end()}};
}

std::vector<std::uint8_t> encodeReply(std::uint8_t code, std::span<const std::uint8_t> payload,
                                      std::uint8_t status)
{
    ByteWriter writer;
    writer.u8(code);
    writer.bytes(payload);
    writer.u8(status);
    return withChecksum(writer.take());
}

ControlReply decodeReply(ControlCommand command, std::span<const std::uint8_t> frame)
{
    if (frame.empty())
        return stray("checksum error");
    if (!takeChecksum(frame))
        return fault("checksum error");
    if (frame.empty() || frame.front() != static_cast<std::uint8_t>(command))
        return stray("wrong reply type");
    frame = frame.subspan(1);
    if (frame.empty())
        return fault("wrong data size");
    const std::uint8_t status = frame.back();
    if (status != 0)
        return fault("ECU error (" + std::to_string(status) + ")");
    return {.payload = frame.first(frame.size() - 1)};
}

} // namespace orv
