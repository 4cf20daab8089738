#pragma once

#include <cstdint>
#include <span>

/// The bytes tell what the settings store holds of the window's looks: the restored window can be
/// worked with. Returns false where it cannot. Needs a QApplication, on the platform "offscreen".
bool savedStatesHold(std::span<const std::uint8_t> bytes);
