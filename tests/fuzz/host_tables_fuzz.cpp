// Any bytes in the default host's order table: no crash or hang, and no line lost without a word.
// The first byte chooses whether a well-formed header row comes first, so most inputs reach the
// records.
#include <unistd.h>

#include "host_tables_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    std::string table;
    if (data[0] % 2 == 0) table = "list,csOrderNo,csAccount,dwOrderQty,csStatusMsg\n";
    table.append(reinterpret_cast<const char*>(data + 1), size - 1);
    static const std::string folder = "/tmp/orderview-host-fuzz-" + std::to_string(::getpid());
    const std::string failure = ovfuzz::CheckOrderTable(table, folder);
    if (!failure.empty()) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        std::abort();
    }
    return 0;
}
