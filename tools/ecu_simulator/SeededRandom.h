#pragma once

#include <cstdint>
#include <random>

namespace ecusim {

/// Random numbers that depend on the seed alone: the distributions are our own because those of
/// the standard library differ between its implementations.
class SeededRandom
{
public:
    /// `stream` separates sequences that share a seed, so that drawing from one leaves the others
    /// as they were.
    explicit SeededRandom(std::uint64_t seed, std::uint64_t stream = 0);

    /// 0 up to but not including 1.
    double uniform();

    /// Lower limit up to but not including the upper one.
    double uniform(double from, double to) { return from + (to - from) * uniform(); }

    /// Bell-shaped around 0 with standard deviation 1, never beyond 6.
    double gaussian();

    /// True for this share (0..1) of the calls.
    bool chance(double share) { return uniform() < share; }

    /// 0..limit-1; `limit` is at least 1.
    std::uint64_t below(std::uint64_t limit) { return mEngine() % limit; }

private:
    std::mt19937_64 mEngine;
};

} // namespace ecusim
