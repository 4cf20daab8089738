#pragma once

#include "orv_decoder/OrvFreespacePackage.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

/// Builds a freespace entry of a forward-looking field of view 1 m wide and 2 m deep:
/// anEntry(3).at(2500, 0, 16384).withDistance(1, 870, {600, 200}, {600, -200}).
class FreespaceBuilder
{
public:
    explicit FreespaceBuilder(std::uint8_t sensorId)
    {
        mEntry.valid = true;
        mEntry.sensorId = sensorId;
        mEntry.corners = {{{100, 500}, {2100, 500}, {2100, -500}, {100, -500}}};
        mEntry.arcEnds = {{{2300, 200}, {2300, -200}}};
    }

    FreespaceBuilder& at(std::int16_t x, std::int16_t y, std::uint16_t direction)
    {
        mEntry.position = {.leadingWord = 0, .x = x, .y = y, .direction = direction};
        return *this;
    }

    /// @param index 0 left, 1 middle, 2 right
    FreespaceBuilder& withDistance(std::size_t index, std::uint16_t distanceMm,
                                   orv::OrvPoint first = {}, orv::OrvPoint second = {})
    {
        mEntry.distances.at(index) = {
            .mode = 1, .distanceMm = distanceMm, .firstPoint = first, .secondPoint = second};
        return *this;
    }

    operator orv::OrvFreespaceEntry() const { return mEntry; }

private:
    orv::OrvFreespaceEntry mEntry;
};

inline FreespaceBuilder anEntry(std::uint8_t sensorId)
{
    return FreespaceBuilder(sensorId);
}

inline orv::OrvFreespacePackage aPackage(std::initializer_list<orv::OrvFreespaceEntry> entries)
{
    return {.valid = true, .entries = entries};
}
