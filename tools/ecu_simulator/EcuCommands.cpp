#include "tools/ecu_simulator/EcuCommands.h"

#include "tools/ecu_simulator/Clutter.h"
#include "tools/ecu_simulator/RequestText.h"

#include <utility>

namespace ecusim {

using orv::ControlAccess;
using orv::ControlCommand;

namespace {

bool isAccess(std::span<const std::uint8_t> payload, ControlAccess access)
{
    return !payload.empty() && payload.front() == static_cast<std::uint8_t>(access);
}

std::uint16_t sensorMask(std::uint8_t sensorId)
{
    return sensorId == orv::kNoSensor ? kAllSensors : static_cast<std::uint16_t>(1U << sensorId);
}

} // namespace

EcuCommands::EcuCommands(EcuState& state, EcuBehaviour behaviour)
    : mState(state), mBehaviour(std::move(behaviour)), mCalibration(mBehaviour.calibrationMs)
{}

EcuAnswer EcuCommands::answer(std::span<const std::uint8_t> frame, std::int64_t nowMs)
{
    const bool isCalibrated = advance(nowMs);
    const auto request = orv::decodeRequest(frame);
    if (!request) {
        const std::uint8_t code = frame.size() < 2 ? 0 : frame.front();
        return {.reply =
                    orv::encodeReply(code, {}, static_cast<std::uint8_t>(EcuStatus::WrongChecksum)),
                .mustKeep = isCalibrated,
                .summary = "request with a wrong checksum, " + statusText(1)};
    }
    const auto forced = mBehaviour.forcedStatus.find(request->code);
    if (forced != mBehaviour.forcedStatus.end())
        return {.reply = orv::encodeReply(request->code, {}, forced->second),
                .mustKeep = isCalibrated,
                .summary = requestText(*request) + ", " + statusText(forced->second)};

    const Outcome outcome = execute(*request, nowMs);
    const auto status = static_cast<std::uint8_t>(outcome.status);
    return {.reply = orv::encodeReply(request->code, outcome.payload, status),
            .mustKeep = outcome.mustKeep || isCalibrated,
            .summary = requestText(*request) + ", " + statusText(status)};
}

bool EcuCommands::advance(std::int64_t nowMs)
{
    if (!mCalibration.advance(nowMs))
        return false;
    applyCalibration();
    return true;
}

EcuCommands::Outcome EcuCommands::execute(const orv::ControlRequest& request, std::int64_t nowMs)
{
    switch (static_cast<ControlCommand>(request.code)) {
    case ControlCommand::MeasurementSequence:
        return sequence(request.payload);
    case ControlCommand::Thresholds:
        return thresholds(request.payload);
    case ControlCommand::FirmwareVersion:
        return firmware(request.payload);
    case ControlCommand::NetworkSettings:
        return network(request.payload);
    case ControlCommand::SensorPositions:
        return positions(request.payload);
    case ControlCommand::AutoCalibration:
        return calibration(request.payload, nowMs);
    }
    return {.status = EcuStatus::UnknownCommand};
}

EcuCommands::Outcome EcuCommands::sequence(Payload payload)
{
    if (isAccess(payload, ControlAccess::Write))
        return writeSequence(payload.subspan(1));
    if (!isAccess(payload, ControlAccess::Read))
        return {.status = EcuStatus::WrongAccess};
    if (payload.size() != 1)
        return {.status = EcuStatus::WrongLength};
    Bytes reply = {static_cast<std::uint8_t>(mState.sequence.size())};
    for (const orv::MseqStep& step : mState.sequence) {
        const Bytes bytes = orv::encodeStep(step);
        reply.insert(reply.end(), bytes.begin(), bytes.end());
    }
    return {.payload = std::move(reply)};
}

EcuCommands::Outcome EcuCommands::writeSequence(Payload payload)
{
    if (payload.empty())
        return {.status = EcuStatus::WrongLength};
    const std::size_t count = payload.front();
    if (count > orv::kMaxStepCount)
        return {.status = EcuStatus::WrongValue};
    payload = payload.subspan(1);
    if (payload.size() != count * orv::MseqStep::kWireSize)
        return {.status = EcuStatus::WrongLength};
    mState.sequence.clear();
    for (; !payload.empty(); payload = payload.subspan(orv::MseqStep::kWireSize)) {
        if (const auto step = orv::decodeStep(payload))
            mState.sequence.push_back(*step);
    }
    return {.mustKeep = true};
}

EcuCommands::Outcome EcuCommands::thresholds(Payload payload)
{
    if (isAccess(payload, ControlAccess::Read))
        return readThresholds(payload.subspan(1));
    if (isAccess(payload, ControlAccess::Write))
        return writeThresholds(payload.subspan(1), true);
    if (isAccess(payload, ControlAccess::WriteTemporarily))
        return writeThresholds(payload.subspan(1), false);
    return {.status = EcuStatus::WrongAccess};
}

EcuCommands::Outcome EcuCommands::readThresholds(Payload payload) const
{
    if (payload.size() != 1)
        return {.status = EcuStatus::WrongLength};
    if (payload.front() >= orv::kSensorCount)
        return {.status = EcuStatus::WrongValue};
    return {.payload = orv::encodeThreshold(mState.thresholds[payload.front()])};
}

EcuCommands::Outcome EcuCommands::writeThresholds(Payload payload, bool isKept)
{
    const auto threshold = orv::decodeThreshold(payload);
    if (!threshold)
        return {.status = EcuStatus::WrongLength};
    if (threshold->sensorId >= orv::kSensorCount || threshold->scale >= orv::kThresholdScaleLimit)
        return {.status = EcuStatus::WrongValue};
    mState.thresholds[threshold->sensorId] = *threshold;
    if (isKept)
        mState.keptThresholds[threshold->sensorId] = *threshold;
    return {.mustKeep = isKept};
}

EcuCommands::Outcome EcuCommands::firmware(Payload payload) const
{
    if (!payload.empty())
        return {.status = EcuStatus::WrongLength};
    const auto& numbers = mState.firmware.numbers;
    return {.payload = Bytes(numbers.begin(), numbers.end())};
}

EcuCommands::Outcome EcuCommands::network(Payload payload)
{
    if (isAccess(payload, ControlAccess::Read)) {
        if (payload.size() != 1)
            return {.status = EcuStatus::WrongLength};
        return {.payload = orv::encodeNetworkSettings(mState.network)};
    }
    if (!isAccess(payload, ControlAccess::Write))
        return {.status = EcuStatus::WrongAccess};
    const auto settings = orv::decodeNetworkSettings(payload.subspan(1));
    if (!settings)
        return {.status = EcuStatus::WrongLength};
    mState.network = *settings;
    mState.keptNetwork = settings;
    return {.mustKeep = true};
}

EcuCommands::Outcome EcuCommands::positions(Payload payload)
{
    if (isAccess(payload, ControlAccess::Read)) {
        if (payload.size() != 1)
            return {.status = EcuStatus::WrongLength};
        return {.payload = orv::encodeMountPositions(mState.positions)};
    }
    if (!isAccess(payload, ControlAccess::Write))
        return {.status = EcuStatus::WrongAccess};
    const auto positions = orv::decodeMountPositions(payload.subspan(1));
    if (!positions)
        return {.status = EcuStatus::WrongLength};
    mState.positions = *positions;
    return {.mustKeep = true};
}

EcuCommands::Outcome EcuCommands::calibration(Payload payload, std::int64_t nowMs)
{
    if (isAccess(payload, ControlAccess::Write))
        return startCalibration(payload.subspan(1), nowMs);
    if (!isAccess(payload, ControlAccess::Read))
        return {.status = EcuStatus::WrongAccess};
    if (payload.size() != 1)
        return {.status = EcuStatus::WrongLength};
    return calibrationState();
}

EcuCommands::Outcome EcuCommands::startCalibration(Payload payload, std::int64_t nowMs)
{
    if (payload.size() != 1)
        return {.status = EcuStatus::WrongLength};
    const std::uint8_t sensorId = payload.front();
    if (sensorId >= orv::kSensorCount && sensorId != orv::kNoSensor)
        return {.status = EcuStatus::WrongValue};
    mCalibratedMask = sensorMask(sensorId) & static_cast<std::uint16_t>(~mBehaviour.missingMask);
    const bool hasSensors = mCalibratedMask != 0;
    const bool isHopeless = !hasSensors && mBehaviour.calibration == CalibrationOutcome::Finish;
    mCalibration.start(isHopeless ? CalibrationOutcome::Abort : mBehaviour.calibration, nowMs);
    return {};
}

EcuCommands::Outcome EcuCommands::calibrationState() const
{
    if (mBehaviour.calibration == CalibrationOutcome::Fail)
        return {.status = EcuStatus::CalibrationFailed};
    return {.payload = {static_cast<std::uint8_t>(mCalibration.state())}};
}

void EcuCommands::applyCalibration()
{
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        if (!((mCalibratedMask >> id) & 1))
            continue;
        mState.keptThresholds[id].entries = calibratedCurve(id, mBehaviour.hasClutter);
        mState.thresholds[id] = mState.keptThresholds[id];
    }
}

} // namespace ecusim
