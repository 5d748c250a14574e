#include <gtest/gtest.h>

#include "smart_orders/oco_registry.h"
#include "smart_orders/registries.h"

namespace {

STRUCT_FLASH_OCO_DATA Leg(const char* symbol, const char* price, const char* mark, std::uint8_t flag = 0)
{
    STRUCT_FLASH_OCO_DATA leg;
    leg.strSymbol = symbol;
    leg.strPrice = price;
    leg.strMark = mark;
    leg.byFlag = flag;
    return leg;
}

class OcoRegistry : public ::testing::Test {
protected:
    void SetUp() override { orderview::ResetSmartOrderRegistries(); }
    void TearDown() override { orderview::ResetSmartOrderRegistries(); }
    void Add(const char* sn, std::vector<STRUCT_FLASH_OCO_DATA> legs, unsigned char sync)
    {
        CString key = sn;
        g_vSetOCOInfoBySN(key, legs, sync);
    }
    unsigned char sync1 = 1, sync2 = 2;
};

TEST_F(OcoRegistry, SetInfoAppendsTheSnOnceAndKeepsTheLastLegs)
{
    Add("A", {Leg("TXF", "100", "m")}, sync1);
    Add("A", {Leg("TXF", "101", "m"), Leg("TXF", "99", "m")}, sync1);
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), std::vector<CString>{"A"});
    CString a = "A";
    ASSERT_EQ(g_vecGetOCOInfoBySN(a).size(), 2u);
    EXPECT_EQ(g_vecGetOCOInfoBySN(a)[0].strPrice, "101");
    EXPECT_TRUE(g_bGetHaveOCOOrder(sync1));
    EXPECT_FALSE(g_bGetHaveOCOOrder(sync2));
    CString unknown = "Z";
    EXPECT_TRUE(g_vecGetOCOInfoBySN(unknown).empty());
}

TEST_F(OcoRegistry, OrderListEditing)
{
    Add("A", {Leg("TXF", "100", "m")}, sync1);
    g_vSetOCOOrder("A", sync1, false, false);  // no duplicate check
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), (std::vector<CString>{"A", "A"}));
    EXPECT_EQ(g_iGetOCOInfoSize(sync1), 2);
    g_vSetOCOOrder("NOLEGS", sync1, false, false);
    EXPECT_EQ(g_iGetOCOInfoSize(sync1), 2);  // entries without legs are not counted
    g_vSetOCOOrder("A", sync1, true, false);
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), (std::vector<CString>{"A", "NOLEGS"}));
    g_vSetOCOOrder("A", sync1, true, false);
    g_vSetOCOOrder("NOLEGS", sync1, true, false);
    EXPECT_FALSE(g_bGetHaveOCOOrder(sync1));  // an empty list stays an entry but has no orders
    CString a = "A";
    EXPECT_EQ(g_vecGetOCOInfoBySN(a).size(), 1u);  // the legs are not touched
    g_vSetOCOOrder("B", sync2, false, false);
    g_vSetOCOOrder("B", sync2, true, true);  // clearing wins over deleting
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync2).empty());
    EXPECT_EQ(g_iGetOCOInfoSize(sync2), 0);
}

TEST_F(OcoRegistry, BulkRemovalByMark)
{
    Add("A", {Leg("TXF", "100", "x"), Leg("TXF", "90", "y")}, sync1);
    Add("B", {Leg("TXF", "101", "y"), Leg("TXF", "91", "x")}, sync1);
    Add("C", {Leg("MXF", "102", "x")}, sync1);
    std::vector<CString> removed = {"earlier"};
    g_vDelOCOInfoBySN("", sync1, removed, "x", true);
    EXPECT_EQ(removed, (std::vector<CString>{"earlier", "A", "C"}));  // appended to
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), std::vector<CString>{"B"});
    // Removing the last legs of the whole registry hands back nothing and drops the sync type.
    removed.clear();
    g_vDelOCOInfoBySN("", sync1, removed, "y", true);
    EXPECT_TRUE(removed.empty());
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync1).empty());
}

TEST_F(OcoRegistry, SingleRemovalRebuildsTheListFromRemoved)
{
    Add("A", {Leg("TXF", "100", "x")}, sync1);
    Add("B", {Leg("TXF", "101", "x")}, sync1);
    Add("C", {Leg("TXF", "102", "x")}, sync2);
    std::vector<CString> removed;
    g_vDelOCOInfoBySN("A", sync1, removed, "", false);
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync1).empty());  // the odd rebuild: an empty removed empties the list
    CString b = "B";
    EXPECT_EQ(g_vecGetOCOInfoBySN(b).size(), 1u);
    removed = {"A", "Q", "B"};
    g_vSetOCOOrder("B", sync1, false, false);
    g_vDelOCOInfoBySN("B", sync1, removed, "", false);
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), (std::vector<CString>{"B", "B"}));  // one copy per differing entry
    std::vector<CString> none;
    g_vDelOCOInfoBySN("C", sync2, none, "", false);  // last legs in the registry
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync2).empty());
    unsigned char unknown = 9;
    g_vDelOCOInfoBySN("C", unknown, none, "", true);
}

TEST_F(OcoRegistry, PriceLookupWalksInSnOrder)
{
    Add("B", {Leg("TXF", "100", "m", 1)}, sync1);
    Add("A", {Leg("MXF", "100", "n", 0), Leg("TXF", "100", "n", 0)}, sync1);
    CString price = "100", sn = "untouched";
    bool flag = true;
    g_vGetOCOSNbyPrice(price, "TXF", sn, flag, "");
    EXPECT_EQ(sn, "A");
    EXPECT_FALSE(flag);
    g_vGetOCOSNbyPrice(price, "TXF", sn, flag, "m");
    EXPECT_EQ(sn, "B");
    EXPECT_TRUE(flag);
    sn = "untouched";
    g_vGetOCOSNbyPrice(price, "TXF", sn, flag, "zz");
    EXPECT_EQ(sn, "untouched");
    CString other = "101";
    g_vGetOCOSNbyPrice(other, "TXF", sn, flag, "");
    EXPECT_EQ(sn, "untouched");
}

TEST_F(OcoRegistry, OrderSerialNumberLinks)
{
    Add("OCO1", {Leg("TXF", "100", "m")}, sync1);
    Add("OCO2", {Leg("TXF", "100", "m")}, sync1);
    CString order1 = "O1", order2 = "O2", order3 = "O3";
    g_vSetOCOSNtoOrderSN(order1, "OCO1", sync1, false);
    g_vSetOCOSNtoOrderSN(order2, "OCO1", sync1, false);
    g_vSetOCOSNtoOrderSN(order3, "X", sync1, true);  // unlinked and deleting: nothing
    CString oco1 = "OCO1";
    EXPECT_EQ(g_cszGetOrderSNbyOCOSN(oco1), (std::vector<CString>{"O1", "O2"}));
    // Re-key: O1 becomes O9 for the same group.
    g_vSetOCOSNtoOrderSN(order1, "O9", sync1, false);
    EXPECT_EQ(g_cszGetOCOSNbyOrderSN(order1), "");
    CString order9 = "O9";
    EXPECT_EQ(g_cszGetOCOSNbyOrderSN(order9), "OCO1");
    // Delete through a link: the group goes (single mode) and the link too.
    g_vSetOCOSNtoOrderSN(order9, "", sync1, true);
    EXPECT_EQ(g_cszGetOCOSNbyOrderSN(order9), "");
    EXPECT_TRUE(g_vecGetOCOInfoBySN(oco1).empty());
    EXPECT_EQ(g_cszGetOCOSNbyOrderSN(order2), "OCO1");  // other links stay
}

TEST_F(OcoRegistry, ReuseQueueIsFirstInFirstOut)
{
    CString key = "K", sn = "none";
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 0);
    EXPECT_EQ(sn, "none");
    g_vSetReuseOCOSN(key, "S1", false, false);
    g_vSetReuseOCOSN(key, "S2", false, false);
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 2);
    EXPECT_EQ(sn, "S1");
    g_vSetReuseOCOSN(key, "ignored", true, false);
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 1);
    EXPECT_EQ(sn, "S2");
    g_vSetReuseOCOSN(key, "", true, false);
    sn = "none";
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 0);  // the key goes with its last entry
    EXPECT_EQ(sn, "none");
    g_vSetReuseOCOSN(key, "S3", false, false);
    g_vSetReuseOCOSN(key, "S4", false, false);
    g_vSetReuseOCOSN(key, "", true, true);  // pop, then clear
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 0);
    g_vSetReuseOCOSN(key, "S5", false, true);  // clear only
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 0);
}

TEST_F(OcoRegistry, RemovalPathsStayLinearOnHugeLists)
{
    const int n = 200000;
    std::vector<CString> removed;
    for (int i = 0; i < n; ++i) {
        CString sn;
        sn.Format("SN%07d", i);
        Add(sn, {Leg("TXF", "1", i % 2 ? "odd" : "even")}, sync1);
    }
    g_vDelOCOInfoBySN("", sync1, removed, "odd", true);
    EXPECT_EQ(removed.size(), static_cast<size_t>(n / 2));
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1).size(), static_cast<size_t>(n / 2));
    CString key = "Q";
    for (int i = 0; i < n; ++i) g_vSetReuseOCOSN(key, "x", false, false);
    for (int i = 0; i < n; ++i) g_vSetReuseOCOSN(key, "", true, false);
    CString sn;
    EXPECT_EQ(g_iGetReuseOCOSN(key, sn), 0);
}

}  // namespace
