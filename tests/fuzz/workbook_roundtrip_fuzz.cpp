// libFuzzer target: whatever Book loads must save to memory and load again unchanged.
#include <cstdio>
#include <cstdlib>

#include "fuzz/roundtrip_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string difference = roundtrip::RoundTrip(data, size);
    if (!difference.empty()) {
        std::fprintf(stderr, "round trip: %s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
