#include <gtest/gtest.h>

#include "smart_orders/registries.h"
#include "smart_orders/smt_registry.h"

namespace {

class SmtRegistry : public ::testing::Test {
protected:
    void SetUp() override { orderview::ResetSmartOrderRegistries(); }
    void TearDown() override { orderview::ResetSmartOrderRegistries(); }
    unsigned char sync = 3;
};

TEST_F(SmtRegistry, RecordsByDealNumber)
{
    CString deal = "D1";
    STRUCT_FLASH_SMT_INFO info;
    info.OrderInfo.csOrderNo = "N1";
    info.strInfo2 = "x";
    g_vSetSMTInfoByDealNo(deal, info, false);
    info.OrderInfo.csOrderNo = "N2";
    g_vSetSMTInfoByDealNo(deal, info, false);
    const auto records = g_vecGetSMTInfoByDealNo(deal);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].OrderInfo.csOrderNo, "N1");
    EXPECT_EQ(records[1].OrderInfo.csOrderNo, "N2");
    g_vSetSMTInfoByDealNo(deal, info, true);
    EXPECT_TRUE(g_vecGetSMTInfoByDealNo(deal).empty());
}

TEST_F(SmtRegistry, PricesUnderCompositeKeys)
{
    g_vSetSMTPriceBySyncType(sync, "ABC_1", "100", false, false);
    g_vSetSMTPriceBySyncType(sync, "ABC_1", "100", false, false);
    auto data = g_vecGetSMTDataBySyncType(sync);
    ASSERT_EQ(data.size(), 1u);
    EXPECT_EQ(data[0].strKey1, "ABC");
    EXPECT_EQ(data[0].strKey2, "1");
    EXPECT_EQ(data[0].vecPrice, (std::vector<CString>{"100", "100"}));
    // Two underscores: split into A and C, so the key never matches its entry again.
    g_vSetSMTPriceBySyncType(sync, "A_B_C", "5", false, false);
    g_vSetSMTPriceBySyncType(sync, "A_B_C", "6", false, false);
    g_vSetSMTPriceBySyncType(sync, "NOUNDERSCORE", "7", false, false);
    data = g_vecGetSMTDataBySyncType(sync);
    ASSERT_EQ(data.size(), 4u);
    EXPECT_EQ(data[1].strKey1, "A");
    EXPECT_EQ(data[1].strKey2, "C");
    EXPECT_EQ(data[3].strKey1, "");
    EXPECT_EQ(data[3].strKey2, "NOUNDERSCORE");
    EXPECT_TRUE(g_bGetHaveSMTOrder(sync));
}

TEST_F(SmtRegistry, DeletionModes)
{
    g_vSetSMTPriceBySyncType(sync, "K_1", "100", false, false);
    g_vSetSMTPriceBySyncType(sync, "K_1", "200", false, false);
    g_vSetSMTPriceBySyncType(sync, "L_2", "100", false, false);
    g_vSetSMTPriceBySyncType(sync, "M_1", "300", false, false);
    EXPECT_FALSE(g_bGetSMTOrderInfo("100", 1, false));  // registers the price as seen
    // Empty key and a price: the price leaves every list and the seen orders; entries stay.
    g_vSetSMTPriceBySyncType(sync, "", "100", true, false);
    auto data = g_vecGetSMTDataBySyncType(sync);
    ASSERT_EQ(data.size(), 3u);
    EXPECT_EQ(data[0].vecPrice, std::vector<CString>{"200"});
    EXPECT_TRUE(data[1].vecPrice.empty());
    EXPECT_FALSE(g_bGetSMTOrderInfo("100", 1, false));  // forgotten, so registered anew
    // A key deletes the first entry with that composite key.
    g_vSetSMTPriceBySyncType(sync, "L_2", "ignored", true, false);
    EXPECT_EQ(g_vecGetSMTDataBySyncType(sync).size(), 2u);
    g_vSetSMTPriceBySyncType(sync, "", "", true, false);  // nothing
    EXPECT_EQ(g_vecGetSMTDataBySyncType(sync).size(), 2u);
    // Removing by key compares the second part alone: "1" removes K_1 and M_1.
    g_vSetSMTPriceBySyncType(sync, "1", "", false, true);
    EXPECT_TRUE(g_vecGetSMTDataBySyncType(sync).empty());
    EXPECT_FALSE(g_bGetHaveSMTOrder(sync));
    g_vSetSMTPriceBySyncType(sync, "K_1", "1", false, false);
    g_vSetSMTPriceBySyncType(sync, "", "", false, true);  // empty key drops the sync type
    EXPECT_TRUE(g_vecGetSMTDataBySyncType(sync).empty());
    unsigned char unknown = 200;
    g_vSetSMTPriceBySyncType(unknown, "X", "1", true, true);
    EXPECT_TRUE(g_vecGetSMTDataBySyncType(unknown).empty());
}

TEST_F(SmtRegistry, SeenBeforeSets)
{
    EXPECT_FALSE(g_bGetSMTDealInfo("D1", 1, false));
    EXPECT_TRUE(g_bGetSMTDealInfo("D1", 1, false));
    EXPECT_FALSE(g_bGetSMTDealInfo("D1", 2, false));
    EXPECT_TRUE(g_bGetSMTDealInfo("D1", 1, false));  // the first value stays
    EXPECT_FALSE(g_bGetSMTDealInfo("", 1, false));
    EXPECT_FALSE(g_bGetSMTDealInfo("", 1, false));
    EXPECT_FALSE(g_bGetSMTOrderInfo("D1", 1, false));  // a registry of its own
    EXPECT_FALSE(g_bGetSMTDealInfo("D1", 1, true));    // reset first
    EXPECT_TRUE(g_bGetSMTDealInfo("D1", 1, false));
}

}  // namespace
