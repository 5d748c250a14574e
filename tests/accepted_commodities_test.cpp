#include <gtest/gtest.h>

#include "checks/accepted_commodities.h"
#include "support/substitute_host.h"

namespace {

using Accepted = ovtest::HostTest;

TEST_F(Accepted, CommoditiesCompareExactly)
{
    CAcceptComFfuture zb{};
    g_vSetComId(zb.szComId, "ZB");
    zb.iDenominator = 32;
    zb.iSubDenominator = 4;
    CAcceptComFoption ozb{};
    g_vSetComId(ozb.szComId, "OZB");
    ozb.iDenominator = 64;
    host.vecForeignAccept = {zb};
    host.vecFOptionAccept = {ozb};

    CAcceptComFfuture future{};
    EXPECT_TRUE(g_bGetForeignAccptTradeCom("ZB", future));
    EXPECT_EQ(future.iDenominator, 32);
    EXPECT_EQ(future.iSubDenominator, 4);
    for (const char* other : {"zb", "ZB ", "Z", "", "OZB"}) {
        CAcceptComFfuture untouched{};
        untouched.iDenominator = -1;
        EXPECT_FALSE(g_bGetForeignAccptTradeCom(other, untouched)) << other;
        EXPECT_EQ(untouched.iDenominator, -1);
    }
    CAcceptComFoption option{};
    EXPECT_TRUE(g_bGetFOptionAccptTradeCom("OZB", option));
    EXPECT_EQ(option.iDenominator, 64);
    EXPECT_FALSE(g_bGetFOptionAccptTradeCom("ZB", option));
    // An empty id never matches, even an empty entry.
    CAcceptComFfuture blank{};
    host.vecForeignAccept = {blank};
    EXPECT_FALSE(g_bGetForeignAccptTradeCom("", future));
}

}  // namespace
