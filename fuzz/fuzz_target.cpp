#include <cstdint>
#include <cstdlib>
#include <span>

// TARVIO_FUZZED is the property that this program tries to break.
bool TARVIO_FUZZED(std::span<const std::uint8_t> bytes);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!TARVIO_FUZZED({data, size}))
        std::abort();
    return 0;
}
