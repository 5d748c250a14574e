#include "format/code_display.h"

#include "format/detail/code_table.h"
#include "format/normalize.h"
#include "format/price_display.h"

using orderview::detail::Code;
using orderview::detail::CodeTable;
using orderview::detail::Is;
using orderview::detail::LangText;

namespace {

const char kUnknown[] = "IDS_ORDER-ITEM_STATUS_UNKNOW";

const CodeTable kHoursType({{'-', "IDS_ORDER-ITEM_STATUS_DASH"},
                            {'P', "IDS_ORDER-ITEM_HOURETYPE_AFTER"},
                            {'R', "IDS_ORDER-ITEM_HOURETYPE_NORMAL"}},
                           nullptr);

const CodeTable kSide({{'B', "IDS_ORDER-ITEM_BS_BUYIN"},
                       {'N', nullptr},
                       {'S', "IDS_ORDER-ITEM_BS_SELLOUT"}},
                      kUnknown);

const CodeTable kCallPut({{'C', "IDS_ORDER-ITEM_STATUS_CALL"},
                          {'P', "IDS_ORDER-ITEM_STATUS_PUT"}},
                         kUnknown);

const CodeTable kCommodityClass({{'0', "IDS_ORDER-COMMON_FUTURE"},
                                 {'2', "IDS_ORDER-COMMON_FUTURE"},
                                 {'7', "IDS_ORDER-COMMON_FUTURE"},
                                 {'1', "IDS_ORDER-COMMON_OPTION"},
                                 {'4', "IDS_ORDER-COMMON_OPTION"},
                                 {'8', "IDS_ORDER-COMMON_OPTION"},
                                 {'3', "IDS_ORDER-COMMON_FSTOCK"},
                                 {'A', "IDS_ORDER-COMMON_STOCK"},
                                 {'D', "IDS_ORDER-COMMON_STOCK"},
                                 {'E', "IDS_ORDER-COMMON_STOCK"},
                                 {'O', "IDS_ORDER-COMMON_STOCK"}},
                                kUnknown);

// The spread ids start with "HTS_"; "CONAGLES" is the language files' own spelling.
const CodeTable kComplex({{'1', "HTS_ORDER-ITEM_SPREAD_PRICE"},
                          {'2', "HTS_ORDER-ITEM_SPREAD_TIME"},
                          {'3', "HTS_ORDER-ITEM_SPREAD_STRADDLES"},
                          {'4', "HTS_ORDER-ITEM_SPREAD_STRANGLES"},
                          {'5', "HTS_ORDER-ITEM_SPREAD_CONAGLES"},
                          {'N', "HTS_ORDER-ITEM_SPREAD_NULL"},
                          {'U', "IDS_ORDER-ITEM_BS_SPREAD"}},
                         kUnknown);

const CodeTable kDayTrade({{'N', "IDS_CFOREIGNFUTURECTRLVIEW-STRING_OFFSET2"},
                           {'Y', "IDS_CFOREIGNFUTURECTRLVIEW-STRING_OFFSET1"}},
                          nullptr);

const CodeTable kOrderKind({{'1', "IDS_ORDER-ITEM_ORDER"},
                            {'2', "IDS_ORDER-ITEM_ORDER"},
                            {'3', "IDS_ORDER-ITEM_ORDER"},
                            {'4', "IDS_ORDER-ITEM_ORDER"},
                            {'5', "IDS_ORDER-ITEM_ORDER"},
                            {'6', "IDS_ORDER-ITEM_ORDER"},
                            {'7', "IDS_ORDER-ITEM_ORDER"},
                            {'8', "IDS_ORDER-ITEM_ORDER"},
                            {'C', "IDS_ORDER-ITEM_DELETE"},
                            {'P', "IDS_ORDER-ITEM_CHANGE-PRICE"},
                            {'U', "IDS_ORDER-ITEM_CHANGE"}},
                           nullptr);

// Open/close; a blank code depends on the day-trade flag (see g_cszDisplayOrderOS).
const CodeTable kOpenClose({{'7', "IDS_ORDER-ITEM_OS_DELETE"},
                            {'D', "IDS_ORDER-ITEM_OS_DYTRADE_ONOFFSET"},
                            {'N', "IDS_ORDER-ITEM_OS_OFFSET"},
                            {'Y', "IDS_ORDER-ITEM_OS_NEW"}},
                           kUnknown);

const CodeTable kOpenCloseForeign({{'N', "IDS_ORDER-ITEM_OS_COMMON_OFFSET"},
                                   {'Y', "IDS_ORDER-ITEM_OS_NEW"}},
                                  kUnknown);

const CodeTable kTimeInForce({{'F', "IDS_ORDER-ITEM_STATUS_FOK"},
                              {'I', "IDS_ORDER-ITEM_STATUS_IOC"},
                              {'R', "IDS_ORDER-ITEM_STATUS_ROD"}},
                             kUnknown);

// '102' and '103' cross the numbering of their ids; the language files pair them this way.
const CodeTable kPriceType({{'1', "IDS_ORDER-COMMON_ORDER_MARKETPRICE"},
                            {'2', "IDS_ORDER-COMMON_LIMITPRICE"},
                            {'3', "IDS_ORDER-COMMON_ORDER_MARKETPRICESTOP"},
                            {'4', "IDS_ORDER-COMMON_ORDER_LIMITPRICESTOP"},
                            {'5', "IDS_ORDER-COMMON_ORDER_LIMITMKTPRICE"},
                            {'6', "IDS_ORDER-COMMON_ORDER_UPPERLMT"},
                            {'7', "IDS_ORDER-COMMON_ORDER_DOWNERLMT"},
                            {'8', "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI15"},
                            {'C', "IDS_ORDER-ITEM_DELETE"},
                            {'P', "IDS_ORDER-ITEM_CHANGE-PRICE"},
                            {'U', "IDS_ORDER-ITEM_CHANGE"},
                            {Code("101"), "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI21"},
                            {Code("102"), "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI23"},
                            {Code("103"), "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI22"},
                            {Code("104"), "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI24"}},
                           kUnknown);

// Stock orders: the market word, then the market's own kind suffixes.
const CodeTable kStockMarket({{'A', "IDS_ORDER-ITEM_COMTYPE_STOCK_NORMAL"},
                              {'D', "IDS_ORDER-ITEM_COMTYPE_STOCK_EOD"},
                              {'E', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODD"},
                              {'O', "IDS_ORDER-ITEM_COMTYPE_STOCK_ODD_Intraday"}},
                             nullptr);

const CodeTable kLotKindSuffix({{'9', "_DTRADE"},
                                {'A', "_S"},
                                {'B', "_RZ"},
                                {'F', "_RZ"},
                                {'I', "_RZ"},
                                {'C', "_RG"},
                                {'G', "_RG"},
                                {'J', "_RG"}},
                               nullptr);

const CodeTable kOddKindSuffix({{'A', "_S"}}, nullptr);

const CodeTable kSideSuffix({{'B', "_BUY"}, {'S', "_SELL"}}, nullptr);

const CodeTable kGeneralStockKind({{'9', "IDS_ORDER-ITEM_COMTYPE_STOCK_DAYTRADE"},
                                   {'K', "IDS_ORDER-ITEM_COMTYPE_STOCK_DT"},
                                   {'L', "IDS_ORDER-ITEM_COMTYPE_STOCK_DEBT"},
                                   {'M', "IDS_ORDER-ITEM_COMTYPE_STOCK_FI_DEBT"}},
                                  nullptr);

const CodeTable kPlainSide({{'B', "IDS_ORDER-ITEM_BS_BUYIN"}, {'S', "IDS_ORDER-ITEM_BS_SELLOUT"}}, nullptr);

bool IsFuturesOrOptions(unsigned long marketKind)
{
    for (char kind : {'0', '1', '2', '3', '4', '7', '8'})
        if (Is(marketKind, kind)) return true;
    return false;
}

bool IsStock(unsigned long marketKind)
{
    return Is(marketKind, 'A') || Is(marketKind, 'D') || Is(marketKind, 'E') || Is(marketKind, 'O');
}

}  // namespace

CString g_cszDisplayHoursType(unsigned long code)
{
    if (kHoursType.Has(code)) return kHoursType.Display(code);
    const char ch = static_cast<char>(code & 0xFF);
    return ch ? CString(ch) : CString();
}

CString g_cszDisplayOrderBS(unsigned long side, unsigned long) { return kSide.Display(side); }
CString g_cszDisplayOrderCP(unsigned long callPut, unsigned long) { return kCallPut.Display(callPut); }
CString g_cszDisplayOrderComType(unsigned long marketKind, unsigned long) { return kCommodityClass.Display(marketKind); }
CString g_cszDisplayOrderComplex(unsigned long complexKind, unsigned long) { return kComplex.Display(complexKind); }
CString g_cszDisplayOrderDayTrade(unsigned long dayTrade, unsigned long) { return kDayTrade.Display(dayTrade); }

CString g_cszDisplayOrderKind(CBaseOrder_OrderInfo* order, unsigned long)
{
    return order ? kOrderKind.Display(order->dwOrderKind) : CString();
}

CString g_cszDisplayOrderOS(unsigned long openClose, unsigned long dayTrade, unsigned long)
{
    if (Is(openClose, ' '))
        return LangText(Is(dayTrade, 'Y') ? "IDS_ORDER-ITEM_OS_DYTRADE_ONOFFSET" : "IDS_ORDER-ITEM_OS_AUTO_OFFSET");
    return kOpenClose.Display(openClose);
}

CString g_cszDisplayOrderOSForeTrade(unsigned long openClose, unsigned long)
{
    return kOpenCloseForeign.Display(openClose);
}

CString g_cszDisplayOrderRole(unsigned long timeInForce, unsigned long) { return kTimeInForce.Display(timeInForce); }
CString g_cszDisplayOrderType(unsigned long priceType) { return kPriceType.Display(priceType); }

CString g_cszDisplayOrderStockBSType(unsigned long marketKind, unsigned long stockTradeKind, unsigned long side,
                                     unsigned long)
{
    const CString& marketId = kStockMarket.Id(marketKind);
    if (marketId.IsEmpty()) return CString();
    const bool lots = Is(marketKind, 'A') || Is(marketKind, 'D');
    const CString& suffix = (lots ? kLotKindSuffix : kOddKindSuffix).Id(stockTradeKind);
    CString kindWord, sideWord;
    if (!suffix.IsEmpty()) {
        const CString kindId = marketId + suffix;
        kindWord = LangText(kindId);
        const CString& sideSuffix = kSideSuffix.Id(side);
        if (!sideSuffix.IsEmpty()) sideWord = LangText(kindId + sideSuffix);
    } else {
        kindWord = kGeneralStockKind.Display(stockTradeKind);
        sideWord = kPlainSide.Display(side);
    }
    return LangText(marketId) + kindWord + sideWord;
}

CString g_cszDisplayOrderBSorComplex(CBaseOrder_OrderInfo* order, unsigned long)
{
    if (!order) return CString();
    const unsigned long market = order->commodity.dwMarketKind;
    if (IsFuturesOrOptions(market)) {
        const bool singleLeg = Is(order->dwComplexKind, '0') || Is(order->dwComplexKind, 'N');
        return singleLeg ? kPlainSide.Display(order->dwBS) : LangText("IDS_ORDER-ITEM_BS_SPREAD");
    }
    if (IsStock(market))
        return g_cszDisplayOrderStockBSType(market, order->commodity.dwStockTradeKind, order->dwBS, 0);
    return CString();
}

CString g_cszDisplayOrderTypeAndPrice(CBaseOrder_OrderInfo* order)
{
    if (!order) return CString();
    const bool held = order->csStatusCode == "CG03" || order->csStatusCode == "9997";
    auto priceText = [order] {
        const CString price = g_cszDisplayPrice(order->dbOrderPrice, order->dbOrderPriceFrac, order->dbDenominator,
                                                order->commodity.csComId);
        return CString(g_cszNormalizCstring(price));
    };
    if (Is(order->commodity.dwMarketKind, 'D'))
        return held ? LangText("IDS_ORDER-COMMON_ORDER_STRICKERPRICE") : priceText();

    const unsigned long kind = order->dwOrderKind;
    const unsigned long type = order->dwOrderType;
    if (Is(kind, '1') || Is(kind, '3')) return LangText("IDS_ORDER-COMMON_ORDER_MARKETPRICE");
    if (Is(kind, '2') || Is(kind, '4')) return priceText();
    if (Is(kind, '5')) {
        const CString word = g_cszDisplayOrderType(kind);
        return order->dbOrderPrice == 0.0 ? word : word + priceText();
    }
    if (Is(kind, 'C') || Is(kind, 'U') || Is(kind, 'P'))
        return (Is(type, '1') || Is(type, '5')) ? g_cszDisplayOrderType(type) : priceText();
    if (Is(kind, '6') || Is(kind, '7') || Is(kind, '8') || (kind >= Code("101") && kind <= Code("104")))
        return held ? g_cszDisplayOrderType(type) : priceText();
    return g_cszDisplayOrderType(kind);
}
