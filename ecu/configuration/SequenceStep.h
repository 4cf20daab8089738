#pragma once

#include "orv_decoder/MseqStep.h"

#include <cstdint>

/// What a sensor does in a step. The values are the order in which they are offered.
enum class SensorState {
    Disabled,
    Active,  ///< sends and listens
    Passive, ///< listens
};

/// How a step's burst is sent. The values are the order in which they are offered.
enum class StepMode {
    Am,
    Bpsk0,
    Bpsk1,
};

/// One step as the sequence table keeps it: the five words of the ECU's record, without the flag
/// that tells whether the record was read completely.
struct SequenceStep
{
    std::uint16_t sendMask = 0;   ///< bit n set: sensor n sends
    std::uint16_t listenMask = 0; ///< bit n set: sensor n listens
    std::uint16_t modulation = 0; ///< 0 = amplitude modulation, other = phase-shift keyed
    std::uint16_t phaseCode = 0;  ///< of phase-shift keying: 0 = BPSK0, other = BPSK1
    std::uint16_t fifthWord = 0;  ///< carried unchanged until the mode is edited

    bool operator==(const SequenceStep&) const = default;
};
static_assert(sizeof(SequenceStep) == orv::MseqStep::kWireSize);

/// Ignores whether the record is valid.
SequenceStep stepOf(const orv::MseqStep& record);

/// A valid record.
orv::MseqStep recordOf(const SequenceStep& step);

StepMode modeOf(const SequenceStep& step);
void setMode(SequenceStep& step, StepMode mode);

/// @param sensor 0..11
SensorState stateOf(const SequenceStep& step, int sensor);
void setState(SequenceStep& step, int sensor, SensorState state);
