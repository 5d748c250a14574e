#include "host/table_host.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace orderview {

namespace {

// Plain decimal text of a value: at most 8 decimals, trailing zeros and point cut.
CString DecimalText(double value)
{
    CString out;
    if (!std::isfinite(value)) {
        out.Format("%g", value);
        return out;
    }
    out.Format("%.8f", value);
    if (out.Find('.') >= 0) {
        out.TrimRight('0');
        out.TrimRight('.');
    }
    if (out == "-0") out = "0";
    return out;
}

bool EndsInDigits(const CString& text, int count)
{
    if (text.GetLength() < count) return false;
    for (int i = text.GetLength() - count; i < text.GetLength(); ++i)
        if (text[i] < '0' || text[i] > '9') return false;
    return true;
}

// Largest magnitude the fraction formatters split into whole and steps.
constexpr double kFractionLimit = 1e15;

}  // namespace


TableHost::TableHost() = default;
TableHost::~TableHost() = default;

void TableHost::vSetQuote(std::uint8_t serviceId, const CString& symbol, unsigned short item, const X1Format& v)
{
    mapQuotes[ItemKey(serviceId, symbol, item)] = v;
}

void TableHost::vSetCommodityItem(std::uint8_t serviceId, const CString& commodity, unsigned short item,
                                  const X1Format& v)
{
    mapCommodities[ItemKey(serviceId, commodity, item)] = v;
}

CString TableHost::LookUpLanguage(const CString& id)
{
    const auto it = mapLanguage.find(id);
    return it == mapLanguage.end() ? id : it->second;
}

CString TableHost::LangGetLangString(const CString& id) { return LookUpLanguage(id); }

CString TableHost::PathGetMainPath() { return csMainPath; }

void TableHost::AppInfoGetProductName(CString& name) { name = csProductName; }

static bool LookUpItems(const std::map<TableHost::ItemKey, X1Format>& table, std::uint8_t serviceId,
                        const CString& id, const std::vector<unsigned short>& itemNos,
                        std::vector<X1Format>& values)
{
    values.clear();
    if (itemNos.empty()) return false;
    values.reserve(itemNos.size());
    for (unsigned short item : itemNos) {
        const auto it = table.find(TableHost::ItemKey(serviceId, id, item));
        if (it == table.end()) {
            values.clear();
            return false;
        }
        values.push_back(it->second);
    }
    return true;
}

bool TableHost::bGetItemDataByItemNo(std::uint8_t serviceId, const CString& symbolId,
                                     const std::vector<unsigned short>& itemNos, std::vector<X1Format>& values,
                                     bool, const CCDSInfo*)
{
    return LookUpItems(mapQuotes, serviceId, symbolId, itemNos, values);
}

bool TableHost::bGetCommodityItemDataByItemNo(std::vector<X1Format>& values, std::uint8_t serviceId,
                                              const CString& commodityId,
                                              const std::vector<unsigned short>& itemNos, const CCDSInfo*)
{
    return LookUpItems(mapCommodities, serviceId, commodityId, itemNos, values);
}

bool TableHost::bGetMarketStatus(std::uint8_t serviceId, const CString& symbolId, CMarketStatus& status,
                                 const CCDSInfo*)
{
    const auto it = mapSymbols.find({serviceId, symbolId});
    if (it == mapSymbols.end() || it->second.iMarketState < 0) return false;
    status.csSymbolID = symbolId;
    status.byMarketState = static_cast<std::uint8_t>(it->second.iMarketState);
    return true;
}

bool TableHost::bGetCommodityIDBySymbolID(CString& commodityId, std::uint8_t serviceId, const CString& symbolId,
                                          const int&)
{
    const auto it = mapSymbols.find({serviceId, symbolId});
    if (it == mapSymbols.end() || it->second.csCommodityId.IsEmpty()) return false;
    commodityId = it->second.csCommodityId;
    return true;
}

bool TableHost::bGetTransferTableSymbolID(CString& out, std::uint8_t serviceId, const CString& in)
{
    const auto it = mapSymbols.find({serviceId, in});
    if (it == mapSymbols.end() || it->second.csTransferId.IsEmpty()) return false;
    out = it->second.csTransferId;
    return true;
}

bool TableHost::bGetContractMonthByCommodity(std::vector<CString>& months, std::uint8_t serviceId,
                                             const CString& commodityId)
{
    const auto it = mapCommodityInfo.find({serviceId, commodityId});
    if (it == mapCommodityInfo.end()) return false;
    months = it->second.vecContractMonths;
    return true;
}

bool TableHost::bIsStock(std::uint8_t serviceId, const CString& symbolId)
{
    const auto it = mapSymbols.find({serviceId, symbolId});
    return it != mapSymbols.end() && it->second.bIsStock;
}

bool TableHost::bGetSymbolName(std::uint8_t serviceId, const CString& symbolId, CString& name)
{
    const auto it = mapSymbols.find({serviceId, symbolId});
    if (it == mapSymbols.end() || it->second.csName.IsEmpty()) return false;
    name = it->second.csName;
    return true;
}

bool TableHost::bIsWeeklyCommodity(const std::uint8_t& serviceId, const CString& commodityId)
{
    const auto it = mapCommodityInfo.find({serviceId, commodityId});
    return it != mapCommodityInfo.end() && it->second.bWeekly;
}

bool TableHost::bGetWeeklyNameByStockOptionCommodity(const CString& commodityId, const CString& yearMonth,
                                                     CString& name)
{
    const auto it = mapWeeklyNames.find({commodityId, yearMonth});
    if (it == mapWeeklyNames.end()) return false;
    name = it->second;
    return true;
}

void TableHost::vGetWeekRelationByCommodityID(const std::uint8_t& serviceId, const CString& commodityId,
                                              CString& related)
{
    const auto it = mapCommodityInfo.find({serviceId, commodityId});
    if (it != mapCommodityInfo.end()) related = it->second.csWeekRelation;
}

std::uint8_t TableHost::byGetQuoteMode(std::uint8_t serviceId) const
{
    const auto it = mapQuoteMode.find(serviceId);
    return it == mapQuoteMode.end() ? 0 : it->second;
}

bool TableHost::bGetServiceID2Delay(std::uint8_t& delayedServiceId, std::uint8_t serviceId)
{
    const auto it = mapDelayService.find(serviceId);
    if (it == mapDelayService.end()) return false;
    delayedServiceId = it->second;
    return true;
}

void TableHost::vWriteDebugLog(char*, int, const char* text) { vecDebugLog.emplace_back(text); }

bool TableHost::OrderBK_bGetActiveAccount(AccountType& account, std::uint8_t tradeType)
{
    const auto it = mapActiveAccounts.find(tradeType);
    if (it == mapActiveAccounts.end()) return false;
    account = it->second;
    return true;
}

void TableHost::OrderBK_vGetOperator(bool& first, bool& second, bool& third, bool& fourth)
{
    first = abOperator[0];
    second = abOperator[1];
    third = abOperator[2];
    fourth = abOperator[3];
}

bool TableHost::OrderBK_GetSettingShowDelete() { return bShowDelete; }

bool TableHost::OrderBK_bGetIsAllowOffsetByFirm(std::vector<CString>& firms)
{
    firms = vecOffsetFirms;
    return !firms.empty();
}

static std::vector<CBaseOrder_OrderInfo> OrdersOf(const std::vector<CBaseOrder_OrderInfo>& all,
                                                  const AccountType& account)
{
    std::vector<CBaseOrder_OrderInfo> out;
    for (const auto& order : all)
        if (order.csAccount == account.csAccount) out.push_back(order);
    return out;
}

std::vector<CBaseOrder_OrderInfo> TableHost::OrderBK_GetForeignTodayOrder(AccountType account)
{
    return OrdersOf(vecTodayOrders, account);
}

std::vector<CBaseOrder_OrderInfo> TableHost::OrderBK_GetForeignErrorOrder(AccountType account)
{
    return OrdersOf(vecErrorOrders, account);
}

std::vector<CAcceptComFfuture> TableHost::OrderBK_GetForeignAccptCom() { return vecForeignAccept; }
std::vector<CAcceptComFoption> TableHost::OrderBK_GetFOptionAccptCom() { return vecFOptionAccept; }
std::vector<CAcceptComDoption> TableHost::OrderBK_GetOptionAccptCom() { return vecOptionAccept; }

bool TableHost::OrderBK_LoadOrderInsurance(AccountType account)
{
    return mapInsurance.count(account.csAccount) != 0;
}

CBaseOrder_InsuranceInfo TableHost::OrderBK_GetOrderInsurance(AccountType account, double& usedToday)
{
    const auto it = mapInsurance.find(account.csAccount);
    if (it == mapInsurance.end()) return CBaseOrder_InsuranceInfo();
    usedToday = it->second.dbUsedToday;
    return it->second.info;
}

CBaseOrder_StockCredit TableHost::OrderBK_GetStockCredit(CString symbolId)
{
    CBaseOrder_StockCredit credit;
    credit.csSymbolID = symbolId;
    const auto it = mapStocks.find(symbolId);
    if (it != mapStocks.end()) credit.bSpecial = it->second.bSpecial;
    return credit;
}

bool TableHost::OrderBK_bGetAccountName(const CString& account, CString& name)
{
    const auto it = mapAccountNames.find(account);
    if (it == mapAccountNames.end() || it->second.IsEmpty()) return false;
    name = it->second;
    return true;
}

std::vector<CBaseOrder_AlertStock> TableHost::OrderBK_GetDSAlertStock(AccountType account)
{
    const auto it = mapAlertStocks.find(account.csAccount);
    return it == mapAlertStocks.end() ? std::vector<CBaseOrder_AlertStock>() : it->second;
}

bool TableHost::OrderBK_bIsStockInfo(CString symbolId, bool& first, bool& second, bool& third)
{
    const auto it = mapStocks.find(symbolId);
    if (it == mapStocks.end()) return false;
    first = it->second.bFlag1;
    second = it->second.bFlag2;
    third = it->second.bFlag3;
    return true;
}

void TableHost::OrderBK_vGetUnit(CString symbolId, int& unit, bool)
{
    const auto it = mapStocks.find(symbolId);
    if (it != mapStocks.end()) unit = it->second.iUnit;
}

CBaseOrderBK* TableHost::BK_pGetBaseOrder(unsigned long) { return &baseOrder; }

bool TableHost::g_bGetYMID(const CString& text, CString& ymId, bool secondForm)
{
    if (secondForm) {
        if (!EndsInDigits(text, 6)) return false;
        ymId = text.Right(6);
        return true;
    }
    if (text.GetLength() < 2) return false;
    ymId = text.Right(2);
    return true;
}

bool TableHost::g_bGetFutureYearMonth(const CString& text, int& yearMonth, unsigned long)
{
    if (!EndsInDigits(text, 6)) return false;
    yearMonth = std::atoi(text.Right(6));
    return true;
}

SpecificFraction_Type TableHost::SYS_GetSpecificFractionType() { return eFractionType; }

CString TableHost::CApi_GetSpecificString2(int base, double value, int)
{
    if (base <= 0 || base > 1000 || !std::isfinite(value) || std::fabs(value) >= kFractionLimit)
        return DecimalText(value);
    const bool negative = value < 0;
    const double v = std::fabs(value);
    double whole = std::floor(v);
    const double steps = (v - whole) * base;
    double step = std::floor(steps + 1e-9);
    double rest = steps - step;
    if (rest < 0) rest = 0;
    if (step >= base) {
        whole += 1;
        step -= base;
    }
    int tenths = static_cast<int>(rest * 10 + 1e-9);
    if (tenths > 9) tenths = 9;
    CString out;
    out.Format("%s%.0f-%02d", negative ? "-" : "", whole, static_cast<int>(step));
    if (tenths > 0) out.AppendFormat("%d", tenths);
    return out;
}

CString TableHost::CApi_DisplayDenominator(const double& value, unsigned char) { return DecimalText(value); }

CString TableHost::CApi_DisplayFraction2Dot(const double& value, unsigned char fractionType)
{
    if (!std::isfinite(value) || std::fabs(value) >= kFractionLimit) return DecimalText(value);
    const int den = (fractionType >= 1 && fractionType <= 8) ? (1 << fractionType) : 32;
    const bool negative = value < 0;
    const double v = std::fabs(value);
    double whole = std::floor(v);
    long long num = std::llround((v - whole) * den);
    if (num >= den) {
        whole += 1;
        num -= den;
    }
    int width = 0;
    for (int d = den - 1; d > 0; d /= 10) ++width;
    CString out;
    out.Format("%s%.0f.%0*lld", negative ? "-" : "", whole, width, num);
    return out;
}

CString TableHost::CApi_AccountHideCode(const CString& account, char mask, int start, int count)
{
    CString out(account);
    const long long from = start < 0 ? 0 : start;
    const long long to = static_cast<long long>(start) + (count < 0 ? 0 : count);
    for (long long i = from; i < to && i < out.GetLength(); ++i) out.SetAt(static_cast<int>(i), mask);
    return out;
}

CString TableHost::s_PathGetSysPath(unsigned char) { return PathGetMainPath() + "\\sys"; }

void TableHost::vGetMarketStateTexts(CString& closed, CString& preOpen, CString& open)
{
    closed = csStateClosed;
    preOpen = csStatePreOpen;
    open = csStateOpen;
}


}  // namespace orderview
