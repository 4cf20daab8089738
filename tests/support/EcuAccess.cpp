#include "tests/support/EcuAccess.h"

namespace {

orv::MseqStep stepOf(int seed, int index)
{
    const auto sensor = static_cast<unsigned>((seed + index) % 11);
    return {.valid = true,
            .activeMask = static_cast<std::uint16_t>(1U << sensor),
            .passiveMask = static_cast<std::uint16_t>(1U << (sensor + 1)),
            .modulation = static_cast<std::uint16_t>((seed + index) % 2),
            .code = static_cast<std::uint16_t>((seed + index) % 2),
            .fifthValue = static_cast<std::uint16_t>(1000 + 31 * seed + index)};
}

orv::SensorThreshold thresholdOf(int seed, std::uint8_t sensor)
{
    orv::SensorThreshold threshold{.valid = true, .sensorId = sensor};
    for (std::size_t index = 0; index < threshold.entries.size(); ++index)
        threshold.entries[index] =
            static_cast<std::uint8_t>(31 * seed + 7 * sensor + 11 * static_cast<int>(index));
    threshold.scale = static_cast<std::uint8_t>((seed + sensor) % 4);
    return threshold;
}

orv::SensorMountPosition positionOf(int seed, int sensor)
{
    const int base = 100 * sensor + seed;
    return {.x = static_cast<std::int16_t>(base - 500),
            .y = static_cast<std::int16_t>(500 - base),
            .height = static_cast<std::uint16_t>(base),
            .yaw = static_cast<std::uint16_t>(5461 * sensor + 91 * seed),
            .pitch = static_cast<std::uint16_t>(182 * sensor + 13 * seed),
            .roll = static_cast<std::uint16_t>(65535 - base)};
}

} // namespace

EcuConfiguration configurationOfSeed(int seed)
{
    EcuConfiguration configuration;
    for (int index = 0; index < 3; ++index)
        configuration.sequence.push_back(stepOf(seed, index));
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        configuration.thresholds[sensor] = thresholdOf(seed, sensor);
        configuration.positions[sensor] = positionOf(seed, sensor);
    }
    return configuration;
}

bool EcuAccess::write(const EcuConfiguration& configuration)
{
    return configuration.writeTo(mClient).isEmpty();
}

EcuConfiguration EcuAccess::read()
{
    EcuConfiguration configuration;
    configuration.readFrom(mClient);
    return configuration;
}
