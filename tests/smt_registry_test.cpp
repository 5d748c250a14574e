// The prices per sync type and the seen-before sets are checked against a model in
// smart_orders_model_test; the records by deal number are checked here.
#include <gtest/gtest.h>

#include "smart_orders/registries.h"
#include "smart_orders/smt_registry.h"

namespace {

TEST(SmtRegistry, RecordsByDealNumber)
{
    orderview::ResetSmartOrderRegistries();
    CString deal = "D1", other = "D2";
    STRUCT_FLASH_SMT_INFO info;
    info.OrderInfo.csOrderNo = "N1";
    g_vSetSMTInfoByDealNo(deal, info, false);
    info.OrderInfo.csOrderNo = "N2";
    g_vSetSMTInfoByDealNo(deal, info, false);
    g_vSetSMTInfoByDealNo(other, info, false);
    const auto records = g_vecGetSMTInfoByDealNo(deal);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].OrderInfo.csOrderNo, "N1");
    EXPECT_EQ(records[1].OrderInfo.csOrderNo, "N2");
    g_vSetSMTInfoByDealNo(deal, info, true);  // deleting drops every record of the deal
    EXPECT_TRUE(g_vecGetSMTInfoByDealNo(deal).empty());
    EXPECT_EQ(g_vecGetSMTInfoByDealNo(other).size(), 1u);
    orderview::ResetSmartOrderRegistries();
}

}  // namespace
