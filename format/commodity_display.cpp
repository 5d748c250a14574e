#include "format/commodity_display.h"

#include <vector>

#include "format/contract_month.h"
#include "order_data/host_api.h"

namespace {

constexpr unsigned short kCommodityIdItem = 1007;

bool IsSixDigits(const CString& text)
{
    if (text.GetLength() != 6) return false;
    for (char c : text.str())
        if (c < '0' || c > '9') return false;
    return true;
}

// "yyyymm" as "yyyy/mm".
CString SlashedMonth(const CString& yearMonth) { return yearMonth.Left(4) + "/" + yearMonth.Mid(4); }

}  // namespace

CString g_cszDisplayStockName(unsigned char serviceId, const CString& symbolId, unsigned long)
{
    CString name;
    if (BKOrderInterface::GetBKInterface().bGetSymbolName(serviceId, symbolId, name) && !name.IsEmpty()) return name;
    return symbolId;
}

bool g_GetCommodityId(const CString& symbolId, unsigned char serviceId, CString& commodityId)
{
    commodityId.Empty();
    std::vector<X1Format> values;
    if (!BKOrderInterface::GetBKInterface().bGetItemDataByItemNo(serviceId, symbolId, {kCommodityIdItem}, values,
                                                                 true, nullptr))
        return false;
    for (const X1Format& value : values) {
        if (value.wGetItemNo() != kCommodityIdItem) continue;
        commodityId = value.bIsNumber() ? static_cast<CString>(value) : value.cszGetText();
        break;
    }
    return !commodityId.IsEmpty();
}

bool g_GetOrderComId(const CBaseOrder_OrderInfo* order, CString& commodityId)
{
    if (!order) {
        commodityId.Empty();
        return false;
    }
    return g_GetCommodityId(order->commodity.cszGetSymbolID(), order->commodity.byGetServiceID(), commodityId);
}

bool g_GetOptionUIYearMonth(unsigned char serviceId, const CString& symbol, CString& out)
{
    CString yearMonth;
    if (!g_GetOptionYearMonth(false, symbol, yearMonth)) return false;
    BKOrderInterface& host = BKOrderInterface::GetBKInterface();
    CString commodityId;
    if (!host.bGetCommodityIDBySymbolID(commodityId, serviceId, symbol, 0) || commodityId.IsEmpty())
        g_GetCommodityId(symbol, serviceId, commodityId);
    if (!commodityId.IsEmpty() && host.bIsWeeklyCommodity(serviceId, commodityId))
        out = g_cszGetWeeklyUIYearMonth(commodityId, yearMonth);
    else
        out = SlashedMonth(yearMonth);
    return true;
}

CString g_cszGetWeeklyUIYearMonth(const CString& commodityId, const CString& yearMonth)
{
    CString name;
    if (BKOrderInterface::GetBKInterface().bGetWeeklyNameByStockOptionCommodity(commodityId, yearMonth, name) &&
        !name.IsEmpty())
        return name;
    if (!IsSixDigits(yearMonth)) return yearMonth;
    CString out = SlashedMonth(yearMonth) + " W";
    const char last = commodityId.GetAt(commodityId.GetLength() - 1);
    if (last >= '0' && last <= '9') out += last;
    return out;
}
