#include <gtest/gtest.h>

#include "xls/utf16.h"

namespace {

TEST(Utf16, WideTextRoundTrips)
{
    const std::wstring texts[] = {L"", L"Workbook", L"\u5de5\u4f5c\u8868\u4e00", L"caf\u00e9"};
    for (const auto& text : texts) EXPECT_EQ(xls::FromUtf16(xls::ToUtf16(text)), text);
    EXPECT_EQ(xls::ToUtf16(L"A\u4e2d"), u"A\u4e2d");
}

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
}

TEST(Utf16, MalformedUtf8BecomesReplacementCharacters)
{
    struct Case { std::string in; std::u16string out; };
    const Case cases[] = {
        {"abc", u"abc"},
        {"\xC3\xA9", u"\u00e9"},
        {"\xC3", u"\xFFFD"},                 // cut short
        {"\xE4\xB8", u"\xFFFD\xFFFD"},
        {"\xC0\xAF", u"\xFFFD\xFFFD"},       // overlong
        {"\xED\xA0\x80", u"\xFFFD\xFFFD\xFFFD"},  // an encoded surrogate
        {"\xFF", u"\xFFFD"},
        {"\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},  // above U+10FFFF
    };
    for (const auto& c : cases) EXPECT_EQ(xls::Utf8ToUtf16(c.in), c.out) << c.in;
}

}  // namespace
