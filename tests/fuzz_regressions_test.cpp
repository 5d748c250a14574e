// Every input the fuzz targets ever found crashing is kept in tests/fuzz_regressions/ and fed
// again here, under the sanitizers in CI.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <fstream>
#include <iterator>

#include "fuzz/compound_file_input.h"
#include "fuzz/font_input.h"
#include "fuzz/roundtrip_input.h"
#include "fuzz/stream_parts_input.h"
#include "fuzz/workbook_input.h"
#include "support/temp_folder.h"

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

std::vector<std::uint8_t> Contents(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void FeedAll(const char* target, void (*feed)(const std::uint8_t*, std::size_t))
{
    const auto inputs = Inputs(target);
    for (const auto& path : inputs) {
        const std::vector<std::uint8_t> data = Contents(path);
        SCOPED_TRACE(path.string());
        feed(data.data(), data.size());
    }
    EXPECT_FALSE(inputs.empty()) << "the seed inputs are missing";
}

// A checking target's own findings, and every workbook input kept for the loader.
void CheckAll(const char* target, const std::function<std::string(const std::uint8_t*, std::size_t)>& check)
{
    auto inputs = Inputs(target);
    const auto loader = Inputs("workbook");
    inputs.insert(inputs.end(), loader.begin(), loader.end());
    for (const auto& path : inputs) {
        const std::vector<std::uint8_t> data = Contents(path);
        EXPECT_EQ(check(data.data(), data.size()), "") << path.string();
    }
    EXPECT_FALSE(inputs.empty()) << "the seed inputs are missing";
}

TEST(FuzzRegressions, CompoundFile) { FeedAll("compound_file", FeedCompoundFile); }
TEST(FuzzRegressions, Workbook) { FeedAll("workbook", FeedWorkbook); }
TEST(FuzzRegressions, WorkbookRoundTrip) { CheckAll("workbook_roundtrip", roundtrip::RoundTrip); }
TEST(FuzzRegressions, WorkbookEdit) { CheckAll("workbook_edit", roundtrip::EditedRoundTrip); }

TEST(FuzzRegressions, Font) { CheckAll("font", font_input::Check); }

TEST(FuzzRegressions, StreamParts)
{
    ovtest::TempFolder folder;
    CheckAll("stream_parts", [&](const std::uint8_t* data, std::size_t size) {
        return stream_parts::Compare(data, size, folder.path());
    });
}

}  // namespace
