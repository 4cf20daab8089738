#include "tools/ecu_simulator/SeededRandom.h"

namespace ecusim {

namespace {

// Spreads neighbouring seeds and streams over the whole range.
std::uint64_t scrambled(std::uint64_t value)
{
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}

} // namespace

SeededRandom::SeededRandom(std::uint64_t seed, std::uint64_t stream)
    : mEngine(scrambled(scrambled(seed) + stream))
{}

double SeededRandom::uniform()
{
    return static_cast<double>(mEngine() >> 11) * 0x1.0p-53;
}

double SeededRandom::gaussian()
{
    double sum = -6;
    for (int i = 0; i < 12; ++i)
        sum += uniform();
    return sum;
}

} // namespace ecusim
