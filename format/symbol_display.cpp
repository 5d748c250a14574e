#include "format/symbol_display.h"

#include "order_data/host_api.h"

namespace {

bool IsSpread(std::uint32_t complexKind) { return complexKind != 'N' && complexKind != '0'; }

// "TXF 202606", or the commodity id alone when the month is empty.
void AppendLeg(CString& out, const CString& comId, const CString& month)
{
    out += comId;
    if (!month.IsEmpty()) {
        if (!comId.IsEmpty()) out += ' ';
        out += month;
    }
}

}  // namespace

CString g_cszDisplayOrderSymbol(CBaseOrder_OrderInfo* order, bool bWithExchange, unsigned long)
{
    if (!order) return CString();
    const CBaseOrder_Commodity& commodity = order->commodity;
    CString out;
    if (bWithExchange && !commodity.csExchangeId.IsEmpty()) {
        out = commodity.csExchangeId;
        out += ' ';
    }
    if (!commodity.csSymbolID.IsEmpty()) {
        out += commodity.csSymbolID;
        return out;
    }
    AppendLeg(out, commodity.csComId, commodity.csComMonth);
    if (IsSpread(order->dwComplexKind) && !commodity.csComMonth2.IsEmpty()) {
        out += '/';
        const bool sameCommodity = commodity.csComId2.IsEmpty() || commodity.csComId2 == commodity.csComId;
        AppendLeg(out, sameCommodity ? CString() : commodity.csComId2, commodity.csComMonth2);
    }
    return out;
}

CString g_cszDisplayOrderSymbol(CBaseOrder_DayTradeInfo* dayTrade, bool, unsigned long)
{
    return dayTrade ? dayTrade->csComId : CString();
}

CString g_cszDisplayAccountName(CBaseOrder_OrderInfo* order)
{
    if (!order) return CString();
    CString name;
    if (OrderBK_bGetAccountName(order->csAccount, name) && !name.IsEmpty()) return name;
    return order->csAccount;
}
