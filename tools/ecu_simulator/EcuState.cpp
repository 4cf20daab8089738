#include "tools/ecu_simulator/EcuState.h"

#include "tools/ecu_simulator/Clutter.h"

#include <algorithm>
#include <cmath>

namespace ecusim {

namespace {

constexpr int kSensorsPerBumper = 6;
constexpr int kListeningReach = 3;

constexpr std::array<std::uint8_t, 12> kDefaultLevels = {31, 26, 20, 19, 19, 18,
                                                         15, 11, 8,  6,  5,  4};

struct MountDegrees
{
    std::int16_t x;
    std::int16_t y;
    double yaw;
};

constexpr std::array<MountDegrees, orv::kSensorCount> kMounts = {{{3100, 900, 75},
                                                                  {3430, 720, 35},
                                                                  {3570, 260, 5},
                                                                  {3570, -260, 355},
                                                                  {3430, -720, 325},
                                                                  {3100, -900, 285},
                                                                  {-400, -900, 255},
                                                                  {-730, -720, 215},
                                                                  {-870, -260, 185},
                                                                  {-870, 260, 175},
                                                                  {-730, 720, 145},
                                                                  {-400, 900, 105}}};

// Rounded up as the tool stores a typed angle, so that it shows 75 and not 74.99.
std::uint16_t binaryAngle(double degrees)
{
    return static_cast<std::uint16_t>(std::ceil(degrees * 65536 / 360));
}

// Neighbours stand in the same bumper.
orv::MseqStep stepOfSender(int sender)
{
    const int bumper = sender / kSensorsPerBumper * kSensorsPerBumper;
    const int first = std::max(bumper, sender - kListeningReach);
    const int last = std::min(bumper + kSensorsPerBumper - 1, sender + kListeningReach);
    orv::MseqStep step;
    step.valid = true;
    step.activeMask = static_cast<std::uint16_t>(1U << sender);
    for (int sensor = first; sensor <= last; ++sensor)
        step.passiveMask |= static_cast<std::uint16_t>(1U << sensor);
    step.passiveMask &= static_cast<std::uint16_t>(~step.activeMask);
    return step;
}

orv::SensorThreshold defaultThreshold(std::uint8_t sensorId)
{
    return {.valid = true,
            .sensorId = sensorId,
            .entries = curveWithLevels(kDefaultLevels),
            .scale = 2};
}

orv::SensorMountPosition mountPosition(const MountDegrees& mount)
{
    return {.x = mount.x,
            .y = mount.y,
            .height = 520,
            .yaw = binaryAngle(mount.yaw),
            .pitch = binaryAngle(3),
            .roll = 0};
}

} // namespace

EcuState defaultEcuState()
{
    EcuState state;
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        state.sequence.push_back(stepOfSender(id));
        state.thresholds[id] = defaultThreshold(id);
        state.positions[id] = mountPosition(kMounts[id]);
    }
    state.keptThresholds = state.thresholds;
    return state;
}

} // namespace ecusim
