#include "rows/order_rows.h"

#include "format/code_display.h"
#include "format/normalize.h"
#include "format/price_display.h"
#include "format/symbol_display.h"
#include "order_data/host_api.h"
#include "rows/detail/item_keys.h"
#include "rows/detail/row_text.h"
#include "rows/detail/row_writer.h"

using namespace orderview::detail;

namespace {

// The deal price of both legs for a spread ("%s|%s"), else of the first; each grouped.
void FormatDealPrice(CString& out, const CBaseOrder_DealInfo& deal)
{
    const CString& comId = deal.commodity.csComId;
    out = g_cszNormalizCstring(g_cszDisplayPrice(deal.dbDealPrice, deal.dbDealPriceFrac, deal.dbDealDenominator, comId));
    if (IsPlainOrder(deal.dwComplexKind)) return;
    const CString& comId2 = deal.commodity.csComId2.IsEmpty() ? comId : deal.commodity.csComId2;
    out += '|';
    out += g_cszNormalizCstring(
        g_cszDisplayPrice(deal.dbDealPrice2, deal.dbDealPriceFrac2, deal.dbDealDenominator2, comId2));
}

}  // namespace

bool g_bAddODOI2OIG_DealRet2FullOrderListCtrl(CBaseOrderItemGroup* row, CBaseOrder_DealInfo* deal, int, bool bFullStamp,
                                              bool, bool bWithExchange)
{
    if (!row || !deal) return false;
    RowWriter w(*row);
    const bool futuresTime = IsFuturesKind(deal->dwDealMarketKind);

    if (deal->dwDealTime == CBaseOrder_DealInfo::kNoDealTime)
        w.Work() = "--";
    else if (bFullStamp)
        FormatStamp(w.Work(), deal->dwDealDate, deal->dwDealTime, !futuresTime);
    else
        FormatTime(w.Work(), deal->dwDealTime, !futuresTime);
    w.Set(key::kDealTime);
    const CString side = g_cszDisplayOrderBSorComplex(deal);
    w.Set(key::kOrderCategory, side);
    w.Set(key::kBackTableNo, deal->csOrderNo.IsEmpty() ? CString("--") : deal->csOrderNo);
    FormatDealPrice(w.Work(), *deal);
    w.Set(key::kDealPrice);
    w.Set(key::kAvePrice);
    CString qty;
    FormatQty(qty, deal->dwDealQty);
    w.Work() = g_cszNormalizCstring(qty);
    w.Set(key::kDealQty);
    w.Set(key::kHkDealQty);
    w.Set(key::kDealQtySdk);
    w.Set(key::kHkHistoryDealQty);
    w.Set(key::kOrderNo, deal->csOrderNo);
    w.Set(key::kBackTableNo, deal->csOrderNo);
    w.Set(key::kDealNo, deal->csDealNo);

    // The ETS form of the deal list has no parentheses.
    const bool ets = IsEtsOrder(*deal);
    const CString symbol = g_cszDisplayOrderSymbol(deal, ets ? false : bWithExchange, 0);
    const CString commodityText =
        ets ? symbol + BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_ETS") : symbol;
    w.Set(key::kCommodity, commodityText);
    if (!IsFuturesKind(deal->commodity.dwMarketKind)) w.Set(key::kComStock, symbol);
    w.Set(key::kBuySell, side);
    if (IsForeignOptionMarket(*deal)) w.Set(key::kExchange, deal->commodity.csExchangeId);
    w.Set(key::kSource, deal->csSourceName);
    w.Set(key::kAppropriate, g_cszDisplayOrderDayTrade(deal->dwDayTrade));
    w.Set(key::kNewOffset, g_cszDisplayOrderOS(deal->dwOpenOffset, deal->dwDayTrade));
    w.Set(key::kOperator, deal->csOperator);
    w.Set(key::kFirm, deal->csFirm);
    w.Set(key::kCommodityRole, commodityText);
    w.SetDouble(key::kFee, deal->dbFee);  // the host formats these three
    w.SetDouble(key::kTax, deal->dbTax);
    w.SetDouble(key::kNetAmount, deal->dbNetAmount);
    w.Set(key::kAccountName, g_cszDisplayAccountName(deal));
    w.Set(key::kHoursType, g_cszDisplayHoursType(deal->dwHoursType));
    if (deal->dwAccountDate == 0)
        w.Work() = "--";
    else
        FormatDate(w.Work(), deal->dwAccountDate);
    w.Set(key::kAccountDate);
    CString value;
    value.Format("%.0f", deal->dbTradeValue);
    w.Set(key::kTradeValue, g_cszNormalizCstring(value));
    return true;
}
