// The stock order check and the price helpers of the order checks: current price, limit prices
// by kind, the price-band test, the tick test, the firm's offset rule and the quote-to-order
// price hook.
//
// Quote items are read with g_GetSymbolInfoByItem (format/quote_items.h) for the commodity's
// symbol id and service id: 125 last price, 128 yesterday's volume (service 16), 129 reference
// price, 132/133 limit-up/down while the market is open, 135/136 limit-up/down and 455
// reference price while it is not. The market is open when the host's market state (its two low
// bits: 0 closed, 1 pre-open, 2 open, 3 no text) maps to STATUS_OPEN_STRING.
//
// Message boxes go through the platform seam (platform/platform.h), with no owner window and
// g_cszProductName as caption. Language texts that carry a number are formatted safely: only
// their first number conversion takes the value, anything else ("%s") is shown as written.
#pragma once

#include <cstdint>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// Item 125 (last price) when above 0; else, for service id 6, that value itself; else item 129.
ORDERVIEW_API double g_dbGetCurrentPrice(CBaseOrder_Commodity& commodity);

// The limit-up ('6'), limit-down ('7') or reference ('8') price: items 132, 133, 129 while the
// market is open, else (closed, pre-open, state unknown) 135, 136, 455. Any other kind gives 0.0.
ORDERVIEW_API double g_dbGetLIMITPrice(CBaseOrder_Commodity& commodity, std::uint32_t kind);

// Tests the order price against the band of items 132 (up) and 133 (down): `result` is the
// limit-up price when the price is above it, minus the limit-down price when below it, else 0.0
// (also for order kinds other than '2', '6', '7', '8', and for limits of 0 or less). Prices equal
// to a limit pass. For service id 1 the host's commodity-id lookup of the symbol is made first.
ORDERVIEW_API void g_CheckPriceBound(const CBaseOrder_OrderInfo& order, double& result);

// True when the price text lies on the grid of `tick` x `multiplier`. The tick's decimal count d
// is the count of digits after the point of "%.9f" with trailing zeros cut. With d = 0 the value
// is the price; with d > 0 it is the price text from one character before its '.' (the last
// integer digit, or the whole text when there is none) times 10^d, and the step is tick x
// multiplier x 10^d. Value and step are rounded to 8 decimals (g_cszNormalizDouble), so float
// noise such as 0.01 x 29 x 100 = 28.999999999999996 counts as 29. False when the value is not a
// whole number or lies outside the 32-bit signed range, when the step taken as an integer
// (truncated toward zero) is 0 or outside that range, or when the value is not a multiple of the
// step. An empty text or one without digits reads as 0, which lies on every grid.
ORDERVIEW_API bool g_bIsAllowMiniJump(CString price, int unused, double tick, int multiplier);

// When the host answers for the firm list (OrderBK_bGetIsAllowOffsetByFirm), true exactly when
// the commodity id is in it; true when it does not answer.
ORDERVIEW_API bool g_bIsAllowUnoffSet(CString& comId);

// A hook: for service id 1 the host's commodity-id lookup of the symbol is made; the price is
// left unchanged.
ORDERVIEW_API void g_vQuotePrice2OrderPrice(unsigned char serviceId, const CString& symbolId, double& price);

// Whether the stock order may be sent. In this order, by the order's commodity id csComId:
// 1. an alert stock of the account (OrderBK_GetDSAlertStock) marks the order special and, when
//    "IDS_ORDER-STOCK-CV_ALERTSTOCK_NOT_NET_ORDER" has a text, shows it and refuses;
// 2. a special stock (the stock credit record's special mark, or OrderBK_bIsStockInfo with all
//    three flags set) refuses with "IDS_ORDER-STOCK-CV_SPECIAL_NOT_NET_ORDER" when it has a text;
// 3. with YesterdayTradeVolume above 0, a buy whose item 128 (service 16) is below the setting
//    refuses with "IDS_ORDER-STOCK-CV_YESTERDAY_TRADE_VOLUME" formatted with the setting;
// 4. by StockPriceAlert (0 never; 2 only when the market status is open or cannot be read;
//    else always), a limit-price order (dwOrderType '2') outside market 'D' that is out of the
//    band shows "IDS_ORDER-STOCK-CV_OUTOF_UPPERLMT" / "..._DOWNERLMT" formatted with the limit
//    (style 0x130) and refuses, or, when that text is empty, asks the Yes/No question
//    "IDS_ORDER-FUTURE-CV_OUTOF_UPPERLMT" / "..._DOWNERLMT" (style 0x34): Yes sends the order.
// The other messages use style 0. Refusals return false.
ORDERVIEW_API bool g_bCheckStockOrder(AccountType account, const CBaseOrder_OrderInfo& order);
