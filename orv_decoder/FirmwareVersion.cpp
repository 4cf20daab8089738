#include "orv_decoder/FirmwareVersion.h"

namespace orv {

std::string FirmwareVersion::text() const
{
    return std::to_string(numbers[0]) + '.' + std::to_string(numbers[1]) + '.' +
           std::to_string(numbers[2]);
}

} // namespace orv
