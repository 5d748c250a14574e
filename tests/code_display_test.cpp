#include <gtest/gtest.h>

#include "format/code_display.h"
#include "support/substitute_host.h"

namespace {

// The substitute host shows every language id as itself, so results are the ids.
using CodeDisplay = ovtest::HostTest;

const char* const kUnknown = "IDS_ORDER-ITEM_STATUS_UNKNOW";

TEST_F(CodeDisplay, SingleCodeTables)
{
    struct Case { CString (*show)(unsigned long); unsigned long code; const char* text; };
    auto bs = [](unsigned long c) { return g_cszDisplayOrderBS(c, 0); };
    auto cp = [](unsigned long c) { return g_cszDisplayOrderCP(c, 0); };
    auto com = [](unsigned long c) { return g_cszDisplayOrderComType(c, 0); };
    auto spread = [](unsigned long c) { return g_cszDisplayOrderComplex(c, 0); };
    auto day = [](unsigned long c) { return g_cszDisplayOrderDayTrade(c, 0); };
    auto fore = [](unsigned long c) { return g_cszDisplayOrderOSForeTrade(c, 0); };
    auto role = [](unsigned long c) { return g_cszDisplayOrderRole(c, 0); };
    auto kind = [](unsigned long c) {
        CBaseOrder_OrderInfo order;
        order.dwOrderKind = static_cast<std::uint32_t>(c);
        return g_cszDisplayOrderKind(&order, 0);
    };
    // Rows whose behaviour differs from a plain lookup: the code itself, empty texts, unknown
    // codes, the whole 32-bit value compared, and the spellings the language files use.
    const Case cases[] = {
        {g_cszDisplayHoursType, 'R', "IDS_ORDER-ITEM_HOURETYPE_NORMAL"},
        {g_cszDisplayHoursType, 'Z', "Z"}, {g_cszDisplayHoursType, 0, ""},
        {bs, 'B', "IDS_ORDER-ITEM_BS_BUYIN"}, {bs, 'N', ""}, {bs, 'X', kUnknown},
        {bs, 'B' + 0x100, kUnknown}, {cp, 'c', kUnknown}, {fore, ' ', kUnknown},
        {com, '7', "IDS_ORDER-COMMON_FUTURE"}, {com, '3', "IDS_ORDER-COMMON_FSTOCK"},
        {com, '5', kUnknown},
        {spread, '5', "HTS_ORDER-ITEM_SPREAD_CONAGLES"}, {spread, 'U', "IDS_ORDER-ITEM_BS_SPREAD"},
        {day, 'Y', "IDS_CFOREIGNFUTURECTRLVIEW-STRING_OFFSET1"}, {day, '-', ""},
        {role, 'I', "IDS_ORDER-ITEM_STATUS_IOC"}, {role, '6', kUnknown},
        // Price types, three-character codes included.
        {g_cszDisplayOrderType, '8', "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI15"},
        {g_cszDisplayOrderType, 0x313031, "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI21"},
        {g_cszDisplayOrderType, 0x313032, "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI23"},
        {g_cszDisplayOrderType, 0x313033, "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI22"},
        {g_cszDisplayOrderType, 0x313035, kUnknown}, {g_cszDisplayOrderType, '9', kUnknown},
        {kind, '1', "IDS_ORDER-ITEM_ORDER"}, {kind, '8', "IDS_ORDER-ITEM_ORDER"}, {kind, '9', ""},
        {kind, 'C', "IDS_ORDER-ITEM_DELETE"}, {kind, 'P', "IDS_ORDER-ITEM_CHANGE-PRICE"},
        {kind, 'U', "IDS_ORDER-ITEM_CHANGE"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.show(c.code), c.text) << std::hex << c.code;
}

TEST_F(CodeDisplay, OpenCloseDependsOnDayTradeForBlank)
{
    struct Case { unsigned long open, dayTrade; const char* text; };
    const Case cases[] = {
        {' ', 'Y', "IDS_ORDER-ITEM_OS_DYTRADE_ONOFFSET"}, {'D', 'N', "IDS_ORDER-ITEM_OS_DYTRADE_ONOFFSET"},
        {' ', 'N', "IDS_ORDER-ITEM_OS_AUTO_OFFSET"},      {'7', 'Y', "IDS_ORDER-ITEM_OS_DELETE"},
        {'N', 0, "IDS_ORDER-ITEM_OS_OFFSET"},             {'Y', 0, "IDS_ORDER-ITEM_OS_NEW"},
        {'X', 0, kUnknown},
    };
    for (const auto& c : cases) EXPECT_EQ(g_cszDisplayOrderOS(c.open, c.dayTrade, 0), c.text) << char(c.open);
}

TEST_F(CodeDisplay, StockSideAndTradeKind)
{
    struct Case { char market, kind, side; const char* text; };
    const Case cases[] = {
        {'A', 'K', 'S', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMALIDS_ORDER-ITEM_COMTYPE_STOCK_DTIDS_ORDER-ITEM_BS_SELLOUT"},
        {'B', '9', 'B', ""},
        {'E', 'B', 'X', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODD"},
        {'A', '9', 'B', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMALIDS_ORDER-ITEM_COMTYPE_STOCK_NORMAL_DTRADE"
                        "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMAL_DTRADE_BUY"},
        {'D', 'J', 'S', "IDS_ORDER-ITEM_COMTYPE_STOCK_EODIDS_ORDER-ITEM_COMTYPE_STOCK_EOD_RG"
                        "IDS_ORDER-ITEM_COMTYPE_STOCK_EOD_RG_SELL"},
        {'D', 'F', 'X', "IDS_ORDER-ITEM_COMTYPE_STOCK_EODIDS_ORDER-ITEM_COMTYPE_STOCK_EOD_RZ"},
        {'A', 'A', 'B', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMALIDS_ORDER-ITEM_COMTYPE_STOCK_NORMAL_S"
                        "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMAL_S_BUY"},
        {'O', 'A', 'S', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODD_IntradayIDS_ORDER-ITEM_COMTYPE_STOCK_ODD_Intraday_S"
                        "IDS_ORDER-ITEM_COMTYPE_STOCK_ODD_Intraday_S_SELL"},
        {'E', '9', 'B', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODDIDS_ORDER-ITEM_COMTYPE_STOCK_DAYTRADEIDS_ORDER-ITEM_BS_BUYIN"},
        {'E', 'M', 'S', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODDIDS_ORDER-ITEM_COMTYPE_STOCK_FI_DEBTIDS_ORDER-ITEM_BS_SELLOUT"},
        {'A', 'L', 'Q', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMALIDS_ORDER-ITEM_COMTYPE_STOCK_DEBT"},
        {'A', 'Z', 'B', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMALIDS_ORDER-ITEM_BS_BUYIN"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(g_cszDisplayOrderStockBSType(c.market, c.kind, c.side, 0), c.text)
            << c.market << c.kind << c.side;
}

TEST_F(CodeDisplay, SideOrSpreadByMarket)
{
    struct Case { unsigned long market, complex, side, tradeKind; const char* text; };
    const Case cases[] = {
        {'3', 'N', 'S', 0, "IDS_ORDER-ITEM_BS_SELLOUT"},
        {'3', '2', 'S', 0, "IDS_ORDER-ITEM_BS_SPREAD"},
        {'3', '0', 'Q', 0, ""},
        {'E', '0', 'B', 'A',
         "IDS_ORDER-ITEM_COMTYPE_STOCK_ODDIDS_ORDER-ITEM_COMTYPE_STOCK_ODD_SIDS_ORDER-ITEM_COMTYPE_STOCK_ODD_S_BUY"},
        {'5', '0', 'B', 'A', ""},
    };
    for (const auto& c : cases) {
        CBaseOrder_OrderInfo order;
        order.commodity.dwMarketKind = static_cast<std::uint32_t>(c.market);
        order.commodity.dwStockTradeKind = static_cast<std::uint32_t>(c.tradeKind);
        order.dwComplexKind = static_cast<std::uint32_t>(c.complex);
        order.dwBS = static_cast<std::uint32_t>(c.side);
        EXPECT_EQ(g_cszDisplayOrderBSorComplex(&order, 0), c.text) << char(c.market) << char(c.complex);
    }
    EXPECT_EQ(g_cszDisplayOrderBSorComplex(nullptr, 0), "");
    EXPECT_EQ(g_cszDisplayOrderKind(nullptr, 0), "");
}

TEST_F(CodeDisplay, TypeAndPriceColumn)
{
    host.eFractionType = SpecificFraction_Text;
    CBaseOrder_OrderInfo order;
    order.commodity.dwMarketKind = '0';
    order.dbOrderPrice = 16250;
    order.dwOrderType = '2';
    struct Case { unsigned long kind, type; const char* status; double price; const char* text; };
    const Case cases[] = {
        {'1', '2', "0000", 16250, "IDS_ORDER-COMMON_ORDER_MARKETPRICE"},
        {'3', '2', "0000", 16250, "IDS_ORDER-COMMON_ORDER_MARKETPRICE"},
        {'2', '2', "0000", 16250, "16,250"},
        {'4', '2', "9997", 16250.5, "16,250.5"},
        {'5', '2', "0000", 0.0, "IDS_ORDER-COMMON_ORDER_LIMITMKTPRICE"},
        {'5', '2', "0000", 16250, "IDS_ORDER-COMMON_ORDER_LIMITMKTPRICE16,250"},
        {'C', '1', "0000", 16250, "IDS_ORDER-COMMON_ORDER_MARKETPRICE"},
        {'U', '5', "0000", 16250, "IDS_ORDER-COMMON_ORDER_LIMITMKTPRICE"},
        {'P', '2', "0000", 16250, "16,250"},
        {'6', '6', "9997", 16250, "IDS_ORDER-COMMON_ORDER_UPPERLMT"},
        {'7', '7', "CG03", 16250, "IDS_ORDER-COMMON_ORDER_DOWNERLMT"},
        {'8', '8', "0000", 16250, "16,250"},
        {0x313032, 0x313032, "9997", 1, "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI23"},
        {0x313034, 0x313031, "0000", 12.5, "12.5"},
        {'9', '2', "0000", 16250, kUnknown},
    };
    for (const auto& c : cases) {
        order.dwOrderKind = static_cast<std::uint32_t>(c.kind);
        order.dwOrderType = static_cast<std::uint32_t>(c.type);
        order.csStatusCode = c.status;
        order.dbOrderPrice = c.price;
        EXPECT_EQ(g_cszDisplayOrderTypeAndPrice(&order), c.text) << std::hex << c.kind;
    }
    // A strike order held at the gateway shows the strike word whatever its prices.
    order.commodity.dwMarketKind = 'D';
    order.dwOrderKind = '2';
    order.csStatusCode = "9997";
    EXPECT_EQ(g_cszDisplayOrderTypeAndPrice(&order), "IDS_ORDER-COMMON_ORDER_STRICKERPRICE");
    order.csStatusCode = "0000";
    order.dbOrderPrice = 1234.5;
    EXPECT_EQ(g_cszDisplayOrderTypeAndPrice(&order), "1,234.5");
    EXPECT_EQ(g_cszDisplayOrderTypeAndPrice(nullptr), "");
}

}  // namespace
