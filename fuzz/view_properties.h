#pragma once

#include <cstdint>
#include <span>

/// What holds of the views, whatever they are given. Each returns false where that breaks. They
/// need a QApplication, on the platform "offscreen".

/// The bytes tell datagrams, clicks and sizes: a view that is painted in between looks in the end
/// as one that never was.
bool liveViewHolds(std::span<const std::uint8_t> bytes);

/// The same of a plot, with its thresholds and modes.
bool plotHolds(std::span<const std::uint8_t> bytes);

/// The bytes tell datagrams, positions and what a user does: there is at most one freespace and one
/// marker a sensor, none of the former in edit mode, and the picture can be painted twice.
bool freespaceViewHolds(std::span<const std::uint8_t> bytes);
