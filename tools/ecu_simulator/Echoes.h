#pragma once

#include "orv_decoder/OrvMeasurementResult.h"
#include "tools/ecu_simulator/EcuState.h"
#include "tools/ecu_simulator/Scene.h"

#include <cstdint>

namespace ecusim {

/// The part of the simulated ECU that measures: who sends, who listens, what they hear. A
/// measurement depends on its arguments alone, so any of them can be repeated.
class Echoes
{
public:
    /// Sensors whose bit is set in `missingMask` neither send nor hear.
    Echoes(Scene scene, std::uint16_t missingMask, std::uint64_t seed)
        : mScene(scene), mMissingMask(missingMask), mSeed(seed)
    {}

    /// The result of the `index`-th measurement, taken `seconds` after the start with the step of
    /// the written sequence whose turn it is. The sequence holds at least one step.
    orv::OrvMeasurementResult measure(const EcuState& state, std::uint32_t index,
                                      double seconds) const;

private:
    Scene mScene;
    std::uint16_t mMissingMask;
    std::uint64_t mSeed;
};

} // namespace ecusim
