#include <gtest/gtest.h>

#include "smart_orders/move_smt_registry.h"
#include "smart_orders/registries.h"

namespace {

STRUCT_FLASH_MOVESMT_DATA Data(const char* dealNo, const char* mark, double value = 0)
{
    STRUCT_FLASH_MOVESMT_DATA data;
    data.OrderInfo.strDealNo = dealNo;
    data.strMoveMark = mark;
    data.dbMoveValue = value;
    return data;
}

class MoveSmtRegistry : public ::testing::Test {
protected:
    void SetUp() override { orderview::ResetSmartOrderRegistries(); }
    void TearDown() override { orderview::ResetSmartOrderRegistries(); }
    void Add(const char* price, STRUCT_FLASH_MOVESMT_DATA data)
    {
        CString p = price;
        g_vSetMoveSMTInfoByPrice(p, data, sync);
    }
    unsigned char sync = 7;
};

TEST_F(MoveSmtRegistry, LookupsByPriceAndDealNumber)
{
    Add("100", Data("D1", "m", 1));
    Add("100", Data("D2", "n", 2));
    Add("100", Data("D1", "m", 3));
    CString price = "100", mark = "m";
    const auto found = g_vecGetMoveSMTInfoByPrice(price, mark, sync);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].dbMoveValue, 1);
    EXPECT_EQ(found[1].dbMoveValue, 3);
    CString deal = "D1";
    STRUCT_FLASH_MOVESMT_SYNC entry;
    ASSERT_TRUE(g_bGetMoveSMTInfoByDealNO(deal, sync, entry));
    EXPECT_EQ(entry.Data.dbMoveValue, 1);
    EXPECT_EQ(entry.strPrice, "100");
    CString none = "D9";
    entry.strPrice = "untouched";
    EXPECT_FALSE(g_bGetMoveSMTInfoByDealNO(none, sync, entry));
    EXPECT_EQ(entry.strPrice, "untouched");
    EXPECT_EQ(g_vecGetMoveSMTDealNOBySyncType(sync), (std::vector<CString>{"D1", "D2", "D1"}));
}

TEST_F(MoveSmtRegistry, RemovalByDealNumberTakesOnlyTheFirst)
{
    Add("100", Data("D1", "m", 1));
    Add("101", Data("D2", "m", 2));
    Add("102", Data("D1", "m", 3));
    g_vDelMoveSMTInfoByDealNO("D1", sync, false);
    EXPECT_EQ(g_vecGetMoveSMTDealNOBySyncType(sync), (std::vector<CString>{"D2", "D1"}));
    g_vDelMoveSMTInfoByDealNO("D2", sync, false);
    g_vDelMoveSMTInfoByDealNO("D1", sync, false);
    EXPECT_FALSE(g_bGetHaveMoveSMTOrder(sync));
}

TEST_F(MoveSmtRegistry, RemovalByPriceTakesEveryMatch)
{
    Add("100", Data("D1", "m"));
    Add("100", Data("D2", "m"));
    Add("100", Data("D3", "n"));
    Add("200", Data("D4", "m"));
    g_vDelMoveSMTInfoByPrice("100", "m", sync, false);
    EXPECT_EQ(g_vecGetMoveSMTDealNOBySyncType(sync), (std::vector<CString>{"D3", "D4"}));
    g_vDelMoveSMTInfoByPrice("", "", sync, true);
    EXPECT_TRUE(g_vecGetMoveSMTDealNOBySyncType(sync).empty());
    unsigned char unknown = 8;
    g_vDelMoveSMTInfoByPrice("100", "m", unknown, false);
    g_vDelMoveSMTInfoByDealNO("D1", unknown, true);
    EXPECT_FALSE(g_bGetHaveMoveSMTOrder(unknown));
}

}  // namespace
