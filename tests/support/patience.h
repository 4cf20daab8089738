#pragma once

#include <cstdint>

/// How long a test waits for a reply that does come, on however busy a machine.
inline constexpr std::uint32_t kAnswerPatienceMs = 10000;
