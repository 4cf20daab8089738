#include "views/freespace/FreespaceAges.h"

namespace {

constexpr std::uint8_t kFirstAge = 50;
constexpr std::uint8_t kMatureAge = 55;
constexpr std::uint8_t kGrowth = 12;

void grow(std::uint8_t& age)
{
    if (age < kMatureAge)
        age = static_cast<std::uint8_t>(age + kGrowth);
}

// False when nothing was left to take.
bool shrink(std::uint8_t& age)
{
    if (age == 0)
        return false;
    --age;
    return true;
}

} // namespace

SensorSet FreespaceAges::advance(const SensorSet& withMarker, const SensorSet& reporting)
{
    SensorSet over;
    for (std::size_t id = 0; id < mAges.size(); ++id) {
        if (!withMarker[id])
            continue;
        std::uint8_t& age = mAges[id] ? *mAges[id] : mAges[id].emplace(kFirstAge);
        if (reporting[id])
            grow(age);
        else
            over[id] = !shrink(age);
    }
    return over;
}
