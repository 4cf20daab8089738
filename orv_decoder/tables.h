#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orv {

/// Duration of a threshold segment in microseconds, by time index.
inline constexpr std::array<double, 8> kSegmentDurationsUs = {204.8,  409.6,  819.2, 1228.8,
                                                              1638.4, 2662.4, 4096,  6144};

/// Level of a threshold segment as a fraction of full scale, by level index: 10^(dB / 20) of the
/// two-decimal figures below, rounded to six significant digits.
inline constexpr std::array<float, 32> kThresholdLevels = {
    0.016387F,  0.018281F,  0.0203939F, 0.022751F,  0.0254097F, 0.0283465F, 0.0316228F, 0.0352777F,
    0.039355F,  0.0439542F, 0.0490343F, 0.0547016F, 0.0610239F, 0.0681554F, 0.0760326F, 0.0848203F,
    0.0946237F, 0.105682F,  0.117896F,  0.131522F,  0.146724F,  0.16387F,   0.18281F,   0.203939F,
    0.22751F,   0.254097F,  0.283465F,  0.316228F,  0.352777F,  0.39355F,   0.439542F,  0.490343F};

/// The same levels in decibels of full scale, by level index: the sensor's own steps of 20/21 dB.
inline constexpr std::array<float, 32> kThresholdLevelsDb = {
    -35.71F, -34.76F, -33.81F, -32.86F, -31.9F,  -30.95F, -30.0F,  -29.05F,
    -28.1F,  -27.14F, -26.19F, -25.24F, -24.29F, -23.33F, -22.38F, -21.43F,
    -20.48F, -19.52F, -18.57F, -17.62F, -16.67F, -15.71F, -14.76F, -13.81F,
    -12.86F, -11.9F,  -10.95F, -10.0F,  -9.05F,  -8.1F,   -7.14F,  -6.19F};

/// Echo magnitude in decibels of full scale, by magnitude code.
inline constexpr std::array<float, 16> kMagnitudesDb = {
    -29.12F, -27.74F, -25.85F, -24.01F, -22.05F, -20.18F, -18.27F, -16.42F,
    -14.52F, -12.58F, -10.69F, -8.8F,   -6.9F,   -4.99F,  -3.09F,  -1.19F};

/// Echo magnitude as a fraction of full scale, by magnitude code.
inline constexpr std::array<float, 16> kMagnitudeLevels = {
    0.0349945F, 0.0410204F, 0.0509918F, 0.0630231F, 0.0789769F, 0.0979490F, 0.1220390F, 0.1510080F,
    0.1879320F, 0.2349630F, 0.2920790F, 0.3630780F, 0.4518560F, 0.5629890F, 0.7006480F, 0.8719670F};

/// The table index of a magnitude code; codes above 15 use the last entry.
constexpr std::size_t magnitudeIndex(std::uint16_t code)
{
    return code < kMagnitudeLevels.size() ? code : kMagnitudeLevels.size() - 1;
}

} // namespace orv
