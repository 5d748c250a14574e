// The TrueType reader and subsetter against the Chinese fonts Debian installs (fonts-arphic-uming,
// fonts-droid-fallback) and against damaged copies of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/detail/truetype_font.h"
#include "support/temp_folder.h"

namespace {

using orderview::TrueTypeFont;

const char kUming[] = "/usr/share/fonts/truetype/arphic/uming.ttc";
const char kDroid[] = "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf";
// 陳大文期貨 台積電 元大台灣
const char32_t kNames[] = {0x9673, 0x5927, 0x6587, 0x671F, 0x8CA8, 0x53F0, 0x7A4D, 0x96FB, 0x5143, 0x7063};

std::vector<std::uint8_t> Contents(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::uint32_t Be32(const std::string& s, std::size_t at)
{
    std::uint32_t v = 0;
    for (std::size_t k = 0; k < 4; ++k) v = (v << 8) | static_cast<std::uint8_t>(at + k < s.size() ? s[at + k] : 0);
    return v;
}

// A written font's table directory: every table's checksum right, and the file's sum the magic.
::testing::AssertionResult ChecksumsHold(const std::string& font)
{
    std::uint32_t whole = 0;
    for (std::size_t i = 0; i < font.size(); i += 4) whole += Be32(font, i);
    if (whole != 0xB1B0AFBAu) return ::testing::AssertionFailure() << "file sum " << std::hex << whole;
    const std::uint32_t tables = Be32(font, 4) >> 16;
    for (std::uint32_t t = 0; t < tables; ++t) {
        const std::size_t record = 12 + 16 * t;
        const std::string tag = font.substr(record, 4);
        const std::uint32_t at = Be32(font, record + 8), length = Be32(font, record + 12);
        if (at + static_cast<std::uint64_t>(length) > font.size()) return ::testing::AssertionFailure() << tag << " past the end";
        std::uint32_t sum = 0;
        for (std::uint32_t i = 0; i < length; i += 4) sum += Be32(font.substr(at, length), i);
        if (tag == "head") sum -= Be32(font, at + 8);  // checkSumAdjustment counts in the file, not the table
        if (sum != Be32(font, record + 4)) return ::testing::AssertionFailure() << tag << " checksum";
    }
    return ::testing::AssertionSuccess();
}

// Writes a subset of `font` holding the glyphs of `codePoints` that it has, and checks that it
// reads back with the same code points and widths; null when there is nothing to write.
std::unique_ptr<TrueTypeFont> SubsetReadsBack(const TrueTypeFont& font, const std::vector<char32_t>& wanted,
                                              std::string& subset)
{
    std::vector<std::uint16_t> glyphs;
    std::vector<char32_t> codePoints;
    for (const char32_t cp : wanted) {
        const std::uint16_t g = font.GlyphOf(cp);
        EXPECT_LT(g, font.GlyphCount());
        font.Advance(g);
        if (g) glyphs.push_back(g), codePoints.push_back(cp);
    }
    if (!font.WriteSubset(glyphs, codePoints, subset)) return nullptr;
    auto again = TrueTypeFont::FromMemory(reinterpret_cast<const std::uint8_t*>(subset.data()), subset.size());
    EXPECT_TRUE(again);
    if (!again) return nullptr;
    EXPECT_GE(again->GlyphCount(), static_cast<int>(glyphs.size()) + 1);
    for (std::size_t k = 0; k < glyphs.size(); ++k) {
        EXPECT_EQ(again->GlyphOf(codePoints[k]), k + 1);
        EXPECT_EQ(again->Advance(static_cast<std::uint16_t>(k + 1)), font.Advance(glyphs[k]));
    }
    return again;
}

// Whatever a damaged font answers for, it answers without reading out of bounds.
void ExerciseFont(const TrueTypeFont& font)
{
    std::string subset;
    SubsetReadsBack(font, {0x41, 0x4E2D, 0x9673, 0x1F600, 0x110000}, subset);
}

const std::vector<char32_t> kNameList(std::begin(kNames), std::end(kNames));

class RealFont : public ::testing::Test {
protected:
    std::unique_ptr<TrueTypeFont> Open(const char* path)
    {
        if (!std::ifstream(path).good()) return nullptr;
        return TrueTypeFont::FromFile(path);
    }
};

// Subsets hold the glyphs used; Droid Sans Fallback's ideographs are mostly built from component
// glyphs, which follow the glyphs asked for.
TEST_F(RealFont, SubsetHoldsTheGlyphsUsedAndReadsBack)
{
    for (const char* path : {kUming, kDroid}) {
        SCOPED_TRACE(path);
        const auto font = Open(path);
        if (!font) {
            std::printf("skipped: %s is not installed\n", path);
            continue;
        }
        const auto& m = font->Metrics();
        EXPECT_GT(m.iAscent, 500);
        EXPECT_LT(m.iDescent, 0);
        EXPECT_LT(m.iBox[0], m.iBox[2]);
        EXPECT_LT(m.iBox[1], m.iBox[3]);
        std::string subset;
        const auto again = SubsetReadsBack(*font, kNameList, subset);
        ASSERT_TRUE(again);
        EXPECT_TRUE(ChecksumsHold(subset));
        EXPECT_LT(subset.size(), 60000u) << "ten glyphs, not the font";
        EXPECT_EQ(again->GlyphOf(0x4E00), 0) << "a character not in the subset";
        if (path == kDroid) EXPECT_GT(again->GlyphCount(), 11) << "components follow the glyphs asked for";
        EXPECT_LT(again->GlyphCount(), 200);
        // Subsetting the subset again keeps every outline and component: the same file, byte
        // for byte.
        std::vector<std::uint16_t> same;
        for (std::size_t k = 0; k < kNameList.size(); ++k) same.push_back(static_cast<std::uint16_t>(k + 1));
        std::string twice;
        ASSERT_TRUE(again->WriteSubset(same, kNameList, twice));
        EXPECT_TRUE(twice == subset);
    }
}

TEST_F(RealFont, DamagedCopiesNeverReadOutOfBounds)
{
    const auto font = Open(kUming);
    if (!font) GTEST_SKIP() << kUming << " is not installed (fonts-arphic-uming)";
    std::string subset;
    ASSERT_TRUE(SubsetReadsBack(*font, kNameList, subset));
    const std::vector<std::uint8_t> good(subset.begin(), subset.end());

    // Cut short at every length: each either loads and works, or gives no font.
    int loaded = 0;
    for (std::size_t size = 0; size < good.size(); size += 7) {
        std::vector<std::uint8_t> cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        if (const auto f = TrueTypeFont::FromMemory(cut.data(), cut.size())) {
            ++loaded;
            ExerciseFont(*f);
        }
    }
    EXPECT_LT(loaded, static_cast<int>(good.size() / 7)) << "most cuts lose a table";

    // Bytes overwritten at random: no crash, and whatever loads still subsets.
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::uint8_t> bad = good;
        for (int k = 0; k < 1 + round % 8; ++k) bad[random() % bad.size()] = static_cast<std::uint8_t>(random());
        if (const auto f = TrueTypeFont::FromMemory(bad.data(), bad.size())) ExerciseFont(*f);
    }

    // The collection cut inside its directories and tables.
    const std::vector<std::uint8_t> whole = Contents(kUming);
    for (const std::size_t size : {std::size_t(0), std::size_t(4), std::size_t(12), std::size_t(27), std::size_t(100),
                                   std::size_t(1500), std::size_t(100000), std::size_t(3056100), whole.size() - 1})
        if (const auto f = TrueTypeFont::FromMemory(whole.data(), size)) ExerciseFont(*f);
}

TEST(FontFiles, WhatIsNotAFontGivesNoFont)
{
    ovtest::TempFolder folder;
    folder.Write("text.ttf", "this is not a font\n");
    folder.Write("empty.ttf", "");
    // A collection of three faces, none usable: one past the end, two with no tables.
    std::string collection("ttcf\0\1\0\0\0\0\0\3", 12);
    collection += std::string("\0\0\0\x18\0\0\0\x24\x7F\0\0\0", 12);
    collection += std::string("\0\1\0\0\0\0\0\0\0\0\0\0", 12);
    collection += std::string("\0\1\0\0\xFF\xFF\0\0\0\0\0\0", 12);
    folder.Write("none.ttc", collection);
    for (const char* name : {"text.ttf", "empty.ttf", "none.ttc", "missing.ttf"})
        EXPECT_FALSE(TrueTypeFont::FromFile(folder.File(name))) << name;
    EXPECT_FALSE(TrueTypeFont::FromMemory(nullptr, 100));
    EXPECT_FALSE(TrueTypeFont::FromMemory(reinterpret_cast<const std::uint8_t*>(collection.data()), collection.size()));
    std::mt19937 random(11);
    std::vector<std::uint8_t> noise(4096);
    for (int round = 0; round < 200; ++round) {
        for (auto& b : noise) b = static_cast<std::uint8_t>(random());
        if (round % 2) std::copy_n("ttcf\0\1\0\0\0\0\0\4", 12, noise.begin());
        EXPECT_FALSE(TrueTypeFont::FromMemory(noise.data(), noise.size()));
    }
}

}  // namespace
