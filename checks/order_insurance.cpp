#include "checks/order_insurance.h"

#include <cstdint>
#include <vector>

#include "checks/stock_order_check.h"
#include "format/normalize.h"
#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"

namespace {

using orderview::detail::LangText;

bool IsFuturesAccount(std::uint32_t tradeType) { return tradeType == '0' || tradeType == '2'; }

// The month id of a contract text; empty when the host cannot give one.
CString MonthId(const CString& contract, bool secondForm)
{
    CString id;
    if (!g_bGetYMID(contract, id, secondForm)) id.Empty();
    return id;
}

// The normalised strike and the call/put character of one option leg.
CString OptionLeg(double strike, std::uint32_t callPut)
{
    CString leg = g_cszNormalizDouble(strike);  // a copy: the normalised text is shared
    if (callPut != 0) leg += static_cast<char>(callPut & 0xFF);
    return leg;
}

// The product key of the order, as the account's lists hold it (see the header).
CString ProductKey(std::uint32_t tradeType, const CBaseOrder_OrderInfo& order)
{
    const CBaseOrder_Commodity& c = order.commodity;
    if (IsFuturesAccount(tradeType)) {
        const bool secondForm = c.dwMarketKind == '7';
        CString key = c.csComId + MonthId(c.cszGetSymbolID(), secondForm);
        if (order.dwComplexKind == '2') key += "/" + MonthId(c.csSymbolID2, secondForm);
        return key;
    }
    if (tradeType == '1' || tradeType == '4') {
        CString key = c.csComId + c.csComMonth + ";" + OptionLeg(c.dbStrikePrice, c.dwCallPut);
        if (tradeType == '1') key += OptionLeg(c.dbStrikePrice2, c.dwCallPut2);
        return key;
    }
    return c.csComId;
}

// A listed key as it is compared: placeholders translated for futures and options accounts.
CString ListedKey(const CString& entry, bool futures)
{
    if (!futures || (entry.Find("00") < 0 && entry.Find('&') < 0 && entry.Find('@') < 0)) return entry;
    CString translated;
    if (BKOrderInterface::GetBKInterface().bGetTransferTableSymbolID(translated, 1, entry)) return translated;
    return entry;
}

bool ListHolds(const std::vector<CString>& list, const CString& key, bool futures)
{
    for (const CString& entry : list)
        if (ListedKey(entry, futures) == key) return true;
    return false;
}

// The id of the first broken rule, or null when the order passes.
const char* BrokenRule(const AccountType& account, CBaseOrder_OrderInfo& order)
{
    const std::uint32_t tradeType = account.dwTradeType;
    const bool futures = IsFuturesAccount(tradeType);
    const bool stock = tradeType == 'A';

    OrderBK_LoadOrderInsurance(account);
    double usedToday = 0.0;
    const CBaseOrder_InsuranceInfo info = OrderBK_GetOrderInsurance(account, usedToday);
    const CString key = ProductKey(tradeType, order);

    // Product lists.
    if (info.bUseAllowList) {
        if (!info.vecAllowList.empty() && !ListHolds(info.vecAllowList, key, futures))
            return stock ? "IDS_INSURANCESETTING_MESSAGE_STOCK_BUY" : "IDS_INSURANCESETTING_MESSAGE_BUY";
    } else if (ListHolds(info.vecDenyList, key, futures)) {
        return stock ? "IDS_INSURANCESETTING_MESSAGE_STOCK_NOTBUY" : "IDS_INSURANCESETTING_MESSAGE_NOTBUY";
    }

    // Largest quantity of one order.
    if (info.iMaxQty > 0 && static_cast<std::int64_t>(info.iMaxQty) < static_cast<std::int64_t>(order.dwOrderQty))
        return futures ? "IDS_INSURANCESETTING_MESSAGE_QTY" : "IDS_INSURANCESETTING_MESSAGE_STOCK_QTY";

    // Credit trading.
    const std::uint32_t tradeKind = order.commodity.dwStockTradeKind;
    if (!info.bAllowMarginBuy && tradeKind == 'B') return "IDS_INSURANCESETTING_MESSAGE_RZ";
    if (!info.bAllowShortSell && tradeKind == 'C') return "IDS_INSURANCESETTING_MESSAGE_RG";

    const double quantity = static_cast<double>(order.dwOrderQty);
    if (!stock) {
        if (info.dbTodayLimit > 0 && info.dbTodayLimit < quantity + usedToday)
            return "IDS_INSURANCESETTING_MESSAGE_TODAY_QTY";
        if (!info.bAllowMarketPrice && order.dwOrderKind != '2') return "IDS_INSURANCESETTING_MESSAGE_MARKETPRICE";
        const double current = g_dbGetCurrentPrice(order.commodity);
        if (current != 0.0 && info.dbPriceLimit > 0 &&
            (order.dbOrderPrice > current + info.dbPriceLimit || order.dbOrderPrice < current - info.dbPriceLimit))
            return "IDS_INSURANCESETTING_MESSAGE_PRICE_DIFF";
        return nullptr;
    }

    double price = 0.0;
    switch (order.dwOrderType) {
    case '2': price = order.dbOrderPrice; break;
    case '6':
    case '7':
    case '8': price = g_dbGetLIMITPrice(order.commodity, order.dwOrderType); break;
    default: break;
    }
    double amount = quantity * price;
    const std::uint32_t market = order.commodity.dwMarketKind;
    if (market != 'E' && market != 'O') {
        int unit = 1000;
        OrderBK_vGetUnit(order.commodity.csComId, unit, false);
        amount *= unit;
    }
    if (info.dbTodayLimit > 0 && amount + usedToday > info.dbTodayLimit) return "IDS_INSURANCESETTING_MESSAGE_TODAY_MONEY";
    if (info.dbPriceLimit > 0 && info.dbPriceLimit < price) return "IDS_INSURANCESETTING_MESSAGE_PRICE";
    if (!info.bAllowMarketPrice && (order.dwOrderKind == '6' || order.dwOrderKind == '7'))
        return "IDS_INSURANCESETTING_MESSAGE_UPDOWNRICE";
    return nullptr;
}

}  // namespace

bool g_bCheckOrderInsurance(AccountType& account, CBaseOrder_OrderInfo* order, CString& message)
{
    if (order == nullptr) return false;
    const char* rule = BrokenRule(account, *order);
    if (rule == nullptr) return true;
    message.Format("%s%s", LangText("IDS_INSURANCESETTING_MESSAGE").GetString(), LangText(rule).GetString());
    return false;
}
