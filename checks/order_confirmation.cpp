#include "checks/order_confirmation.h"

#include "format/code_display.h"
#include "format/commodity_display.h"
#include "format/detail/market_kind.h"
#include "format/price_display.h"
#include "format/symbol_display.h"
#include "order_data/host_api.h"

namespace {

using orderview::detail::IsFuturesKind;

void AddLine(CString& text, const char* labelId, const CString& value)
{
    if (!text.IsEmpty()) text += "\r\n";
    text += BKOrderInterface::GetBKInterface().LangGetLangString(labelId);
    text += ": ";
    text += value;
}

}  // namespace

CString g_cszGetStockInfo(CBaseOrder_OrderInfo* order, unsigned long)
{
    CString text;
    if (!order) return text;
    const CBaseOrder_Commodity& commodity = order->commodity;
    AddLine(text, "IDS_ORDER-ITEM_ACCOUNT_NAME", g_cszDisplayAccountName(order));

    CString symbol = g_cszDisplayOrderSymbol(order, false, 0);
    const CString& nameKey = commodity.csSymbolID.IsEmpty() ? commodity.csComId : commodity.csSymbolID;
    const CString name = g_cszDisplayStockName(commodity.byServiceID, nameKey);
    if (name != nameKey && !name.IsEmpty()) symbol += " " + name;
    AddLine(text, "IDS_ORDER-ITEM_COMMODITY", symbol);

    AddLine(text, "IDS_ORDER-ITEM_BUYSELL", g_cszDisplayOrderBSorComplex(order));
    if (IsFuturesKind(commodity.dwMarketKind))
        AddLine(text, "IDS_ORDER-ITEM_NEWOFFSET", g_cszDisplayOrderOS(order->dwOpenOffset, order->dwDayTrade));
    AddLine(text, "IDS_ORDER-ITEM_ORDERCATEGORY", g_cszDisplayOrderKind(order));
    AddLine(text, "IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE", g_cszDisplayOrderTypeAndPrice(order));
    AddLine(text, "IDS_ORDER-ITEM_ORDERQTY", g_cszDisplayOrderQty(order));
    AddLine(text, "HTS_ORDER-ITEM_ROLE", g_cszDisplayOrderRole(order->dwOrderCond));
    if (order->dwOrderKind == '3' || order->dwOrderKind == '4')
        AddLine(text, "IDS_ORDER-ITEM_TRIGGERPRICE",
                g_cszDisplayPrice(order->dbTriggerPrice, order->dbTriggerPriceFrac, order->dbTriggerDenominator,
                                  commodity.csComId));
    return text;
}
