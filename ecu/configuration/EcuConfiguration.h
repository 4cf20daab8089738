#pragma once

#include "ecu/configuration/configuration_parts.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"
#include "orv_decoder/constants.h"

#include <QStringList>

#include <array>
#include <vector>

namespace orv {
class OrvCtrlClient;
}

/// Everything that an ECU is configured with, as plain values that nobody shows.
struct EcuConfiguration
{
    std::vector<orv::MseqStep> sequence; ///< at most 12
    std::array<orv::SensorThreshold, orv::kSensorCount> thresholds = emptyThresholds();
    orv::SensorMountPositions positions{};

    /// Exchanges everything that the ECU holds; blocks. The names of the parts that failed, in the
    /// order of the exchanges; what could not be read stays as it was.
    QStringList readFrom(orv::OrvCtrlClient& client);
    QStringList writeTo(orv::OrvCtrlClient& client) const;

    bool operator==(const EcuConfiguration&) const = default;

private:
    static std::array<orv::SensorThreshold, orv::kSensorCount> emptyThresholds();
};

/// The configuration as the holder of all parts, for a settings file and for the ECU.
/// @param configuration borrowed, as long as the holders are used
/// @param client borrowed; without one nothing is exchanged
ConfigurationHolders holdersOf(EcuConfiguration& configuration,
                               orv::OrvCtrlClient* client = nullptr);
