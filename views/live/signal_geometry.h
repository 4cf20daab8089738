#pragma once

#include "orv_decoder/constants.h"

#include <QRectF>

#include <algorithm>
#include <cstdint>

/// Where an echo lies in an echo picture. All sizes are pixels, all arithmetic truncates.
namespace signal_geometry {

/// Left end of every echo line, clear of the frame.
inline constexpr int kEchoLineStart = 2;

/// What both frame edges together take from the width and from the height.
inline constexpr int kFrameSpace = 4;

/// Right end of an echo's line; the echo is drawn only when it is above 0. Magnitudes above 15
/// give an end beyond the picture.
constexpr int echoLineEnd(std::uint8_t magnitude, int width)
{
    return static_cast<int>(std::int64_t{magnitude} * (width - kFrameSpace) / orv::kMaxMagnitude) -
           1;
}

/// Height of an echo's line: 0 ms at the bottom, 30 ms at the top, later ones above the picture.
constexpr int echoLineY(std::uint16_t timeOfFlightUs, int height)
{
    const int usable = height - kFrameSpace;
    return usable -
           static_cast<int>(std::int64_t{timeOfFlightUs} * usable / orv::kMaxTimeOfFlightUs);
}

/// What a line of width 1 from kEchoLineStart to `end` covers; `end` may lie left of the start.
///
/// A filled rectangle costs a tenth of the line and, at every device pixel ratio, gives its pixels.
inline QRectF echoLineRect(int end, int y)
{
    const auto [left, right] = std::minmax(kEchoLineStart, end);
    return {left - 0.5, y - 0.5, right - left + 1.0, 1.0};
}

} // namespace signal_geometry
