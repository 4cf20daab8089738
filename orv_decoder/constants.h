#pragma once

#include <cstddef>
#include <cstdint>

namespace orv {

/// Sensors of the ECU: numbered 0..11 in the program and on the wire, shown as 1..12.
inline constexpr std::uint8_t kSensorCount = 12;

/// Stands for "no sensor" where a sensor number is expected.
inline constexpr std::uint8_t kNoSensor = 255;

/// The longest measurement sequence that the ECU holds.
inline constexpr std::size_t kMaxStepCount = 12;

/// Segments of a sensor's threshold curve.
inline constexpr std::size_t kThresholdEntryCount = 12;

/// Full scale of pictures and plots in microseconds.
inline constexpr std::int32_t kMaxTimeOfFlightUs = 30000;

/// The strongest magnitude code that the ECU sends in practice.
inline constexpr std::uint8_t kMaxMagnitude = 15;

/// No datagram of the ECU is longer; longer ones are cut by the socket layer.
inline constexpr std::size_t kMaxDatagramSize = 1440;

} // namespace orv
