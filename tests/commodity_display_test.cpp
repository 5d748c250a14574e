#include <gtest/gtest.h>

#include "format/commodity_display.h"
#include "host/default_host.h"
#include "support/substitute_host.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace {

class CommodityDisplay : public ovtest::HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        platform.SetDate(2026, 3, 2);
        host.vSetQuote(1, "2330", 1007, X1Format(1007, 0, CString("2330")));
        host.vSetQuote(2, "TXFC6", 1007, X1Format(1007, 0, CString("TXF")));
        host.vSetQuote(3, "EMPTY", 1007, X1Format(1007, 0, CString("")));
        orderview::TableHost::CommodityInfo weekly;
        weekly.bWeekly = true;
        host.mapCommodityInfo[{4, "TX2"}] = weekly;
        host.mapCommodityInfo[{4, "TXO"}] = orderview::TableHost::CommodityInfo();
        orderview::TableHost::SymbolInfo weeklySymbol, monthlySymbol;
        weeklySymbol.csCommodityId = "TX2";
        monthlySymbol.csCommodityId = "TXO";
        host.mapSymbols[{4, "TX218000F6;C"}] = weeklySymbol;
        host.mapSymbols[{4, "TXO18000F6;C"}] = monthlySymbol;
    }

    ovtest::FakePlatform platform;
};

TEST_F(CommodityDisplay, CommodityIdsComeFromItem1007)
{
    struct Case { unsigned char service; const char* symbol; bool found; const char* id; };
    const Case cases[] = {{1, "2330", true, "2330"}, {2, "TXFC6", true, "TXF"}, {3, "EMPTY", false, ""},
                          {2, "NONE", false, ""}};
    for (const Case& c : cases) {
        CString id = "stale";
        EXPECT_EQ(g_GetCommodityId(c.symbol, c.service, id), c.found) << c.symbol;
        EXPECT_EQ(id, c.id) << c.symbol;
    }
    CBaseOrder_OrderInfo order;
    order.commodity.csSymbolID = "TXFC6";
    order.commodity.byServiceID = 2;
    CString id;
    EXPECT_TRUE(g_GetOrderComId(&order, id));
    EXPECT_EQ(id, "TXF");
    EXPECT_FALSE(g_GetOrderComId(nullptr, id));
    EXPECT_EQ(id, "");
}

TEST_F(CommodityDisplay, OptionMonthsMonthlyAndWeekly)
{
    CString out = "kept";
    EXPECT_TRUE(g_GetOptionUIYearMonth(4, "TXO18000F6;C", out));
    EXPECT_EQ(out, "2026/01");  // F6 in 2026, as g_GetOptionYearMonth reads it
    EXPECT_TRUE(g_GetOptionUIYearMonth(4, "TX218000F6;C", out));
    EXPECT_EQ(out, "2026/01 W2");
    host.mapWeeklyNames[{"TX2", "202601"}] = "Jan week 2";
    EXPECT_TRUE(g_GetOptionUIYearMonth(4, "TX218000F6;C", out));
    EXPECT_EQ(out, "Jan week 2");
    out = "kept";
    EXPECT_FALSE(g_GetOptionUIYearMonth(4, "NOSEMICOLON", out));
    EXPECT_EQ(out, "kept");

    EXPECT_EQ(g_cszGetWeeklyUIYearMonth("TXW", "202606"), "2026/06 W");
    EXPECT_EQ(g_cszGetWeeklyUIYearMonth("", "202606"), "2026/06 W");
    EXPECT_EQ(g_cszGetWeeklyUIYearMonth("TX1", "2026"), "2026");
}

TEST(CommodityDisplayDefaultHost, NamesFromTheSymbolTable)
{
    ovtest::TempFolder folder;
    folder.Write("sys/symbols.csv", "service,symbol,commodity,is_stock,name\n1,2330,2330,1,TSMC\n1,2317,2317,1,\n");
    orderview::DefaultHost host(folder.MainPath());
    ASSERT_TRUE(host.Diagnostics().empty());
    const ovtest::InstalledHost guard(host);
    EXPECT_EQ(g_cszDisplayStockName(1, "2330"), "TSMC");
    EXPECT_EQ(g_cszDisplayStockName(1, "2317"), "2317");
    EXPECT_EQ(g_cszDisplayStockName(9, "2330"), "2330");  // another service knows no name
}

}  // namespace
