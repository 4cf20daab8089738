#pragma once

#include "orv_decoder/ValidFlag.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orv {

/// One step of the measurement sequence.
struct MseqStep
{
    static constexpr std::size_t kWireSize = 10; ///< bytes

    ValidFlag valid = false;       ///< set by a successful read
    std::uint16_t activeMask = 0;  ///< bit n set: sensor n sends in this step
    std::uint16_t passiveMask = 0; ///< bit n set: sensor n listens in this step
    std::uint16_t modulation = 0;  ///< 0 = amplitude modulation, other = coded
    std::uint16_t code = 0;        ///< of coded modulation: 0 = BPSK0, other = BPSK1
    std::uint16_t fifthValue = 0;  ///< carried through unchanged

    bool operator==(const MseqStep&) const = default;
};

/// The 10 bytes of one step.
std::vector<std::uint8_t> encodeStep(const MseqStep& step);

/// The step at the front of `bytes`; nothing for fewer than 10.
std::optional<MseqStep> decodeStep(std::span<const std::uint8_t> bytes);

/// The two masks alone, for which 4 bytes are enough; nothing for fewer.
std::optional<MseqStep> decodeStepMasks(std::span<const std::uint8_t> bytes);

} // namespace orv
