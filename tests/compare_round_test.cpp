#include <gtest/gtest.h>

#include <limits>

#include "format/compare_round.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

TEST(CompareDoubles, DefinitelyTestsAreRelative)
{
    struct Case { double a, b; bool greater, less; };
    const Case cases[] = {
        {0.0, 0.0, false, false},
        {1e12 + 1, 1e12, false, false},  // tolerance there is 1000
        {1e12 + 2000, 1e12, true, false},
        {1.0, 1.0 + 2e-9, false, true},
        {2.0, 1.0, true, false},
        {kNaN, 1.0, false, false},
    };
    for (auto c : cases) {
        EXPECT_EQ(g_bDefinitelyGreaterThan(c.a, c.b), c.greater) << c.a << " vs " << c.b;
        EXPECT_EQ(g_bDefinitelyLessThan(c.a, c.b), c.less) << c.a << " vs " << c.b;
    }
}

TEST(CompareDoubles, DoubleIsEqualBoundsAreInclusive)
{
    struct Case { double a, b; bool equal; };
    const Case cases[] = {
        {0.0, 1e-9, true}, {0.0, -1e-9, true}, {0.0, 1.1e-9, false}, {kNaN, kNaN, false},
    };
    for (Case c : cases) EXPECT_EQ(g_bDoubleIsEqual(c.a, c.b), c.equal) << c.a << " vs " << c.b;
    // g_CompareDoubles' tolerance is exclusive, and absolute, unlike the definite tests'.
    EXPECT_EQ(g_CompareDoubles(0.0, 1e-9), ValuesLess);
    EXPECT_EQ(g_CompareDoubles(1e12 + 1, 1e12), ValuesGreater);
}

TEST(BaseUnit, FromDecimals)
{
    struct Case { int decimals; double value; unsigned char expected; };
    const Case cases[] = {
        {2, -0.0000000001, 25}, {2, -3.5, 26}, {0, -3, 22}, {12, 7, 21}, {0, 0, 21}, {-4, -1e-10, 21},
        {1, 0, 23}, {9, 1, 39}, {9, -1, 40}, {10, -5, 22}, {5, 2, 31}, {3, kNaN, 28},  // NaN compares as less than zero
    };
    for (const auto& c : cases)
        EXPECT_EQ(g_byGetBaseUnitFromDot(c.decimals, c.value), c.expected) << c.decimals << " " << c.value;
}

TEST(BaseUnit, FromMinTick)
{
    struct Case { unsigned char unit; double value; double tick; unsigned char expected; };
    const Case cases[] = {
        {5, 1.0, 0.005, 5},       // other unit families pass through
        {41, -1.0, 0.5, 41},
        {25, 1.0, 0.005, 27},
        {25, -1.0, 0.005, 28},
        {21, 3.0, 0.05, 25},
        {21, 3.0, 0.25, 25},
        {23, 3.0, 1.0, 21},       // "1.000000" loses every zero
        {23, -3.0, 1.0, 22},
        {21, 3.0, 0.0000001, 21}, // below the six decimals of "%f"
        {21, 3.0, 0.0000015, 33}, // cut to six decimals
        {21, 3.0, 1e300, 21},
        {21, 3.0, kNaN, 21},
        {21, -3.0, -kInf, 22},
    };
    for (const auto& c : cases)
        EXPECT_EQ(g_byGetBaseUnitFromMinTick(X1Format(1, c.unit, c.value), c.tick), c.expected)
            << int(c.unit) << " " << c.tick;
}

}  // namespace
