#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// Command codes of the control protocol.
enum class ControlCommand : std::uint8_t {
    MeasurementSequence = 0,
    Thresholds = 1,
    FirmwareVersion = 2,
    NetworkSettings = 3,
    SensorPositions = 4,
    AutoCalibration = 5,
};

/// First payload byte of a request.
enum class ControlAccess : std::uint8_t {
    Write = 0,
    Read = 1,
    WriteTemporarily = 2, ///< thresholds only: used by the ECU, not stored permanently
};

/// A request as the ECU sees it: the code may be one that no command has.
struct ControlRequest
{
    std::uint8_t code = 0;             ///< a ControlCommand, or any other byte
    std::vector<std::uint8_t> payload; ///< without code and checksum
};

/// What a datagram on the control channel is to the request that waits for its reply.
struct ControlReply
{
    std::optional<std::span<const std::uint8_t>> payload = {}; ///< borrowed from the frame
    std::string error = {};                                    ///< why there is no payload
    bool isStray = false; ///< it cannot be the answer, which may still come
};

/// Command code, payload and the checksum over both.
std::vector<std::uint8_t> encodeRequest(ControlCommand command,
                                        std::span<const std::uint8_t> payload);

/// The ECU's side: nothing when the checksum is wrong or the frame has no code.
std::optional<ControlRequest> decodeRequest(std::span<const std::uint8_t> frame);

/// The ECU's side: code, payload, status (0 = success) and the checksum over all three.
std::vector<std::uint8_t> encodeReply(std::uint8_t code, std::span<const std::uint8_t> payload,
                                      std::uint8_t status);

/// Checks checksum, code and status of a reply, in this order. Errors: "checksum error", "wrong
/// reply type", "wrong data size" (no status byte) and "ECU error (" status ")". An empty frame and
/// one with another command's code are strays.
ControlReply decodeReply(ControlCommand command, std::span<const std::uint8_t> frame);

} // namespace orv
