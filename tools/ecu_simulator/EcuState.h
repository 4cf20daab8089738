#pragma once

#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace ecusim {

/// Bits of the twelve sensors in a mask.
inline constexpr std::uint16_t kAllSensors = 0x0FFF;

using SensorThresholds = std::array<orv::SensorThreshold, orv::kSensorCount>;

/// What the ECU holds in memory.
struct EcuState
{
    std::vector<orv::MseqStep> sequence; ///< 0..12 steps; none = the ECU is silent
    SensorThresholds thresholds;         ///< in use
    SensorThresholds keptThresholds;     ///< what a restart brings back
    orv::SensorMountPositions positions{};
    orv::EcuNetworkSettings network; ///< as answered; takes effect with the next start
    orv::FirmwareVersion firmware{.numbers = {2, 14, 0}};

    /// Network settings that were written and must survive the run; the ones that the ECU was
    /// merely started with do not.
    std::optional<orv::EcuNetworkSettings> keptNetwork;
};

/// The state of a new ECU: each sensor sends once in turn while its neighbours listen, thresholds
/// keep ground clutter out, and six sensors stand in either bumper, clockwise from the front left.
EcuState defaultEcuState();

} // namespace ecusim
