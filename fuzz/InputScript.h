#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

/// Reads the bytes of a fuzzer's input as decisions, one after the other. Past the end each of them
/// is 0 or empty, so that every input means something. The bytes are borrowed.
class InputScript
{
public:
    explicit InputScript(std::span<const std::uint8_t> bytes) : mLeft(bytes) {}

    bool isAtEnd() const { return mLeft.empty(); }

    std::uint8_t byte()
    {
        const auto taken = take(1);
        return taken.empty() ? std::uint8_t{0} : taken.front();
    }

    /// The high byte first.
    std::uint16_t word()
    {
        const unsigned high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }

    bool flag() { return (byte() & 1) != 0; }

    /// 0 to `limit` - 1; the limit is no larger than 256.
    unsigned below(unsigned limit) { return byte() % limit; }

    /// As many bytes as the next word says, or what is left.
    std::vector<std::uint8_t> block()
    {
        const auto taken = take(word());
        return {taken.begin(), taken.end()};
    }

private:
    std::span<const std::uint8_t> take(std::size_t count)
    {
        const auto taken = mLeft.first(std::min(count, mLeft.size()));
        mLeft = mLeft.subspan(taken.size());
        return taken;
    }

    std::span<const std::uint8_t> mLeft;
};
