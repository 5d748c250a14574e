#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "format/normalize.h"
#include "support/substitute_host.h"

namespace {

TEST(NormalizDoubleByDigit, FixedDecimals)
{
    struct Case { double value; int digits; const char* text; };
    const Case cases[] = {
        {1.5, 2, "1.50"}, {1.005, 0, "1"}, {-2.25, 1, "-2.2"}, {7, -3, "7"}, {0.1, 20, "0.10000000000000000555"},
    };
    for (const auto& c : cases) EXPECT_EQ(g_cszNormalizDoubleByDigit(c.value, c.digits), c.text);
    EXPECT_EQ(g_cszNormalizDoubleByDigit(1.0, 2000000000).GetLength(), 2 + 999999);
    // The decimals are written without printf, but must be printf's to the byte: ties to even,
    // subnormals and the widest doubles included, then random bit patterns and prices.
    std::vector<double> values = {0.5, 2.5, -2.5, 0.125, 1e-310, 5e-324, 1.7976931348623157e308, 0.05,
                                  4503599627370497.0};
    std::mt19937_64 random(20261126);
    for (int i = 0; i < 4000; ++i) {
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) values.push_back(value);
        values.push_back(static_cast<double>(static_cast<std::int64_t>(bits >> 20)) / 1000.0);
    }
    char expected[400];
    for (double value : values)
        for (int digits = 0; digits <= 30; digits += (digits < 10 ? 1 : 7)) {
            std::snprintf(expected, sizeof expected, "%.*f", digits, value);
            ASSERT_EQ(g_cszNormalizDoubleByDigit(value, digits), expected) << digits << " " << value;
        }
    // Without a digit count: eight decimals, trailing zeros cut, in the same shared result.
    const Case cut[] = {
        {-0.0, 0, "0"}, {-0.000000004, 0, "-0"}, {0.00000001, 0, "0.00000001"}, {3.0, 0, "3"},
        {std::numeric_limits<double>::quiet_NaN(), 0, "nan"},
        {std::numeric_limits<double>::infinity(), 0, "inf"},
    };
    for (const auto& c : cut) EXPECT_EQ(g_cszNormalizDouble(c.value), c.text) << c.value;
    EXPECT_EQ(&g_cszNormalizDouble(1.5), &g_cszNormalizDoubleByDigit(2.0, 3));
}

TEST(NormalizCstring, GroupsThousands)
{
    struct Case { const char* in; const char* out; };
    const Case cases[] = {
        {"1234567.89", "1,234,567.89"}, {"123456", "123,456"}, {"-1234", "-1,234"}, {"999.5", "999.5"},
        {"1000", "1,000"},              {"12|34567", "12|34,567"}, {"1234\n5678", "1,234\n5,678"},
        {"101 12/32", "101 12/32"},     {"1234 5/8", "1,234 5/8"}, {"12-345", "12-,345"},
        {"", ""},                       {"-", "-"},                {".12345", ".12,345"}, {"-.5", "-.5"},
        {"|1234|5678", "|1,234|5,678"}, {"1234|5,678", "1234|5,678"}, {"ab", "ab"},
        {",1234", ",1,234"},  // a comma only in front does not count as grouped
    };
    for (const auto& c : cases) EXPECT_EQ(g_cszNormalizCstring(CString(c.in)), c.out) << c.in;
    EXPECT_EQ(g_cszNormalizCstring(g_cszNormalizDouble(1234567.5)), "1,234,567.5");  // the shared result
    std::string deep;  // many separators do not exhaust the stack
    for (int i = 0; i < 200000; ++i) deep += "1234|";
    EXPECT_EQ(g_cszNormalizCstring(CString(deep)).GetLength(), 200000 * 6);
}

TEST(URLDecode, DecodesAndIsLenient)
{
    struct Case { const char* in; const char* changed; std::string out; };
    const Case cases[] = {
        {"a%2Bb+c%zz", "a%2Bb c%zz", "a+b czz"},
        {"%41%62%", "%41%62%", "Ab"},
        {"%4", "%4", "4"},
        {"100%", "100%", "100"},
        {"%e4%B8%AD", "%e4%B8%AD", "\xE4\xB8\xAD"},
        {"x%00y", "x%00y", std::string("x\0y", 3)},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        CString in(c.in);
        const CString out = g_cszURLDecode(in);
        EXPECT_EQ(in, c.changed);
        EXPECT_EQ(out.str(), c.out) << c.in;
    }
}

TEST(IntFromHex, DigitsAndOtherCharacters)
{
    struct Case { const char* pair; int value; };
    const Case cases[] = {{"00", 0}, {"ff", 255}, {"Af", 175}, {"7e", 126}, {"g0", 16 * 'g'}, {"1z", 16 + 'z'}};
    for (const auto& c : cases) {
        unsigned char p[2] = {static_cast<unsigned char>(c.pair[0]), static_cast<unsigned char>(c.pair[1])};
        EXPECT_EQ(g_IntFromHex(p), c.value) << c.pair;
    }
    EXPECT_EQ(g_IntFromHex(nullptr), 0);
}

TEST(ColorDarker, ScalesEachChannel)
{
    struct Case { unsigned long colour; double factor; unsigned long out; };
    const Case cases[] = {
        {0x00FF8040, 0.5, 0x007F4020},  {0x00FF8040, -1, 0x00FF8040}, {0xAA102030, 1.0, 0x00102030},
        {0x00808080, 3.0, 0x00FFFFFF},  {0x00123456, 0.0, 0},         {0x00FFFFFF, std::nan(""), 0},
        {0x00010101, std::numeric_limits<double>::infinity(), 0x00FFFFFF},
    };
    for (const auto& c : cases) EXPECT_EQ(g_ColorDarker(c.colour, c.factor), c.out) << std::hex << c.colour;
}

TEST(TransShowString, UsesTheHostsMask)
{
    ovtest::SubstituteHost host;
    const ovtest::InstalledHost guard(host);
    EXPECT_EQ(g_csTransShowString("1234567"), "123****");
    EXPECT_EQ(g_csTransShowString("12345678901"), "123*****901");
    EXPECT_EQ(g_csTransShowString("12"), "12");
}

}  // namespace
