// libFuzzer target: Book loading (compound file, workbook globals, every sheet) from memory.
#include "fuzz/workbook_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FeedWorkbook(data, size);
    return 0;
}
