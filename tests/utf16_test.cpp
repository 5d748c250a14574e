#include <gtest/gtest.h>

#include "xls/utf16.h"

namespace {

TEST(Utf16, SurrogatePairs)
{
    const std::u16string pair = {0xD83D, 0xDE00};  // U+1F600
    const std::wstring wide = xls::FromUtf16(pair);
    if (sizeof(wchar_t) == 4) {
        ASSERT_EQ(wide.size(), 1u);
        EXPECT_EQ(static_cast<char32_t>(wide[0]), U'\U0001F600');
    } else {
        EXPECT_EQ(wide.size(), 2u);
    }
    EXPECT_EQ(xls::ToUtf16(wide), pair);
    EXPECT_EQ(xls::Utf16ToUtf8(pair), "\xF0\x9F\x98\x80");
    EXPECT_EQ(xls::Utf8ToUtf16("\xF0\x9F\x98\x80"), pair);
    // A lone surrogate stays itself in wide text and becomes U+FFFD in UTF-8.
    const std::u16string lone = {0xD800, u'x'};
    EXPECT_EQ(xls::ToUtf16(xls::FromUtf16(lone)), lone);
    EXPECT_EQ(xls::Utf16ToUtf8(lone), "\xEF\xBF\xBDx");
    EXPECT_EQ(xls::Utf16ToUtf8(u"x" + std::u16string(1, u'\xDC00')), "x\xEF\xBF\xBD");
}

}  // namespace
