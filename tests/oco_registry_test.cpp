// smart_orders_model_test drives every OCO function through long random sequences against a
// model of its rules, single and bulk removals included; this checks the removal of the
// registry's last legs, which those sequences reach about once in 20,000 steps singly and never
// in bulk.
#include <gtest/gtest.h>

#include "smart_orders/oco_registry.h"
#include "smart_orders/registries.h"

namespace {

// Removing the registry's last legs, singly or in bulk, hands back nothing and drops the sync
// type, though an order without legs is still listed.
TEST(OcoRegistry, RemovingTheLastLegsDropsTheSyncType)
{
    orderview::ResetSmartOrderRegistries();
    STRUCT_FLASH_OCO_DATA leg;
    leg.strSymbol = "TXF";
    leg.strPrice = "100";
    leg.strMark = "y";
    unsigned char sync = 1;
    for (const bool all : {false, true}) {
        CString sn = "A";
        g_vSetOCOInfoBySN(sn, {leg}, sync);
        g_vSetOCOOrder("NOLEGS", sync, false, false);
        std::vector<CString> removed = {"earlier"};
        g_vDelOCOInfoBySN(all ? "" : "A", sync, removed, "y", all);
        EXPECT_TRUE(removed.empty()) << all;
        EXPECT_TRUE(g_vecGetOCOSNBySync(sync).empty()) << all;
        EXPECT_FALSE(g_bGetHaveOCOOrder(sync)) << all;
    }
    orderview::ResetSmartOrderRegistries();
}

}  // namespace
