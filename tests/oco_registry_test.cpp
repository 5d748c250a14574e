// smart_orders_model_test drives every OCO function through long random sequences against a
// model of its rules; these are the odd rebuild of a single removal, and the bulk removals those
// sequences seldom reach (entries without legs, the registry's last legs).
#include <gtest/gtest.h>

#include "smart_orders/oco_registry.h"
#include "smart_orders/registries.h"

namespace {

class OcoRegistry : public ::testing::Test {
protected:
    void SetUp() override { orderview::ResetSmartOrderRegistries(); }
    void TearDown() override { orderview::ResetSmartOrderRegistries(); }
    void Add(const char* sn, unsigned char& sync, const char* mark = "x")
    {
        STRUCT_FLASH_OCO_DATA leg;
        leg.strSymbol = "TXF";
        leg.strPrice = "100";
        leg.strMark = mark;
        CString key = sn;
        g_vSetOCOInfoBySN(key, {leg}, sync);
    }
    unsigned char sync1 = 1, sync2 = 2;
};

TEST_F(OcoRegistry, SingleRemovalRebuildsTheListFromRemoved)
{
    Add("A", sync1);
    Add("B", sync1);
    Add("C", sync2);
    std::vector<CString> removed;
    g_vDelOCOInfoBySN("A", sync1, removed, "", false);
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync1).empty());  // an empty removed list empties the list
    CString b = "B";
    EXPECT_EQ(g_vecGetOCOInfoBySN(b).size(), 1u);  // while B's legs stay
    removed = {"A", "Q", "B"};
    g_vSetOCOOrder("B", sync1, false, false);
    g_vDelOCOInfoBySN("B", sync1, removed, "", false);
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), (std::vector<CString>{"B", "B"}));  // one copy per differing entry
    std::vector<CString> none;
    g_vDelOCOInfoBySN("C", sync2, none, "", false);  // the last legs in the registry drop the sync type
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync2).empty());
    EXPECT_FALSE(g_bGetHaveOCOOrder(sync2));
}

TEST_F(OcoRegistry, BulkRemovalByMark)
{
    Add("A", sync1);
    Add("B", sync1, "y");
    CString empty = "E";
    g_vSetOCOInfoBySN(empty, {}, sync1);
    g_vSetOCOOrder("NOLEGS", sync1, false, false);
    std::vector<CString> removed = {"earlier"};
    g_vDelOCOInfoBySN("", sync1, removed, "x", true);
    EXPECT_EQ(removed, (std::vector<CString>{"earlier", "A"}));  // appended to
    EXPECT_EQ(g_vecGetOCOSNBySync(sync1), (std::vector<CString>{"B", "E", "NOLEGS"}));
    // Removing the last legs of the whole registry hands back nothing and drops the sync type.
    Add("E", sync1, "y");
    g_vDelOCOInfoBySN("", sync1, removed, "y", true);
    EXPECT_TRUE(removed.empty());
    EXPECT_TRUE(g_vecGetOCOSNBySync(sync1).empty());
}

}  // namespace
