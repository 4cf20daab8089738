#include "fuzz/decoder_properties.h"

#include <cstdlib>

// TARVIO_FUZZED is the property that this program tries to break.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!TARVIO_FUZZED({data, size}))
        std::abort();
    return 0;
}
