// The check rule flag is one-way for the life of the process, so its test has a program of its own.
#include <gtest/gtest.h>

#include "settings/order_settings.h"

TEST(CheckRule, FalseAtLoadThenTrueForGood)
{
    EXPECT_FALSE(g_bGetCheckRule());
    g_vSetCheckRule();
    EXPECT_TRUE(g_bGetCheckRule());
    g_vSetCheckRule();
    EXPECT_TRUE(g_bGetCheckRule());
}
