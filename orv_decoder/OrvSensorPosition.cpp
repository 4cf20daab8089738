#include "orv_decoder/OrvSensorPosition.h"

namespace orv {

// The yaw is copied, not converted: 65535 to the turn lets the display tell 360 degrees from 0.
OrvSensorPosition planarPosition(const SensorMountPosition& mount)
{
    return {.leadingWord = 0, .x = mount.x, .y = mount.y, .direction = mount.yaw};
}

SensorMountPosition movedTo(SensorMountPosition mount, const OrvSensorPosition& position)
{
    mount.x = position.x;
    mount.y = position.y;
    mount.yaw = position.direction;
    return mount;
}

} // namespace orv
