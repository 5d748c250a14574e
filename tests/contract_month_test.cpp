#include <gtest/gtest.h>

#include "format/contract_month.h"
#include "support/substitute_host.h"
#include "support/fake_platform.h"

namespace {

class ContractMonth : public ovtest::HostTest {
protected:
    ContractMonth() { platform.SetDate(2026, 11, 21); }
    void Transfer(unsigned char service, const char* from, const char* to)
    {
        host.mapSymbols[{service, from}].csTransferId = to;
    }
    ovtest::FakePlatform platform;
};

TEST_F(ContractMonth, FutureCodes)
{
    Transfer(1, "TXF00", "TXFL6");
    Transfer(1, "MXF&", "MXFF7");
    Transfer(1, "ONE@", "Q");
    struct Case { bool longForm; const char* symbol; bool ok; const char* out; };
    const Case cases[] = {
        {false, "TXFZ6", true, "202612"},   {false, "TXFH5", true, "203503"}, {false, "TXFA6", true, "202600"},
        {false, "CLM7", true, "202706"},    {false, "ZBt9", true, "202912"},  {false, "ZB`6", true, "202601"},
        {false, "ABC", false, "200001"},    {false, "", false, "200001"},     {true, "XXXXM6AB", true, "2606AB"},
        {true, "XM5CD", true, "3506CD"},    {false, "TXFF/", true, "202901"},  // '/' reads as digit -1
        {false, "TXF00", true, "202600"},   // translated: 'L' is no month letter
        {false, "MXF&", true, "202701"},
        {false, "NONE00", true, "203000"},  // not in the table: the code stays
    };
    for (const auto& c : cases) {
        CString out = "before";
        EXPECT_EQ(g_GetFutureYearMonth(c.longForm, c.symbol, out), c.ok) << c.symbol;
        EXPECT_EQ(out, c.out) << c.symbol;
    }
    CString out;
    EXPECT_TRUE(g_GetFutureYearMonth(false, "ONE@", out));  // a one-character translation
    EXPECT_EQ(out.GetLength(), 6);
    platform.SetDate(2029, 1, 1);  // the decade follows the clock
    EXPECT_TRUE(g_GetFutureYearMonth(false, "TXFZ8", out));
    EXPECT_EQ(out, "203812");
    platform.SetDate(2030, 6, 1);
    EXPECT_TRUE(g_GetFutureYearMonth(false, "TXFZ0", out));
    EXPECT_EQ(out, "203012");
}

TEST_F(ContractMonth, OptionCodes)
{
    // A translated symbol is read at the position of the month in the original.
    Transfer(106, "TXO00;1", "XXXXXXM7;1");
    Transfer(106, "AB00;9", "ABK8;9");
    struct Case { bool longForm; const char* symbol; bool ok; const char* out; };
    const Case cases[] = {
        {false, "TXOZ6;16000C", true, "202612"}, {false, "TXOt6;1", true, "202600"},  // no lower case here
        {false, "TXO", false, "keep"},          {false, "Z;6", false, "keep"},       {false, ";", false, "keep"},
        {true, "TXOM6AB;16000", true, "2606AB"}, {true, "M6;x", true, "2606M6"},      {true, "AM6;x", true, "4900M6"},
        {false, "TXO00;1", true, "206011"},  // characters 3 and 4 of the translation: "XX"
        {false, "AB00;9", true, "202805"},
    };
    for (const auto& c : cases) {
        CString out = "keep";
        EXPECT_EQ(g_GetOptionYearMonth(c.longForm, c.symbol, out), c.ok) << c.symbol;
        EXPECT_EQ(out, c.out) << c.symbol;
    }
}

}  // namespace
