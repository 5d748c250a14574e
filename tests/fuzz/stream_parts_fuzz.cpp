// libFuzzer target: a workbook stream read from its file in small parts against the same stream
// read from memory, and a workbook loaded from its file against its bytes (a difference aborts).
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "fuzz/stream_parts_input.h"

namespace {

// One scratch folder for the whole run, removed at exit.
struct ScratchFolder {
    ScratchFolder() : path(std::filesystem::temp_directory_path() / ("orderview_stream_parts_" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(path);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    const std::filesystem::path path;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ScratchFolder folder;
    const std::string difference = stream_parts::Compare(data, size, folder.path.string());
    if (!difference.empty()) {
        std::fprintf(stderr, "stream parts: %s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
