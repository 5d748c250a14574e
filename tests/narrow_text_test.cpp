#include "platform/narrow_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using orderview::NarrowCharLength;
using orderview::NarrowCutPoint;
using orderview::NarrowToUtf16;
using orderview::Utf16ToNarrow;

#ifndef _WIN32
// The narrow code page off Windows is UTF-8.
TEST(NarrowText, Utf8ToUtf16ReplacesEachBadByteAndKeepsTheRest)
{
    struct Case {
        const char* name;
        std::string narrow;
        std::u16string wide;
    } cases[] = {
        {"ascii", "TXF 1", u"TXF 1"},
        {"chinese", "\xE5\x8F\xB0\xE7\xA9\x8D\xE9\x9B\xBB", u"台積電"},
        {"astral", "\xF0\x9F\x98\x80", u"\U0001F600"},
        {"lone lead at end", "A\xE5\x8F", u"A\uFFFD\uFFFD"},
        {"lone continuation", "\x80" "B", u"\uFFFD" "B"},
        {"overlong slash", "\xC0\xAF", u"\uFFFD\uFFFD"},
        {"overlong three bytes", "\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
        {"surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"past U+10FFFF", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"replacement character itself", "\xEF\xBF\xBD", u"\uFFFD"},
        {"nul inside", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NarrowToUtf16(c.narrow), c.wide) << c.name;
        if (c.wide.find(u'\uFFFD') == std::u16string::npos)  // well formed: back as it was
            EXPECT_EQ(Utf16ToNarrow(c.wide), c.narrow) << c.name;
    }
}

TEST(NarrowText, CharacterLengthsAndCutPointsFallBetweenCharacters)
{
    const std::string name = "元大台灣50";  // four three-byte characters, then two digits
    EXPECT_EQ(NarrowCharLength(name), 3u);
    EXPECT_EQ(NarrowCharLength("5"), 1u);
    EXPECT_EQ(NarrowCharLength(""), 0u);
    EXPECT_EQ(NarrowCharLength("\xE5\x8F"), 1u);  // cut short: one byte at a time
    struct Cut {
        size_t max, expected;
    } cuts[] = {{0, 0}, {1, 0}, {2, 0}, {3, 3}, {5, 3}, {12, 12}, {13, 13}, {14, 14}, {99, 14}};
    for (const auto& c : cuts) EXPECT_EQ(NarrowCutPoint(name, c.max), c.expected) << c.max;
}
#endif

TEST(NarrowText, AnyBytesWalkToTheirEndAndConvertWithoutLoss)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    bytes += "\xA4\xA4";  // Big5 for 中; in UTF-8 two stray bytes
    size_t steps = 0;
    for (size_t at = 0; at < bytes.size(); ++steps) {
        const size_t n = NarrowCharLength(std::string_view(bytes).substr(at));
        ASSERT_GE(n, 1u);
        at += n;
    }
    EXPECT_GE(steps, 128u);  // every ASCII byte is a character of its own
    const std::u16string wide = NarrowToUtf16(bytes);
    EXPECT_GE(wide.size(), 128u);
    EXPECT_EQ(wide.substr(0, 128), NarrowToUtf16(bytes.substr(0, 128)));
    EXPECT_EQ(Utf16ToNarrow(wide.substr(0, 128)), bytes.substr(0, 128));
}

}  // namespace
