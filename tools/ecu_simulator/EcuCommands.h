#pragma once

#include "orv_decoder/ControlFrame.h"
#include "tools/ecu_simulator/AutoCalibration.h"
#include "tools/ecu_simulator/EcuState.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace ecusim {

/// Status byte of a reply.
enum class EcuStatus : std::uint8_t {
    Ok = 0,
    WrongChecksum = 1,
    UnknownCommand = 2,
    WrongLength = 3,
    WrongAccess = 4, ///< neither read nor write, or not for this command
    WrongValue = 5,
    CalibrationFailed = 6,
};

/// What of the ECU's behaviour can be chosen.
struct EcuBehaviour
{
    CalibrationOutcome calibration = CalibrationOutcome::Finish;
    std::int64_t calibrationMs = 3000;
    bool hasClutter = true;                            ///< what the calibration has to rise above
    std::uint16_t missingMask = 0;                     ///< sensors that cannot be calibrated
    std::map<std::uint8_t, std::uint8_t> forcedStatus; ///< by command code: refused with this
};

/// The answer to one request.
struct EcuAnswer
{
    std::vector<std::uint8_t> reply;
    bool mustKeep = false; ///< the state that outlives the run has changed
    std::string summary;   ///< one readable line: the request and how it went
};

/// Carries out the requests of the control protocol on an EcuState, which it borrows. Every
/// request gets a reply, whatever its bytes are.
class EcuCommands
{
public:
    EcuCommands(EcuState& state, EcuBehaviour behaviour);

    /// Times in milliseconds on any steady clock.
    EcuAnswer answer(std::span<const std::uint8_t> frame, std::int64_t nowMs);

    /// Lets a running calibration go on; true when the state that outlives the run has changed.
    bool advance(std::int64_t nowMs);

private:
    using Bytes = std::vector<std::uint8_t>;
    using Payload = std::span<const std::uint8_t>;

    struct Outcome
    {
        EcuStatus status = EcuStatus::Ok;
        Bytes payload = {};
        bool mustKeep = false;
    };

    Outcome execute(const orv::ControlRequest& request, std::int64_t nowMs);
    Outcome sequence(Payload payload);
    Outcome writeSequence(Payload payload);
    Outcome thresholds(Payload payload);
    Outcome readThresholds(Payload payload) const;
    Outcome writeThresholds(Payload payload, bool isKept);
    Outcome firmware(Payload payload) const;
    Outcome network(Payload payload);
    Outcome positions(Payload payload);
    Outcome calibration(Payload payload, std::int64_t nowMs);
    Outcome startCalibration(Payload payload, std::int64_t nowMs);
    Outcome calibrationState() const;
    void applyCalibration();

    EcuState& mState;
    EcuBehaviour mBehaviour;
    AutoCalibration mCalibration;
    std::uint16_t mCalibratedMask = 0;
};

} // namespace ecusim
