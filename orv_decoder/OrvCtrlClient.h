#pragma once

#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/FailureReason.h"
#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

class OrvCtrlSocketBase;

/// Reads and writes the ECU's configuration, one synchronous exchange an operation.
///
/// An operation blocks its caller for at most the socket's receive timeout, retries nothing and
/// throws nothing. A reply that cannot be the answer (another command's, another sensor's
/// thresholds) is passed over; it is the failure when no better one came. An operation returns
/// false on failure with the reason in lastError(): "socket: " and the socket's reason, "checksum
/// error", "wrong reply type", "wrong data size", "ECU error (" status
/// ")", and what its own comment adds. Output records are written on success only.
class OrvCtrlClient : public FailureReason
{
public:
    /// The socket is borrowed. Throws std::runtime_error "Invalid socket pointer" for a null one.
    explicit OrvCtrlClient(OrvCtrlSocketBase* socket);

    /// Talks through another socket from now on; the same check as the constructor.
    void setSocket(OrvCtrlSocketBase* socket);
    OrvCtrlSocketBase* socket() const { return mSocket; } ///< the one in use

    /// Clears `steps` first. Also fails with "wrong format" for more than 12 steps or a step that
    /// is cut short, before which the whole ones are kept.
    bool readMeasurementSequence(std::vector<MseqStep>& steps);
    /// Sends nothing and fails with "Only 1...12 steps can be set." for any other count.
    bool writeMeasurementSequence(std::span<const MseqStep> steps);

    /// Also fails with "wrong sensor id" and "wrong scale value read from sensor" (5 or more).
    bool readThresholds(std::uint8_t sensorId, SensorThreshold& threshold);
    /// @param permanent false: used by the ECU until its restart only
    bool writeThresholds(const SensorThreshold& threshold, bool permanent);

    bool readFirmwareVersion(FirmwareVersion& version); ///< "2.14.0", say

    /// A reply of the wrong size fails with "wrong data format".
    bool readNetworkSettings(EcuNetworkSettings& settings);
    /// The ECU applies them after its next restart.
    bool writeNetworkSettings(const EcuNetworkSettings& settings);

    bool readSensorPositions(SensorMountPositions& positions);        ///< of all twelve sensors
    bool writeSensorPositions(const SensorMountPositions& positions); ///< of all twelve sensors

    /// @param sensorIndex 0..11, or kNoSensor when none is selected
    bool startAutoCalibration(std::uint8_t sensorIndex);

    static constexpr std::int8_t kCalibrationFinished = 0;   ///< to its end
    static constexpr std::int8_t kCalibrationAborted = -1;   ///< by the ECU
    static constexpr std::int8_t kCalibrationPollFailed = 2; ///< or the end of polling

    /// One of the three values above; any other one means that the calibration is still running.
    /// kCalibrationPollFailed is also what a failed exchange returns.
    std::int8_t readAutoCalibrationState();

private:
    using Payload = std::span<const std::uint8_t>;

    std::optional<Payload> read(ControlCommand command);
    std::optional<Payload> exchange(ControlCommand command, Payload request,
                                    std::optional<std::uint8_t> sensorId = std::nullopt);
    bool write(ControlCommand command, ControlAccess access, std::span<const std::uint8_t> record,
               std::optional<std::uint8_t> sensorId = {});
    template<typename Record>
    bool handOut(const std::optional<Record>& decoded, Record& output, std::string_view error);

    OrvCtrlSocketBase* mSocket = nullptr; // borrowed
    std::vector<std::uint8_t> mBuffer;    // of the last reply
};

} // namespace orv
