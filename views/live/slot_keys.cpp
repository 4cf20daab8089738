#include "views/live/slot_keys.h"

#include <Qt>

#include <algorithm>

std::optional<int> slotAfterKey(int key, int slot, int count)
{
    if (count <= 0)
        return std::nullopt;
    const int last = count - 1;
    switch (key) {
    case Qt::Key_Left:
        return std::clamp(slot - 1, 0, last);
    case Qt::Key_Right:
        return std::clamp(slot + 1, 0, last);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    case Qt::Key_Space:
    case Qt::Key_Enter:
    case Qt::Key_Return:
        return std::clamp(slot, 0, last);
    default:
        return std::nullopt;
    }
}
