// Terminal columns of narrow (UTF-8 here) text: wide and fullwidth characters take two,
// combining marks none, and cuts fall between characters.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "display_width.h"
#include "platform/narrow_text.h"

namespace {

TEST(DisplayWidth, CodePoints)
{
    const struct {
        char32_t cp;
        int width;
    } cases[] = {
        {U'A', 1},      {U' ', 1},      {0x07, 0},      {0x7F, 0},      {0xE9, 1},       // ASCII, Latin-1, controls
        {0x0301, 0},    {0x20DD, 0},    {0xFE0F, 0},    {0x200B, 0},                      // combining, selectors
        {0x1100, 2},    {0x1160, 1},    {0x2E80, 2},    {0x3000, 2},    {0x303F, 1},      // Hangul Jamo, CJK marks
        {0x3042, 2},    {0x4DBF, 2},    {0x4DC0, 1},    {0x4E00, 2},    {0x53F0, 2},      // kana, ideographs
        {0x9FFF, 2},    {0xA48C, 2},    {0xA4D0, 1},    {0xAC00, 2},    {0xD7A3, 2},      // Hangul syllables
        {0xD7B0, 1},    {0xF900, 2},    {0xFE30, 2},    {0xFF01, 2},    {0xFF10, 2},      // fullwidth forms
        {0xFF60, 2},    {0xFF61, 1},    {0xFF71, 1},    {0xFFE0, 2},    {0xFFE7, 1},      // halfwidth katakana
        {0x1F600, 2},   {0x1F321, 1},   {0x20000, 2},   {0x2FFFD, 2},   {0x3FFFE, 1},
    };
    for (const auto& c : cases) EXPECT_EQ(ovcli::CodePointWidth(c.cp), c.width) << std::hex << c.cp;
}

TEST(DisplayWidth, NarrowTextAndCuts)
{
    const std::string tsmc = "\xE5\x8F\xB0\xE7\xA9\x8D\xE9\x9B\xBB";  // three ideographs, 9 bytes
    const struct {
        std::string text;
        std::size_t width;
        std::size_t columns;    // cut to this many columns ...
        std::size_t cutBytes;   // ... keeps this many bytes
        std::size_t cutWidth;   // ... taking this many columns
    } cases[] = {
        {"", 0, 5, 0, 0},
        {"F000123", 7, 4, 4, 4},
        {tsmc, 6, 6, 9, 6},
        {tsmc, 6, 5, 6, 4},                                         // no half character
        {tsmc, 6, 1, 0, 0},
        {"2330 " + tsmc, 11, 6, 5, 5},
        {"e\xCC\x81" "a", 2, 1, 3, 1},                              // the mark stays with its letter
        {"\xEF\xBC\xA1\xEF\xBD\xB1", 3, 2, 3, 2},                   // fullwidth A, halfwidth katakana
        {"\xF0\x9F\x98\x80x", 3, 3, 5, 3},                          // a character outside the BMP
        {"\xFF\xFE" "ab", 4, 3, 3, 3},                              // bad bytes: one column each
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ovcli::DisplayWidth(c.text), c.width) << c.text;
        std::size_t width = 99;
        EXPECT_EQ(ovcli::CutToWidth(c.text, c.columns, width), c.cutBytes) << c.text << " to " << c.columns;
        EXPECT_EQ(width, c.cutWidth) << c.text << " to " << c.columns;
    }
    EXPECT_EQ(ovcli::PadToWidth(tsmc, 8), tsmc + "  ");
    EXPECT_EQ(ovcli::PadToWidth(tsmc, 4), tsmc);
}

// A text is measured in one conversion; that must come to what its characters measure one by one,
// for any bytes: broken sequences, lone continuation bytes, controls and marks included.
TEST(DisplayWidth, WholeTextMeasuresAsItsCharacters)
{
    const std::string pieces[] = {"a", " ", "\x07", "\xE5\x8F\xB0", "\xCC\x81", "\xF0\x9F\x98\x80", "\xE5\x8F",
                                  "\x8F", "\xFF", "\xEF\xBC\xA1", "\xED\xA0\x80", "\xC0\xAF", "\x7F"};
    std::mt19937 random(20261126);
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (int n = static_cast<int>(random() % 12); n > 0; --n) text += pieces[random() % std::size(pieces)];
        std::size_t expected = 0;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = orderview::NarrowCharLength(std::string_view(text).substr(at));
            const std::u16string units = orderview::NarrowToUtf16(std::string_view(text).substr(at, length));
            char32_t cp = units.empty() ? 0xFFFD : units[0];
            if (units.size() == 2 && cp >= 0xD800 && cp <= 0xDBFF) cp = 0x10000 + ((cp - 0xD800) << 10) + (units[1] - 0xDC00);
            expected += static_cast<std::size_t>(ovcli::CodePointWidth(cp));
            at += length;
        }
        ASSERT_EQ(ovcli::DisplayWidth(text), expected) << i;
        std::size_t width = 0;
        ASSERT_EQ(ovcli::CutToWidth(text, expected, width), text.size()) << i;
        ASSERT_EQ(width, expected);
    }
}

}  // namespace
