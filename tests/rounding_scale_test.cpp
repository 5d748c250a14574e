// The rounding scale is fixed by the first call in the process, so this program holds the
// only test that calls g_dbRoundDouble.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "format/compare_round.h"

namespace {

TEST(RoundDouble, FirstCallFixesTheScaleForTheProcess)
{
    EXPECT_DOUBLE_EQ(g_dbRoundDouble(1.25, 1), 1.3);  // first call: one decimal from now on
    struct Case { double value; int digits; double expected; };
    const Case cases[] = {
        {1.26, 4, 1.3},     // later digits are ignored
        {-1.26, 2, -1.2},   // -12.6 + 0.5 = -12.1, cut to -12
        {-1.25, 0, -1.2},   // negative halves round toward +infinity
        {-1.24, 1, -1.1},   // -12.4 + 0.5 = -11.9, cut to -11
        {0.04, 1, 0.0},
        {0.05, 1, 0.1},
        {123456.789, 9, 123456.8},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(g_dbRoundDouble(c.value, c.digits), c.expected) << c.value;
    EXPECT_TRUE(std::isnan(g_dbRoundDouble(std::numeric_limits<double>::quiet_NaN(), 1)));
    EXPECT_DOUBLE_EQ(g_dbRoundDouble(1e300, 1), 1e300);
}

}  // namespace
