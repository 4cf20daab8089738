#pragma once

#include <optional>

/// Where a key leads from one of `count` slots of a timeline, numbered from the oldest on; Space
/// and Enter stay. None when the key has nothing to do with slots, or when there are none.
std::optional<int> slotAfterKey(int key, int slot, int count);
