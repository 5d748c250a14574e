#include "rows/order_rows.h"

#include "format/code_display.h"
#include "format/normalize.h"
#include "format/order_state.h"
#include "format/price_display.h"
#include "format/symbol_display.h"
#include "order_data/host_api.h"
#include "rows/detail/item_keys.h"
#include "rows/detail/list_filter.h"
#include "rows/detail/row_text.h"
#include "rows/detail/row_writer.h"

using namespace orderview::detail;

namespace {

bool IsQuantityKind(std::uint32_t kind)
{
    return (kind >= '1' && kind <= '8') || kind == 'U' || kind == 'C' || kind == 'P';
}

// The commodity item with the ETS form: "symbol(ETS)" in the item, and "symbolETS" kept for the
// commodity-role item. Returns the kept text.
CString SetCommodity(RowWriter& w, CBaseOrder_OrderInfo& order, bool bWithExchange, CString& symbol)
{
    symbol = g_cszDisplayOrderSymbol(&order, bWithExchange, 0);
    if (!IsEtsOrder(order)) {
        w.Set(key::kCommodity, symbol);
        return symbol;
    }
    const CString ets = BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_ETS");
    w.Set(key::kCommodity, symbol + "(" + ets + ")");
    return symbol + ets;
}

// "--" or the price of `order` from its three parts.
void SetTriggerPrice(RowWriter& w, const CBaseOrder_OrderInfo& order)
{
    if (order.dwOrderKind == '3' || order.dwOrderKind == '4')
        w.Set(key::kTriggerPrice, g_cszDisplayPrice(order.dbTriggerPrice, order.dbTriggerPriceFrac,
                                                    order.dbTriggerDenominator, order.commodity.csComId));
    else
        w.Set(key::kTriggerPrice, "--");
}

// A date item: "%04d/%02d/%02d", or "--" for 0.
void SetDateOrDash(RowWriter& w, const CString& key, std::uint32_t date)
{
    if (date == 0)
        w.Work() = "--";
    else
        FormatDate(w.Work(), date);
    w.Set(key);
}

// A time item: the time (with milliseconds when asked), or "--" for 0.
void SetTimeOrDash(RowWriter& w, const CString& key, std::uint32_t time, bool millis)
{
    if (time == 0)
        w.Work() = "--";
    else
        FormatTime(w.Work(), time, millis);
    w.Set(key);
}

// The order number items: the composed number, and the back-table number or "--".
void SetOrderNumbers(RowWriter& w, const CBaseOrder_OrderInfo& order)
{
    FormatOrderNo(w.Work(), order);
    w.Set(key::kOrderNo);
    w.Set(key::kBackTableNo, order.csOrderNo.IsEmpty() ? CString("--") : order.csOrderNo);
}

// The trade date: the order date (or "--") for stock kinds. Futures and options keep the
// working text as the items before left it; the lists define it so.
void SetTradeDate(RowWriter& w, const CBaseOrder_OrderInfo& order, bool futures)
{
    if (!futures) {
        if (order.dwOrderDate == 0)
            w.Work() = "--";
        else
            FormatDate(w.Work(), order.dwOrderDate);
    }
    w.Set(key::kTradeDate);
}

// One "%d" quantity, grouped in thousands, under each of `keys`.
template <size_t N>
void SetNormalizedQty(RowWriter& w, std::uint32_t qty, const CString* const (&keys)[N])
{
    CString text;
    FormatQty(text, qty);
    w.Work() = g_cszNormalizCstring(text);
    for (const CString* k : keys) w.Set(*k);
}

}  // namespace

bool g_bAddODOI2OIG_SimpleOrderListCtrl(CBaseOrderItemGroup* row, CBaseOrder_OrderInfo* order, int listMode)
{
    if (!row || !order || !ShowInSimpleList(*order, listMode)) return false;
    RowWriter w(*row);
    const bool futures = IsFuturesKind(order->commodity.dwMarketKind);

    SetOrderNumbers(w, *order);
    w.Set(key::kOprather, "--");
    if (order->dwBookDate == 0)
        w.Work() = "--";
    else
        FormatStamp(w.Work(), order->dwBookDate, order->dwBookTime, false);
    w.Set(key::kBookStamp);
    FormatDate(w.Work(), order->dwOrderDate);
    w.Set(key::kOrderDate);
    SetTimeOrDash(w, key::kOrderTime, order->dwOrderTime, false);
    SetTimeOrDash(w, key::kDealTime, order->dwDealTime, false);
    w.Set(key::kSource, order->csSourceName);

    CString symbol;
    const CString commodityText = SetCommodity(w, *order, false, symbol);
    if (!futures) w.Set(key::kComStock, symbol);
    const CString side = g_cszDisplayOrderBSorComplex(order);
    w.Set(key::kBuySell, side);
    w.Set(key::kNewOffset, g_cszDisplayOrderOS(order->dwOpenOffset, order->dwDayTrade));
    w.Set(key::kStatus, g_cszDisplayOrderState(order));
    w.Set(key::kOperator, order->csOperator);
    w.Set(key::kOrderCategory, side);  // the side text again, as the list defines it
    w.Set(key::kOrderType, g_cszDisplayOrderType(order->dwOrderKind));
    w.Set(key::kOrderPrice, g_cszDisplayPrice(order->dbOrderPrice, order->dbOrderPriceFrac, order->dbDenominator,
                                              order->commodity.csComId));
    w.Set(key::kOrderTypeAndPrice, g_cszDisplayOrderTypeAndPrice(order));
    w.Set(key::kRole, g_cszDisplayOrderRole(order->dwOrderCond));
    w.Set(key::kCommodityRole, commodityText);
    if (futures && order->commodity.dwGetMarketType() == 'O') SetTriggerPrice(w, *order);

    if (IsQuantityKind(order->dwOrderKind)) {
        FormatQty(w.Work(), order->dwOrderQty);
        w.Set(key::kOrderQty);
        w.Set(key::kOrderQtySdk);
        FormatQty(w.Work(), order->dwDealQty);
        w.Set(key::kDealQty);
        w.Set(key::kDealQtySdk);
        FormatQty(w.Work(), order->dwCancelQty);
        w.Set(key::kCancelQty);
        w.Set(key::kCancelQtySdk);
        FormatAveragePrice(w.Work(), *order, false);
        w.Set(key::kAvePrice);
    }
    // Unsigned difference shown as the signed value it holds: inconsistent data shows negative.
    w.SetInt(key::kBalanceQty, static_cast<int>(order->dwOrderQty - order->dwCancelQty - order->dwDealQty));
    SetTradeDate(w, *order, futures);
    const std::uint32_t kind = order->commodity.dwMarketKind;
    if (kind == '0' || kind == '2' || kind == '7')
        w.Set(key::kAppropriate, g_cszDisplayOrderDayTrade(order->dwDayTrade));
    w.Set(key::kAccountName, g_cszDisplayAccountName(order));
    return true;
}

bool g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(CBaseOrderItemGroup* row, CBaseOrder_OrderInfo* order,
                                                    int listMode, bool bFullStamp, bool bOperatorPlaceholder,
                                                    bool bWithExchange)
{
    if (!row || !order || !ShowInFullList(*order, listMode)) return false;
    RowWriter w(*row);
    const bool futures = IsFuturesKind(order->commodity.dwMarketKind);

    SetOrderNumbers(w, *order);
    if (bOperatorPlaceholder) w.Set(key::kOprather, "--");
    if (order->dwBookDate == 0)
        w.Work() = "--";
    else if (bFullStamp)
        FormatStamp(w.Work(), order->dwBookDate, order->dwBookTime, !futures);
    else
        FormatTime(w.Work(), order->dwBookTime, false);
    w.Set(key::kBookStamp);
    FormatDate(w.Work(), order->dwOrderDate);
    w.Set(key::kOrderDate);
    SetTimeOrDash(w, key::kOrderTime, order->dwOrderTime, !futures);
    SetTimeOrDash(w, key::kDealTime, order->dwDealTime, !futures);

    const CString side = g_cszDisplayOrderBSorComplex(order);
    w.Set(key::kBuySell, side);
    w.Set(key::kComType, g_cszDisplayOrderComType(order->commodity.dwMarketKind));
    w.Set(key::kOrderCategory, side);
    const CString orderType = g_cszDisplayOrderType(order->dwOrderKind);
    w.Set(key::kOrderType, orderType);
    w.Set(key::kOrderPrice, g_cszDisplayPrice(order->dbOrderPrice, order->dbOrderPriceFrac, order->dbDenominator,
                                              order->commodity.csComId));
    w.Set(key::kOrderTypeAndPrice, g_cszDisplayOrderTypeAndPrice(order));

    CString symbol;
    const CString commodityText = SetCommodity(w, *order, bWithExchange, symbol);
    if (order->commodity.dwGetMarketType() == 'O' && order->commodity.dwMarketKind == '2')
        w.Set(key::kOrderType, orderType);  // set once more after the commodity in this branch
    if (!futures) w.Set(key::kComStock, symbol);

    static const CString* const kOrderQtyKeys[] = {&key::kOrderQty, &key::kHkOrderQty, &key::kOrderQtySdk,
                                                   &key::kHkHistoryOrderQty};
    static const CString* const kDealQtyKeys[] = {&key::kDealQty, &key::kHkDealQty, &key::kDealQtySdk,
                                                  &key::kHkHistoryDealQty};
    static const CString* const kCancelQtyKeys[] = {&key::kCancelQty, &key::kHkCancelQty, &key::kCancelQtySdk,
                                                    &key::kHkHistoryCancelQty};
    SetNormalizedQty(w, order->dwOrderQty, kOrderQtyKeys);
    SetNormalizedQty(w, order->dwDealQty, kDealQtyKeys);
    SetNormalizedQty(w, order->dwCancelQty, kCancelQtyKeys);
    FormatAveragePrice(w.Work(), *order, true);
    w.Set(key::kAvePrice);

    w.Set(key::kSource, order->csSourceName);
    w.Set(key::kNewOffset, g_cszDisplayOrderOS(order->dwOpenOffset, order->dwDayTrade));
    w.Set(key::kStatus, g_cszDisplayOrderState(order));
    w.Set(key::kOperator, order->csOperator);
    w.Set(key::kFirm, order->csFirm);
    SetTradeDate(w, *order, futures);
    w.Set(key::kRole, g_cszDisplayOrderRole(order->dwOrderCond));
    w.Set(key::kCommodityRole, commodityText);
    w.Set(key::kAppropriate, g_cszDisplayOrderDayTrade(order->dwDayTrade));
    w.Set(key::kOffset1);
    w.Set(key::kAccountName, g_cszDisplayAccountName(order));
    w.Set(key::kDeliveryCurrency, order->csDeliveryCurrency);
    w.Set(key::kHoursType, g_cszDisplayHoursType(order->dwHoursType));
    SetDateOrDash(w, key::kAccountDate, order->dwAccountDate);
    w.SetInt(key::kBalanceQty, static_cast<int>(order->dwOrderQty - order->dwDealQty - order->dwCancelQty));
    if (IsForeignOptionMarket(*order)) {
        SetTriggerPrice(w, *order);
        w.Set(key::kExchange, order->commodity.csExchangeId);
    }
    return true;
}
