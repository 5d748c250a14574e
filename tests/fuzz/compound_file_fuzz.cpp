// libFuzzer target: compound file Open plus a read of every stream.
#include "fuzz/compound_file_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FeedCompoundFile(data, size);
    return 0;
}
