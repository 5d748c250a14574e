// Any bytes in the default host's order table: no crash or hang, and no line lost without a word.
#include <unistd.h>

#include "host_tables_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string table = ovfuzz::OrderTableOf(data, size);
    static const std::string folder = "/tmp/orderview-host-fuzz-" + std::to_string(::getpid());
    const std::string failure = ovfuzz::CheckOrderTable(table, folder);
    if (!failure.empty()) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        std::abort();
    }
    return 0;
}
