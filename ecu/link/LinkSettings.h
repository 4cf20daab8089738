#pragma once

#include <QString>

#include <cstdint>

/// What the link to the ECU is made of.
struct LinkSettings
{
    QString ecuIp;                   ///< dotted; empty when the store has none
    std::uint16_t controlPort = 0;   ///< of the ECU
    std::uint16_t receivePort = 0;   ///< of the host: measurement results
    std::uint16_t freespacePort = 0; ///< of the host: freespace packages; 0 = the ECU sends none
};
