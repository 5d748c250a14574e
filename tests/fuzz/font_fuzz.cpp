// libFuzzer target: arbitrary bytes as a font file, parsed, subset and read back (a fault aborts).
#include <cstdio>
#include <cstdlib>

#include "fuzz/font_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string fault = font_input::Check(data, size);
    if (!fault.empty()) {
        std::fprintf(stderr, "font: %s\n", fault.c_str());
        std::abort();
    }
    return 0;
}
