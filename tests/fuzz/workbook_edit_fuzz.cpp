// libFuzzer target: a loaded (or new) workbook edited through Book, Sheet and Cell by a script
// taken from the input's last bytes must save to memory and load again unchanged.
#include <cstdio>
#include <cstdlib>

#include "fuzz/roundtrip_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string difference = roundtrip::EditedRoundTrip(data, size);
    if (!difference.empty()) {
        std::fprintf(stderr, "edited round trip: %s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
