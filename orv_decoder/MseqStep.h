#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orv {

/// One step of the measurement sequence.
struct MseqStep
{
    static constexpr std::size_t kWireSize = 10;

    bool valid = false;
    std::uint16_t activeMask = 0;  ///< bit n set: sensor n sends in this step
    std::uint16_t passiveMask = 0; ///< bit n set: sensor n listens in this step
    std::uint16_t modulation = 0;  ///< 0 = amplitude modulation, other = coded
    std::uint16_t code = 0;        ///< of coded modulation: 0 = BPSK0, other = BPSK1
    std::uint16_t fifthValue = 0;  ///< carried through unchanged

    bool operator==(const MseqStep&) const = default;
};

/// The 10 bytes of one step.
std::vector<std::uint8_t> encodeStep(const MseqStep& step);

/// Decodes one step from the front of `bytes`; `valid` is false for fewer than 10.
MseqStep decodeStep(std::span<const std::uint8_t> bytes);

/// Decodes the two masks alone, for which 4 bytes are enough; `valid` is false for fewer.
MseqStep decodeStepMasks(std::span<const std::uint8_t> bytes);

} // namespace orv
