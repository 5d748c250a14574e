// Smart-order symbols are checked against a model in smart_orders_model_test.
#include <gtest/gtest.h>

#include "smart_orders/market_flags.h"
#include "smart_orders/registries.h"

namespace {

TEST(MarketFlags, FlagPerSyncType)
{
    orderview::ResetSmartOrderRegistries();
    unsigned char a = 1, b = 2;
    EXPECT_FALSE(g_bGetHaveMKTOrder(a));
    g_vSetHaveMKTOrder(a, true);
    EXPECT_TRUE(g_bGetHaveMKTOrder(a));
    EXPECT_FALSE(g_bGetHaveMKTOrder(b));
    g_vSetHaveMKTOrder(a, false);
    EXPECT_FALSE(g_bGetHaveMKTOrder(a));
    orderview::ResetSmartOrderRegistries();
}

}  // namespace
