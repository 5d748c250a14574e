#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "format/price_display.h"
#include "support/substitute_host.h"

namespace {

class PriceDisplay : public ovtest::HostTest {
protected:
    PriceDisplay()
    {
        Accept("ZB", 32, 4);
        Accept("ZN", 32, 2);
        Accept("NQ", 4, 1);
    }
    void Accept(const char* id, int den, int sub)
    {
        CAcceptComFfuture record;
        g_vSetComId(record.szComId, id);
        record.iDenominator = den;
        record.iSubDenominator = sub;
        host.vecForeignAccept.push_back(record);
    }
};

TEST_F(PriceDisplay, PlainPricesIgnoreTheFractionSetting)
{
    for (auto setting : {SpecificFraction_Text, SpecificFraction_Decimal, SpecificFraction_HostFormat}) {
        host.eFractionType = setting;
        EXPECT_EQ(g_cszDisplayPrice(5, 0, 32, "ZB"), "5");
        EXPECT_EQ(g_cszDisplayPrice(5, 25, 0, "ZB"), "5.25");
        EXPECT_EQ(g_cszDisplayAveragePrice(17.5, 0, 0, "X"), "17.5");
    }
}

TEST_F(PriceDisplay, FractionTextFollowsTheCommodityTable)
{
    host.eFractionType = SpecificFraction_Text;
    struct Case { double a, b, c; const char* com; const char* text; };
    const Case cases[] = {
        {101, 49, 128, "ZB", "101 12/32 1/4"},
        {101, 48, 128, "ZB", "101 12/32"},
        {99, 33, 64, "ZN", "99 16/32 1/2"},
        {99, 32, 64, "ZN", "99 16/32"},
        {3, 5, 8, "UNLISTED", "3 5/8"},
        {3, 5, 8, "ZB", "3 5/8"},         // smaller plain denominator than the table's
        {7, 1, 2, "NQ", "7 1/2"},         // table 4 x 1 against a half: den 2, sub 1
        {2, 3, 4, "NQ", "2 3/4"},
        {1, 1, 1, "ZB", "1 1/1"},         // den 1
        {-2, 3, 8, "X", "-2 3/8"},
    };
    for (const auto& c : cases) EXPECT_EQ(g_cszDisplayPrice(c.a, c.b, c.c, c.com), c.text) << c.text;
    // An average's numerator is divided by the sub-denominator and cut, not rounded, to two decimals.
    EXPECT_EQ(g_cszDisplayAveragePrice(101, 24.567, 32, "X"), "101 24.56/32");
    EXPECT_EQ(g_cszDisplayAveragePrice(101, 98.26, 128, "ZB"), "101 24.56/32");
    EXPECT_EQ(g_cszDisplayAveragePrice(101, 24.5, 32, "X"), "101 24.5/32");
    host.eFractionType = SpecificFraction_Decimal;
    EXPECT_EQ(g_cszDisplayPrice(101, 49, 128, "ZB"), "101.3828125");
    EXPECT_EQ(g_cszDisplayAveragePrice(101, 24.5, 32, "ZB"), "101.765625");
}

TEST_F(PriceDisplay, HostFormatUsesTheCommodityDisplayCode)
{
    host.eFractionType = SpecificFraction_HostFormat;
    host.vSetCommodityItem(1, "ZB", 1057, X1Format(1057, 1, 9.0));
    host.vSetCommodityItem(1, "ZF", 1057, X1Format(1057, 1, 51.0));
    host.vSetCommodityItem(1, "GC", 1057, X1Format(1057, 1, 259.0 + 256.0 * 4));  // low byte 3
    EXPECT_EQ(g_cszDisplayPrice(101, 66, 128, "ZB"), "101-165");
    EXPECT_EQ(g_cszDisplayPrice(99, 33, 64, "ZF"), "99-33");
    EXPECT_EQ(g_cszDisplayPrice(3, 5, 8, "GC"), "3.5");
    EXPECT_EQ(g_cszDisplayPrice(3, 5, 8, "NOCODE"), "3.20");  // no item: code 0, 32nds dotted
    EXPECT_EQ(g_cszDisplayAveragePrice(101, 98.26, 128, "ZB"), "101 24.56/32");  // not for averages
}

TEST_F(PriceDisplay, BadNumbersNeverCrash)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    Accept("ZERO", 0, 0);
    Accept("NEG", -32, 4);
    for (auto setting : {SpecificFraction_Text, SpecificFraction_Decimal, SpecificFraction_HostFormat}) {
        host.eFractionType = setting;
        for (double a : {nan, inf, 1e300, -1e300, 0.0})
            for (double b : {nan, 1.0, 1e300})
                for (double c : {nan, 0.5, -8.0, 1e300, 32.0})
                    for (const char* com : {"ZB", "ZERO", "NEG", ""}) {
                        EXPECT_NO_FATAL_FAILURE(g_cszDisplayPrice(a, b, c, com));
                        EXPECT_NO_FATAL_FAILURE(g_cszDisplayAveragePrice(a, b, c, com));
                    }
    }
    host.eFractionType = SpecificFraction_Text;
    EXPECT_EQ(g_cszDisplayPrice(1e300, 3, 8, "X"), "-2147483648 3/8");
    const CString longId(std::string(5000, 'Z'));
    EXPECT_EQ(g_cszDisplayPrice(4, 3, 8, longId), "4 3/8");
}

TEST(SpecialDecimal, ThirtySecondsAndThousandths)
{
    struct Case { double value; int mode, den; const char* text; };
    const Case cases[] = {
        {101.515625, 0, 32, "101.16500"},
        {100.0, 0, 32, "100.00000"},
        {99.75, 0, 32, "99.24000"},
        {99.5078125, 0, 32, "99.16250"},
        {std::nan(""), 0, 32, "-2147483648.-2147483648000"},
    };
    for (const auto& c : cases) {
        CString out = "previous";
        EXPECT_EQ(g_cszDisplaySpecialDecimal(c.value, c.mode, c.den, out), c.text);
        EXPECT_EQ(out, c.text);
    }
    CString untouched = "keep me";
    EXPECT_EQ(g_cszDisplaySpecialDecimal(101.5, 1, 32, untouched), "keep me");
    EXPECT_EQ(untouched, "keep me");
}

TEST_F(PriceDisplay, QuantitiesUnitWordByMarketKind)
{
    struct Case { char market; const char* unit; };
    const Case cases[] = {
        {'0', "IDS_ORDER-ITEM_UNIT_FUTURE"}, {'8', "IDS_ORDER-ITEM_UNIT_FUTURE"}, {'A', "IDS_ORDER-ITEM_UNIT_STOCK_1K"},
        {'D', "IDS_ORDER-ITEM_UNIT_STOCK_1K"}, {'E', "IDS_ORDER-ITEM_UNIT_STOCK"}, {'O', "IDS_ORDER-ITEM_UNIT_STOCK"},
        {'3', "IDS_ORDER-ITEM_UNIT_UNIO"},   {'5', "IDS_ORDER-ITEM_UNIT_UNIO"},   {'\0', "IDS_ORDER-ITEM_UNIT_UNIO"},
    };
    for (const auto& c : cases) {
        CBaseOrder_OrderInfo order;
        order.commodity.dwMarketKind = static_cast<unsigned char>(c.market);
        order.dwOrderQty = 12;
        EXPECT_EQ(g_cszDisplayOrderQty(&order, 0), CString("12") + c.unit);
        CBaseOrder_DealInfo deal;
        deal.commodity.dwMarketKind = static_cast<unsigned char>(c.market);
        deal.dwDealQty = 3;
        EXPECT_EQ(g_cszDisplayDealQty(&deal, 0), CString("3") + c.unit);
    }
    CBaseOrder_OrderInfo order;
    order.commodity.dwMarketKind = 'A' + 0x100;  // the whole 32-bit value is compared
    EXPECT_EQ(g_cszDisplayOrderQty(&order), "0IDS_ORDER-ITEM_UNIT_UNIO");
    EXPECT_EQ(g_cszDisplayOrderQty(nullptr), "");
}

}  // namespace
