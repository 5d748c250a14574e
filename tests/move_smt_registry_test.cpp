// smart_orders_model_test checks the moving SMT registry's lists and removals against a model;
// this checks what a lookup by deal number hands back, which the model does not compare.
#include <gtest/gtest.h>

#include <tuple>

#include "smart_orders/move_smt_registry.h"
#include "smart_orders/registries.h"

namespace {

TEST(MoveSmtRegistry, LookupByDealNumberGivesTheFirstEntryWithItsPrice)
{
    orderview::ResetSmartOrderRegistries();
    unsigned char sync = 7;
    for (const auto& [price, deal, value] : {std::make_tuple("100", "D2", 1.0), std::make_tuple("101", "D1", 2.0),
                                             std::make_tuple("102", "D1", 3.0)}) {
        STRUCT_FLASH_MOVESMT_DATA data;
        data.OrderInfo.strDealNo = deal;
        data.strMoveMark = "m";
        data.dbMoveValue = value;
        CString p = price;
        g_vSetMoveSMTInfoByPrice(p, data, sync);
    }
    CString deal = "D1", none = "D9";
    STRUCT_FLASH_MOVESMT_SYNC entry;
    ASSERT_TRUE(g_bGetMoveSMTInfoByDealNO(deal, sync, entry));
    EXPECT_EQ(entry.Data.dbMoveValue, 2);
    EXPECT_EQ(entry.strPrice, "101");
    entry.strPrice = "untouched";
    EXPECT_FALSE(g_bGetMoveSMTInfoByDealNO(none, sync, entry));
    EXPECT_EQ(entry.strPrice, "untouched");
    orderview::ResetSmartOrderRegistries();
}

}  // namespace
