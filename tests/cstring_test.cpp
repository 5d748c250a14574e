#include <gtest/gtest.h>

#include <string>

#include "order_data/cstring.h"

namespace {

TEST(CString, FindFromPositions)
{
    const CString s("a,b,,c");
    EXPECT_EQ(s.Find(','), 1);
    EXPECT_EQ(s.Find(',', 2), 3);
    EXPECT_EQ(s.Find(',', 5), -1);
    EXPECT_EQ(s.Find(',', 100), -1);
    EXPECT_EQ(s.Find(',', -4), 1);
    EXPECT_EQ(s.Find(",,"), 3);
    EXPECT_EQ(s.Find(",,", 4), -1);
    EXPECT_EQ(s.Find("", 2), 2);
    EXPECT_EQ(s.Find(static_cast<const char*>(nullptr)), -1);
    EXPECT_EQ(s.ReverseFind(','), 4);
    EXPECT_EQ(s.FindOneOf("cb"), 2);
}

TEST(CString, TrimBlanksAndGivenCharacters)
{
    struct Case { const char* in; const char* both; const char* left; const char* right; };
    const Case cases[] = {
        {"  a b \t\r\n", "a b", "a b \t\r\n", "  a b"},
        {"", "", "", ""},
        {" \t ", "", "", ""},
        {"x", "x", "x", "x"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CString(c.in).Trim(), c.both);
        EXPECT_EQ(CString(c.in).TrimLeft(), c.left);
        EXPECT_EQ(CString(c.in).TrimRight(), c.right);
    }
    EXPECT_EQ(CString("00120.500").TrimRight('0'), "00120.5");
    EXPECT_EQ(CString("00120.500").TrimLeft('0'), "120.500");
    EXPECT_EQ(CString("xyhixy").Trim("xy"), "hi");
    EXPECT_EQ(CString("0000").TrimRight('0'), "");
}

TEST(CString, ReplaceCountsAndHandlesGrowth)
{
    CString s("a-b-c");
    EXPECT_EQ(s.Replace('-', '+'), 2);
    EXPECT_EQ(s, "a+b+c");
    EXPECT_EQ(s.Replace("+", "<->"), 2);
    EXPECT_EQ(s, "a<->b<->c");
    EXPECT_EQ(s.Replace("<->", ""), 2);
    EXPECT_EQ(s, "abc");
    EXPECT_EQ(s.Replace("", "x"), 0);
    EXPECT_EQ(s.Replace("zz", "x"), 0);
    CString overlap("aaaa");
    EXPECT_EQ(overlap.Replace("aa", "a"), 2);
    EXPECT_EQ(overlap, "aa");
}

TEST(CString, KeepsHighBytesAndComparesUnsigned)
{
    const CString big5("\xA4\xA4\xA4\xE5");  // two double-byte characters
    EXPECT_EQ(big5.GetLength(), 4);
    EXPECT_EQ(static_cast<unsigned char>(big5[0]), 0xA4);
    EXPECT_EQ(CString("\xA4").Compare("a"), 1);  // 0xA4 sorts after 'a'
    EXPECT_TRUE(CString("a") < CString("\xA4"));
    CString upper(big5);
    upper.MakeUpper();
    EXPECT_EQ(upper, big5);
}

TEST(CString, ComparisonsAndConcatenation)
{
    const CString a("Order");
    EXPECT_TRUE(a == "Order");
    EXPECT_TRUE("Order" == a);
    EXPECT_TRUE(a != "order");
    EXPECT_EQ(a.CompareNoCase("ORDER"), 0);
    EXPECT_LT(a.CompareNoCase("orders"), 0);
    EXPECT_EQ(a.Compare(nullptr), 1);
    EXPECT_EQ(a + "-" + CString("1") + '2', "Order-12");
    EXPECT_EQ('<' + a, "<Order");
    CString b;
    b += a;
    b += static_cast<const char*>(nullptr);
    b += '!';
    EXPECT_EQ(b, "Order!");
    EXPECT_STREQ(static_cast<const char*>(b), "Order!");
    EXPECT_EQ(CString(static_cast<const char*>(nullptr)), "");
}

TEST(CString, EmbeddedNulAndCharacterAccess)
{
    CString s("ab\0cd", 5);
    EXPECT_EQ(s.GetLength(), 5);
    EXPECT_NE(s, CString("ab"));
    EXPECT_EQ(s[3], 'c');
    EXPECT_EQ(s[99], '\0');
    EXPECT_EQ(s[-1], '\0');
    s.SetAt(99, 'x');  // ignored
    s.SetAt(0, 'A');
    EXPECT_EQ(s.Left(2), "Ab");
    const CString t("abcdef");  // substring positions out of range are clamped
    EXPECT_EQ(t.Mid(-3, 2), "ab");
    EXPECT_EQ(t.Mid(4, 10), "ef");
    EXPECT_EQ(t.Mid(1, -1), "");
    EXPECT_EQ(t.Left(-1), "");
    EXPECT_EQ(t.Right(99), "abcdef");
}

TEST(CString, EditingOperations)
{
    CString s("hello");
    EXPECT_EQ(s.Insert(0, '>'), 6);
    EXPECT_EQ(s.Insert(99, "<"), 7);
    EXPECT_EQ(s, ">hello<");
    EXPECT_EQ(s.Delete(1, 2), 5);
    EXPECT_EQ(s, ">llo<");
    EXPECT_EQ(s.Delete(3, 100), 3);
    EXPECT_EQ(s.Remove('l'), 2);
    EXPECT_EQ(s, ">");
    CString r("abc");
    EXPECT_EQ(r.MakeReverse(), "cba");
    EXPECT_EQ(CString("12ab").SpanIncluding("0123456789"), "12");
    EXPECT_EQ(CString("12ab").SpanExcluding("b"), "12a");
    CString buffer;
    char* raw = buffer.GetBuffer(16);
    std::snprintf(raw, 16, "%s", "raw");
    buffer.ReleaseBuffer();
    EXPECT_EQ(buffer, "raw");
    buffer.Format("[%s]", std::string(100000, 'q').c_str());  // formatting has no length limit
    buffer.AppendFormat("%05.1f", 2.25);
    EXPECT_EQ(buffer.GetLength(), 100007);
    EXPECT_EQ(buffer.Right(6), "]002.2");
}

}  // namespace
