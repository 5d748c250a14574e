// Every input the fuzz targets ever found crashing is kept in tests/fuzz_regressions/ and fed
// again here, under the sanitizers in CI.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/compound_file_input.h"
#include "fuzz/workbook_input.h"

namespace {

std::vector<std::filesystem::path> Inputs(const char* target)
{
    std::vector<std::filesystem::path> files;
    const auto folder = std::filesystem::path(ORDERVIEW_FUZZ_REGRESSIONS) / target;
    if (std::filesystem::exists(folder))
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.is_regular_file()) files.push_back(entry.path());
    return files;
}

void FeedAll(const char* target, void (*feed)(const std::uint8_t*, std::size_t))
{
    const auto inputs = Inputs(target);
    for (const auto& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<std::uint8_t> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        SCOPED_TRACE(path.string());
        feed(data.data(), data.size());
    }
    EXPECT_FALSE(inputs.empty()) << "the seed inputs are missing";
}

TEST(FuzzRegressions, CompoundFile) { FeedAll("compound_file", FeedCompoundFile); }
TEST(FuzzRegressions, Workbook) { FeedAll("workbook", FeedWorkbook); }

}  // namespace
