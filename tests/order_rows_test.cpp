#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "support/substitute_host.h"
#include "rows/order_rows.h"

namespace {

using Kind = CBaseOrderItemGroup::ValueKind;

class Rows : public ovtest::HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        Futures(order);
    }

    static void Futures(CBaseOrder_OrderInfo& o)
    {
        o.commodity.dwMarketKind = '0';
        o.commodity.csComId = "TXF";
        o.commodity.csComMonth = "202606";
        o.dwComplexKind = 'N';
        o.dwBS = 'B';
        o.dwOrderKind = '2';
        o.dwOrderCond = 'R';
        o.csOrderNo = "AB123";
        o.iOrderSeq = 1;
        o.dwOrderQty = 5;
        o.dwOrderDate = 20261123;
        o.dwOrderTime = 93015123;
        o.dbOrderPrice = 23150;
        o.csStatusCode = "0000";
    }
    static void Stock(CBaseOrder_OrderInfo& o)
    {
        o.commodity.dwMarketKind = 'A';
        o.commodity.dwStockTradeKind = 'A';
        o.commodity.csComId = "2330";
        o.commodity.csComMonth = "";
    }

    CString Text(const CBaseOrderItemGroup& r, const char* key) const
    {
        const auto* item = r.pGetItem(key);
        return item ? item->csText : CString("<unset>");
    }
    static std::vector<std::string> Keys(const CBaseOrderItemGroup& r)
    {
        std::vector<std::string> keys;
        for (const auto& call : r.GetSetCalls()) keys.push_back(call.Key().str());
        return keys;
    }

    // Fill `row` afresh from the order.
    bool Simple(int mode)
    {
        row.vClear();
        return g_bAddODOI2OIG_SimpleOrderListCtrl(&row, &order, mode);
    }
    bool Full(int mode, bool stamp = true, bool oprather = false, bool exchange = false)
    {
        row.vClear();
        return g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&row, &order, mode, stamp, oprather, exchange);
    }

    CBaseOrder_OrderInfo order;
    CBaseOrderItemGroup row;
};

TEST_F(Rows, SimpleListModes)
{
    struct Case {
        int mode;
        char orderKind;
        std::uint32_t qty, dealt, cancelled;
        const char* state;
        const char* status;
        char side;
        bool shown;
    };
    const Case cases[] = {
        {255, 'C', 5, 0, 0, "", "0000", 'B', true},    // 255 shows even a cancel request
        {0x1FF, 'C', 5, 0, 0, "", "0000", 'B', true},  // only the low byte counts
        {0, 'C', 5, 0, 0, "", "0000", 'B', false},
        {3, 'U', 5, 0, 0, "", "0000", 'B', false},
        {3, '2', 5, 0, 0, "X", "0000", 'B', true},     // an unlisted mode shows the rest
        {1, '2', 5, 2, 3, "", "0000", 'B', false},     // cancelled + dealt reach the quantity
        {1, '2', 5, 2, 2, "", "0000", 'B', true},
        {1, '2', 5, 0, 0, "X", "0000", 'B', false},    // unknown state
        {1, '2', 5, 0, 0, "X", "9995", 'B', true},
        {1, '2', 5, 0xFFFFFFFFu, 1, "", "0000", 'B', true},  // the sum wraps to 0
        {2, '2', 5, 5, 0, "F", "0000", 'B', true},
        {2, '2', 5, 0, 5, "C", "0000", 'B', false},    // nothing dealt
        {2, '2', 5, 3, 0, "F", "0000", 'B', false},
        {4, '2', 5, 1, 0, "F", "0000", 'B', true},
        {4, '2', 5, 0, 0, "F", "0000", 'B', false},
        {5, '2', 5, 0, 0, "C", "0000", 'B', true},     // "C" is not in mode 5's list
        {5, '2', 5, 0, 0, "", "0000", 'B', false},
        {5, '2', 5, 0, 0, "P", "0000", 'B', false},
        {6, '2', 5, 0, 0, "Z", "9995", 'B', true},
        {6, '2', 5, 0, 0, "Z", "0000", 'B', false},
        {7, '2', 5, 0, 0, "Z", "0000", 'B', true},
        {7, '2', 5, 0, 0, "F", "0000", 'B', false},
        {8, '2', 5, 1, 0, "", "0000", 'B', true},
        {8, '2', 5, 1, 0, "", "0000", 'S', false},
        {8, '2', 5, 0, 0, "F", "0000", 'B', false},
        {9, '2', 5, 0, 0, "F", "0000", 'S', true},     // the state, not the quantity
        {9, '2', 5, 5, 0, "C", "0000", 'S', false},
        {9, '2', 5, 5, 0, "F", "0000", 'B', false},
    };
    for (const Case& c : cases) {
        order.dwOrderKind = static_cast<std::uint32_t>(c.orderKind);
        order.dwOrderQty = c.qty;
        order.dwDealQty = c.dealt;
        order.dwCancelQty = c.cancelled;
        order.csStateCode = c.state;
        order.csStatusCode = c.status;
        order.dwBS = static_cast<std::uint32_t>(c.side);
        EXPECT_EQ(Simple(c.mode), c.shown) << "mode " << c.mode << " kind " << c.orderKind << " state " << c.state;
        EXPECT_EQ(row.GetSetCalls().empty(), !c.shown) << "a hidden order leaves the row untouched";
    }
}

TEST_F(Rows, SpreadSideUsesTheFirstLeg)
{
    order.dwComplexKind = '2';
    order.dwBS = 'S';
    order.dwLegBS = 'B';
    order.dwDealQty = 1;
    EXPECT_TRUE(Simple(8));
    order.dwLegBS = 'S';
    EXPECT_FALSE(Simple(8));
}

TEST_F(Rows, FullListMarketGroupsAndModes)
{
    struct Case {
        int mode;
        char marketKind, tradeKind, orderKind;
        const char* status;
        bool shown;
    };
    const Case cases[] = {
        {0x4ffff, 'E', 0, 'C', "0000", true},
        {0x4ff01, 'E', 0, 'P', "0000", false},  // change requests hidden outside 255
        {0x11100 | 0xFF, '7', 0, '2', "0000", true},
        {0x11100 | 0xFF, '1', 0, '2', "0000", false},
        {0x11200 | 0xFF, '8', 0, '2', "0000", true},
        {0x41100 | 0xFF, 'A', 'A', '2', "0000", true},
        {0x41100 | 0xFF, 'A', 'B', '2', "0000", false},
        {0x41200 | 0xFF, 'A', 'B', '2', "0000", true},
        {0x41400 | 0xFF, 'A', 'C', '2', "0000", true},
        {0x41800 | 0xFF, 'D', 0, '2', "0000", true},
        {0x41800 | 0xFF, 'E', 0, '2', "0000", false},
        {0x42100 | 0xFF, 'E', 0, '2', "0000", true},
        {0xFF, '0', 0, '2', "0000", false},     // no group selected
        {0x11100 | 1, '0', 0, '2', "0000", true},   // mode 1 admits "0000" with any state
        {0x11100 | 1, '0', 0, '2', "1234", false},
    };
    for (const Case& c : cases) {
        order.commodity.dwMarketKind = static_cast<std::uint32_t>(c.marketKind);
        order.commodity.dwStockTradeKind = static_cast<std::uint32_t>(c.tradeKind);
        order.dwOrderKind = static_cast<std::uint32_t>(c.orderKind);
        order.csStatusCode = c.status;
        order.csStateCode = "X";
        EXPECT_EQ(Full(c.mode), c.shown) << std::hex << c.mode << " " << c.marketKind << c.tradeKind;
    }
    // Mode 9 tests the dealt quantity here, not the filled state.
    order.commodity.dwMarketKind = '0';
    order.dwBS = 'S';
    order.csStateCode = "";
    order.dwDealQty = 1;
    EXPECT_TRUE(Full(0x11100 | 9));
    order.dwDealQty = 0;
    order.csStateCode = "F";
    EXPECT_FALSE(Full(0x11100 | 9));
}

TEST_F(Rows, SimpleRowSetsItsItemsInOrder)
{
    Stock(order);
    ASSERT_TRUE(Simple(255));
    const std::vector<std::string> expected = {
        "IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_BACKTABLENO", "IDS_ORDER-ITEM_OPRATHER",
        "IDS_ORDER-ITEM_BOKDTANDTM", "IDS_ORDER-ITEM_ORDERDATE", "IDS_ORDER-ITEM_ORDERTIME",
        "IDS_ORDER-ITEM_DEALTIME", "IDS_ORDER-ITEM_SOURCE", "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_COMSTOCK",
        "IDS_ORDER-ITEM_BUYSELL", "IDS_ORDER-ITEM_NEWOFFSET", "IDS_ORDER-ITEM_STATUS", "IDS_ORDER-ITEM_OPERATOR",
        "IDS_ORDER-ITEM_ORDERCATEGORY", "IDS_ORDER-ITEM_ORDERTYPE", "IDS_ORDER-ITEM_ORDERPRICE",
        "IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE", "HTS_ORDER-ITEM_ROLE", "IDS_ORDER-ITEM_COMMODITYROLE",
        "IDS_ORDER-ITEM_ORDERQTY", "IDS_ORDER-ITEM_ORDERQTYSDK", "IDS_ORDER-ITEM_DEALQTY",
        "IDS_ORDER-ITEM_DEALQTYSDK", "IDS_ORDER-ITEM_CANCELQTY", "IDS_ORDER-ITEM_CANCELQTYSDK",
        "IDS_ORDER-ITEM_AVEPRICE", "IDS_ORDER-ITEM_BALANCEQTY", "IDS_ORDER-ITEM_TRADEDATE",
        "IDS_ORDER-ITEM_ACCOUNT_NAME"};
    EXPECT_EQ(Keys(row), expected);
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERCATEGORY"), Text(row, "IDS_ORDER-ITEM_BUYSELL"));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "2026/11/23");
    EXPECT_EQ(row.pGetItem("IDS_ORDER-ITEM_BALANCEQTY")->kind, Kind::Int);
}

TEST_F(Rows, SimpleRowTexts)
{
    order.csAltOrderNo = "";
    order.dwBookDate = 20261123;
    order.dwBookTime = 84501999;
    order.dwDealTime = 0;
    order.dwOrderQty = 5;
    order.dwDealQty = 4;
    order.dwCancelQty = 3;
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERNO"), "AB123-21");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BACKTABLENO"), "AB123");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_OPRATHER"), "--");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "2026/11/23 08:45:01");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERTIME"), "09:30:15");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALTIME"), "--");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "TXF 202606");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMSTOCK"), "<unset>");  // futures kinds have none
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_APPROPRIATE"), "");     // day trade code unset
    EXPECT_EQ(row.pGetItem("IDS_ORDER-ITEM_BALANCEQTY")->iValue, -2);  // shown as computed
    // Futures keep the working text in the trade date: here the average price's "--".
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "--");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ACCOUNT_NAME"), "");

    struct NumberCase { const char* orderNo; const char* altNo; const char* item; };
    const NumberCase numbers[] = {
        {"AB123", "Z9", "Z9-21"}, {"", "Z9", "[Z9]"}, {"", "", "--"}};
    for (const auto& n : numbers) {
        order.csOrderNo = n.orderNo;
        order.csAltOrderNo = n.altNo;
        order.dwBookDate = 0;
        order.dwOrderDate = 0;
        ASSERT_TRUE(Simple(255));
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERNO"), n.item);
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BACKTABLENO"), *n.orderNo ? n.orderNo : "--");
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "--");
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERDATE"), "0000/00/00");
    }
}

TEST_F(Rows, TradeDateCarriesTheWorkingTextForFutures)
{
    order.dwOrderKind = 'X';  // no quantity items: the commodity-role text is the last one
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "TXF 202606");
    Stock(order);
    order.dwOrderDate = 0;
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "--");
}

TEST_F(Rows, AveragePriceDropsOneDigit)
{
    struct Case { double avg, avg2, denominator; int decimals; const char* simple; const char* full; };
    const Case cases[] = {
        {0.0, 0.0, 0, 2, "--", "--"},
        {1.23456, 0.0, 0, 2, "1.2345", "1.2345"},
        {1.23456, 2.5, 0, 2, "1.23|2.5", "1.23|2.5"},
        {12.5, 0.0, 0, 2, "12.5", "12.5"},
        {1.123456789, 0.0, 1, 6, "1.123456", "1.123456"},  // 6 decimals: "%.7f" less one digit
        {101.5, 0.0, 32, 0, "101.5", "101.5"},
        {1234567.5, 0.0, 0, 0, "1234567.5", "1,234,567.5"},
        {20.0, 0.0, 0, 0, "20", "20"},
    };
    for (const Case& c : cases) {
        order.dbAvgPrice = c.avg;
        order.dbAvgPrice2 = c.avg2;
        order.dbDenominator = c.denominator;
        order.iDecimals = c.decimals;
        ASSERT_TRUE(Simple(255));
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_AVEPRICE"), c.simple) << c.avg;
        ASSERT_TRUE(Full(0x4ffff));
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_AVEPRICE"), c.full) << c.avg;
    }
}

TEST_F(Rows, EtsOrdersAndTriggerPrices)
{
    order.commodity.dwMarketType = 'O';
    order.commodity.dwMarketKind = '2';
    order.commodity.csComId = "ES";
    order.commodity.csExchangeId = "CME";
    order.dwOrderKind = '3';
    order.dbTriggerPrice = 5010.25;
    order.csOrderNo = "XC001";
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "ES 202606(IDS_ORDER-ITEM_ETS)");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITYROLE"), "ES 202606IDS_ORDER-ITEM_ETS");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRIGGERPRICE"), "5010.25");

    ASSERT_TRUE(Full(0x4ffff, true, false, true));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "CME ES 202606(IDS_ORDER-ITEM_ETS)");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_EXCNANGE"), "CME");
    const auto keys = Keys(row);
    const auto commodity = std::find(keys.begin(), keys.end(), "IDS_ORDER-ITEM_COMMODITY");
    ASSERT_NE(commodity, keys.end());
    EXPECT_EQ(*(commodity + 1), "IDS_ORDER-ITEM_ORDERTYPE");  // set once more after the commodity
    EXPECT_EQ(std::count(keys.begin(), keys.end(), "IDS_ORDER-ITEM_ORDERTYPE"), 2);

    order.csOrderNo = "XK001";  // 'K' is past 'J'
    order.dwOrderKind = '2';
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "ES 202606");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRIGGERPRICE"), "--");
}

TEST_F(Rows, FullRowStampsAndQuantities)
{
    Stock(order);
    order.dwBookDate = 20261123;
    order.dwBookTime = 93015123;
    order.dwOrderQty = 12000;
    order.dwDealQty = 1000;
    order.dwAccountDate = 0;
    ASSERT_TRUE(Full(0x4ffff, true, true));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "2026/11/23 09:30:15.123");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERTIME"), "09:30:15.123");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_OPRATHER"), "--");
    for (const char* key : {"IDS_ORDER-ITEM_ORDERQTY", "IDS_ORDER-ITEM_HKORDERQTY", "IDS_ORDER-ITEM_ORDERQTYSDK",
                            "IDS_ORDER-ITEM_HKHISTORYORDERQTY"})
        EXPECT_EQ(Text(row, key), "12,000") << key;
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_HKDEALQTY"), "1,000");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ACCOUNTDATE"), "--");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "2026/11/23");
    EXPECT_EQ(row.pGetItem("IDS_ORDER-ITEM_BALANCEQTY")->iValue, 11000);

    Futures(order);
    order.dwBookDate = 20261123;
    order.dwBookTime = 93015123;
    order.csFirm = "F001";
    ASSERT_TRUE(Full(0x4ffff));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "2026/11/23 09:30:15");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_OPRATHER"), "<unset>");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "F001");  // carried from the firm item
    EXPECT_EQ(Text(row, "IDS_CFOREIGNFUTURECTRLVIEW-STRING_OFFSET1"),
              Text(row, "IDS_ORDER-ITEM_APPROPRIATE"));
    ASSERT_TRUE(Full(0x4ffff, false));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "09:30:15");

    // Out-of-range stamps print every digit, as "%04d/%02d/%02d %02d:%02d:%02d.%03d" does.
    Stock(order);
    order.dwBookDate = order.dwOrderDate = 0xFFFFFFFFu;
    order.dwBookTime = order.dwOrderTime = 0xFFFFFFFFu;
    ASSERT_TRUE(Full(0x4ffff, true, true));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_BOKDTANDTM"), "429496/72/95 429:49:67.295");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ORDERTIME"), "429:49:67.295");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_TRADEDATE"), "429496/72/95");
}

class DealRow : public Rows {
protected:
    void SetUp() override
    {
        Rows::SetUp();
        Futures(deal);
        deal.dwDealMarketKind = '0';
        deal.dwDealDate = 20261123;
        deal.dwDealTime = 101502250;
        deal.dwDealQty = 1500;
        deal.dbDealPrice = 23151;
        deal.csDealNo = "D77";
        deal.dbFee = 12.5;
        deal.dbTradeValue = 1234567.4;
    }
    bool Fill(bool stamp = false, bool exchange = false)
    {
        row.vClear();
        return g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&row, &deal, 0, stamp, false, exchange);
    }
    CBaseOrder_DealInfo deal;
};

TEST_F(DealRow, TimesPricesAndAmounts)
{
    ASSERT_TRUE(Fill());
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALTIME"), "10:15:02");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALPRICE"), "23,151");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_AVEPRICE"), "23,151");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_HKHISTORYDEALQTY"), "1,500");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALNO"), "D77");
    EXPECT_EQ(Text(row, "IDS_ORDER-TAB-DEALREPORT_PRICE"), "1,234,567");
    const auto* fee = row.pGetItem("IDS_ORDER-TAB-DEALREPORT_FEE");
    ASSERT_NE(fee, nullptr);
    EXPECT_EQ(fee->kind, Kind::Double);
    EXPECT_EQ(fee->dbValue, 12.5);
    // The back-table number is set twice: "--"-guarded first, then as it is.
    const auto keys = Keys(row);
    EXPECT_EQ(std::count(keys.begin(), keys.end(), "IDS_ORDER-ITEM_BACKTABLENO"), 2);
    EXPECT_EQ(keys.front(), "IDS_ORDER-ITEM_DEALTIME");
    EXPECT_EQ(keys.back(), "IDS_ORDER-TAB-DEALREPORT_PRICE");

    struct TimeCase { char marketKind; bool stamp; std::uint32_t time; const char* text; };
    const TimeCase times[] = {
        {'0', true, 101502250, "2026/11/23 10:15:02"},
        {'A', true, 101502250, "2026/11/23 10:15:02.250"},
        {'A', false, 101502250, "10:15:02.250"},
        {'0', false, 0, "00:00:00"},                     // only all bits set means none
        {'0', false, 0xFFFFFFFFu, "--"},
    };
    for (const auto& t : times) {
        deal.dwDealMarketKind = static_cast<std::uint32_t>(t.marketKind);
        deal.dwDealTime = t.time;
        ASSERT_TRUE(Fill(t.stamp));
        EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALTIME"), t.text);
    }
}

TEST_F(DealRow, SpreadsAndEts)
{
    deal.dwComplexKind = '2';
    deal.dbDealPrice2 = 23090;
    deal.commodity.csComMonth2 = "202607";
    ASSERT_TRUE(Fill());
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_DEALPRICE"), "23,151|23,090");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "TXF 202606/202607");

    deal.dwComplexKind = 'N';
    deal.commodity.dwMarketType = 'O';
    deal.commodity.dwMarketKind = '2';
    deal.commodity.csExchangeId = "CME";
    deal.csOrderNo = "XA1";
    ASSERT_TRUE(Fill(false, true));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "TXF 202606IDS_ORDER-ITEM_ETS");  // no parentheses, no exchange
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_EXCNANGE"), "CME");
    deal.csOrderNo = "X1";
    ASSERT_TRUE(Fill(false, true));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "CME TXF 202606");
}

TEST_F(Rows, AccountNameAndSymbolFallbacks)
{
    order.csAccount = "F0001";
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ACCOUNT_NAME"), "F0001");
    host.mapAccountNames["F0001"] = "Chen";
    order.commodity.csSymbolID = "TXFL6";
    ASSERT_TRUE(Simple(255));
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_ACCOUNT_NAME"), "Chen");
    EXPECT_EQ(Text(row, "IDS_ORDER-ITEM_COMMODITY"), "TXFL6");
}

TEST_F(Rows, BadInputNeverBreaksARow)
{
    EXPECT_FALSE(g_bAddODOI2OIG_SimpleOrderListCtrl(nullptr, &order, 255));
    EXPECT_FALSE(g_bAddODOI2OIG_SimpleOrderListCtrl(&row, nullptr, 255));
    EXPECT_FALSE(g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(nullptr, &order, 0x4ffff, true, true, true));
    EXPECT_FALSE(g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&row, nullptr, 0x4ffff, true, true, true));
    EXPECT_FALSE(g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&row, nullptr, 0, true, true, true));
    CBaseOrder_DealInfo deal;
    EXPECT_FALSE(g_bAddODOI2OIG_DealRet2FullOrderListCtrl(nullptr, &deal, 0, true, true, true));
    EXPECT_TRUE(row.GetSetCalls().empty());

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::string huge(10000, 'Z');
    for (const std::uint32_t code : {0u, 0xFFu, 0xFFFFFFFFu, static_cast<std::uint32_t>('Q')}) {
        CBaseOrder_DealInfo d;
        d.commodity.dwMarketKind = code;
        d.commodity.dwMarketType = code;
        d.dwOrderKind = code;
        d.dwComplexKind = code;
        d.dwOrderCond = code;
        d.dwOpenOffset = code;
        d.dwHoursType = code;
        d.dwDealMarketKind = code;
        d.dwOrderQty = 0xFFFFFFFFu;
        d.dwDealQty = 0x80000000u;
        d.dwCancelQty = code;
        d.dwBookDate = d.dwOrderDate = d.dwAccountDate = d.dwDealDate = 99999999;
        d.dwBookTime = d.dwOrderTime = d.dwDealTime = 4294967294u;
        d.dbOrderPrice = d.dbAvgPrice = d.dbDealPrice = nan;
        d.dbAvgPrice2 = d.dbDealPrice2 = inf;
        d.dbTriggerPrice = -inf;
        d.dbDenominator = d.dbDealDenominator = nan;
        d.dbTradeValue = 1e308;
        d.iDecimals = std::numeric_limits<int>::max();
        d.csOrderNo = d.csAltOrderNo = d.csSourceName = CString(huge);
        d.commodity.csComId = CString(huge);
        CBaseOrderItemGroup a, b, c;
        EXPECT_TRUE(g_bAddODOI2OIG_SimpleOrderListCtrl(&a, &d, 255));
        EXPECT_TRUE(g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&b, &d, 0x4ffff, true, true, true));
        EXPECT_TRUE(g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&c, &d, 0, true, true, true));
        EXPECT_EQ(a.pGetItem("IDS_ORDER-ITEM_ORDERDATE")->csText, "9999/99/99");
        EXPECT_EQ(c.pGetItem("IDS_ORDER-ITEM_DEALQTY")->csText, "-2,147,483,648");
    }
}

TEST(ItemGroup, KeepsEverySetCallAndLooksUpTheLast)
{
    CBaseOrderItemGroup row;
    double fee = 1.5;
    EXPECT_TRUE(row.bSetItemValue("A", "one", nullptr, nullptr));
    EXPECT_TRUE(row.bSetItemValue("B", fee, "x", nullptr));
    EXPECT_TRUE(row.bSetItemValue("A", 7, nullptr, nullptr));
    EXPECT_FALSE(row.bSetItemValue("", "lost", nullptr, nullptr));
    ASSERT_EQ(row.GetSetCalls().size(), 3u);
    EXPECT_EQ(row.GetSetCalls()[0].csText, "one");
    EXPECT_EQ(row.pGetItem("A")->kind, CBaseOrderItemGroup::ValueKind::Int);
    EXPECT_EQ(row.pGetItem("A")->iValue, 7);
    EXPECT_EQ(row.pGetItem("B")->csExtra1, "x");
    EXPECT_EQ(row.pGetItem("C"), nullptr);
    row.vSetDisplayItems({"X", "A", "A"});
    EXPECT_EQ(row.iGetDisplayItem("A"), 1);
    EXPECT_EQ(row.iGetDisplayItem("B"), -1);
    row.vClear();
    EXPECT_EQ(row.pGetItem("A"), nullptr);
    EXPECT_EQ(row.iGetDisplayItem("A"), 1);  // the definition stays
}

}  // namespace
