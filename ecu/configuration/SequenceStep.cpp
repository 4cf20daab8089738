#include "ecu/configuration/SequenceStep.h"

#include <limits>

namespace {

constexpr std::uint16_t kSet = std::numeric_limits<std::uint16_t>::max();

bool hasBit(std::uint16_t mask, int bit)
{
    return (mask >> bit & 1) != 0;
}

std::uint16_t withBit(std::uint16_t mask, int bit, bool isSet)
{
    const int bits = 1 << bit;
    return static_cast<std::uint16_t>(isSet ? mask | bits : mask & ~bits);
}

} // namespace

SequenceStep stepOf(const orv::MseqStep& record)
{
    return {.sendMask = record.activeMask,
            .listenMask = record.passiveMask,
            .modulation = record.modulation,
            .phaseCode = record.code,
            .fifthWord = record.fifthValue};
}

orv::MseqStep recordOf(const SequenceStep& step)
{
    return {.valid = true,
            .activeMask = step.sendMask,
            .passiveMask = step.listenMask,
            .modulation = step.modulation,
            .code = step.phaseCode,
            .fifthValue = step.fifthWord};
}

StepMode modeOf(const SequenceStep& step)
{
    if (step.modulation == 0)
        return StepMode::Am;
    return step.phaseCode == 0 ? StepMode::Bpsk0 : StepMode::Bpsk1;
}

void setMode(SequenceStep& step, StepMode mode)
{
    step.modulation = mode == StepMode::Am ? 0 : kSet;
    step.phaseCode = mode == StepMode::Bpsk1 ? kSet : 0;
    step.fifthWord = 0;
}

SensorState stateOf(const SequenceStep& step, int sensor)
{
    if (hasBit(step.sendMask, sensor))
        return SensorState::Active;
    return hasBit(step.listenMask, sensor) ? SensorState::Passive : SensorState::Disabled;
}

// The ECU reads both masks: a sensor that sends listens too.
void setState(SequenceStep& step, int sensor, SensorState state)
{
    step.sendMask = withBit(step.sendMask, sensor, state == SensorState::Active);
    step.listenMask = withBit(step.listenMask, sensor, state != SensorState::Disabled);
}
