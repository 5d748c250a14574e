#include "order_data/host_api.h"

#include <atomic>
#include <mutex>

namespace orderview {

namespace {

IHostServices* g_host = nullptr;             // installed by the front end; null: the built-in host
IHostServices* g_builtIn = nullptr;          // the built-in host, once something needed it
std::once_flag g_builtInOnce;
std::atomic<unsigned> g_generation{1};

// The process-wide texts that the front end's modules read from globals.
void TakeTexts(IHostServices& host)
{
    host.AppInfoGetProductName(g_cszProductName);
    host.vGetMarketStateTexts(STATUS_CLOSE_STRING, STATUS_PREOPEN_STRING, STATUS_OPEN_STRING);
}

// The built-in host, built by the first call that needs a host and none is installed.
IHostServices& BuiltIn()
{
    std::call_once(g_builtInOnce, [] {
        g_builtIn = &detail::BuiltInHost();
        if (!g_host) TakeTexts(*g_builtIn);
    });
    return *g_builtIn;
}

}  // namespace

IHostServices& GetHostServices() { return g_host ? *g_host : BuiltIn(); }

unsigned detail::HostGeneration() { return g_generation.load(std::memory_order_acquire); }

void SetHostServices(IHostServices* host)
{
    g_host = host;
    g_generation.fetch_add(1, std::memory_order_acq_rel);
    if (host) {
        TakeTexts(*host);
    } else if (g_builtIn) {
        TakeTexts(*g_builtIn);
    } else {
        // The built-in host is not built yet: its texts are taken when it is.
        g_cszProductName.Empty();
        STATUS_CLOSE_STRING.Empty();
        STATUS_PREOPEN_STRING.Empty();
        STATUS_OPEN_STRING.Empty();
    }
}

IHostServices::~IHostServices() = default;

bool IHostServices::OrderBK_bGetAccountName(const CString&, CString&) { return false; }
bool IHostServices::bGetSymbolName(std::uint8_t, const CString&, CString&) { return false; }

}  // namespace orderview

using orderview::GetHostServices;

CString STATUS_OPEN_STRING;
CString STATUS_CLOSE_STRING;
CString STATUS_PREOPEN_STRING;
CString g_cszProductName;
CString g_cszQueryMargin = "NT$";
CString g_cszQueryMarginTime;

BKOrderInterface& BKOrderInterface::GetBKInterface()
{
    static BKOrderInterface instance;
    return instance;
}

CString BKOrderInterface::LangGetLangString(const CString& id) { return GetHostServices().LangGetLangString(id); }
CString BKOrderInterface::PathGetMainPath() { return GetHostServices().PathGetMainPath(); }
void BKOrderInterface::AppInfoGetProductName(CString& name) { GetHostServices().AppInfoGetProductName(name); }

bool BKOrderInterface::bGetItemDataByItemNo(unsigned char serviceId, const CString& symbolId,
                                            const std::vector<unsigned short>& itemNos, std::vector<X1Format>& values,
                                            bool flag, const CCDSInfo* info)
{
    return GetHostServices().bGetItemDataByItemNo(serviceId, symbolId, itemNos, values, flag, info);
}

bool BKOrderInterface::bGetCommodityItemDataByItemNo(std::vector<X1Format>& values, unsigned char serviceId,
                                                     const CString& commodityId,
                                                     const std::vector<unsigned short>& itemNos, const CCDSInfo* info)
{
    return GetHostServices().bGetCommodityItemDataByItemNo(values, serviceId, commodityId, itemNos, info);
}

bool BKOrderInterface::bGetMarketStatus(unsigned char serviceId, const CString& symbolId, CMarketStatus& status,
                                        const CCDSInfo* info)
{
    return GetHostServices().bGetMarketStatus(serviceId, symbolId, status, info);
}

bool BKOrderInterface::bGetCommodityIDBySymbolID(CString& commodityId, unsigned char serviceId,
                                                 const CString& symbolId, const int& flag)
{
    return GetHostServices().bGetCommodityIDBySymbolID(commodityId, serviceId, symbolId, flag);
}

bool BKOrderInterface::bGetTransferTableSymbolID(CString& out, unsigned char serviceId, const CString& in)
{
    return GetHostServices().bGetTransferTableSymbolID(out, serviceId, in);
}

bool BKOrderInterface::bGetContractMonthByCommodity(std::vector<CString>& months, unsigned char serviceId,
                                                    const CString& commodityId)
{
    return GetHostServices().bGetContractMonthByCommodity(months, serviceId, commodityId);
}

bool BKOrderInterface::bIsStock(unsigned char serviceId, const CString& symbolId)
{
    return GetHostServices().bIsStock(serviceId, symbolId);
}

bool BKOrderInterface::bGetSymbolName(unsigned char serviceId, const CString& symbolId, CString& name)
{
    return GetHostServices().bGetSymbolName(serviceId, symbolId, name);
}

bool BKOrderInterface::bIsWeeklyCommodity(const unsigned char& serviceId, const CString& commodityId)
{
    return GetHostServices().bIsWeeklyCommodity(serviceId, commodityId);
}

bool BKOrderInterface::bGetWeeklyNameByStockOptionCommodity(const CString& commodityId, const CString& yearMonth,
                                                            CString& name)
{
    return GetHostServices().bGetWeeklyNameByStockOptionCommodity(commodityId, yearMonth, name);
}

void BKOrderInterface::vGetWeekRelationByCommodityID(const unsigned char& serviceId, const CString& commodityId,
                                                     CString& related)
{
    GetHostServices().vGetWeekRelationByCommodityID(serviceId, commodityId, related);
}

unsigned char BKOrderInterface::byGetQuoteMode(unsigned char serviceId) const
{
    return GetHostServices().byGetQuoteMode(serviceId);
}

bool BKOrderInterface::bGetServiceID2Delay(unsigned char& delayedServiceId, unsigned char serviceId)
{
    return GetHostServices().bGetServiceID2Delay(delayedServiceId, serviceId);
}

void BKOrderInterface::vWriteDebugLog(char* category, int level, const char* text)
{
    GetHostServices().vWriteDebugLog(category, level, text);
}

CSyncInfo& CSyncInfo::GetSettingCFG()
{
    static CSyncInfo instance;
    return instance;
}

SpecificFraction_Type CSyncInfo::SYS_GetSpecificFractionType()
{
    return GetHostServices().SYS_GetSpecificFractionType();
}

bool OrderBK_bGetActiveAccount(AccountType& account, unsigned char tradeType)
{
    return GetHostServices().OrderBK_bGetActiveAccount(account, tradeType);
}

void OrderBK_vGetOperator(bool& first, bool& second, bool& third, bool& fourth)
{
    GetHostServices().OrderBK_vGetOperator(first, second, third, fourth);
}

bool OrderBK_GetSettingShowDelete() { return GetHostServices().OrderBK_GetSettingShowDelete(); }

bool OrderBK_bGetIsAllowOffsetByFirm(std::vector<CString>& firms)
{
    return GetHostServices().OrderBK_bGetIsAllowOffsetByFirm(firms);
}

std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignTodayOrder(AccountType account)
{
    return GetHostServices().OrderBK_GetForeignTodayOrder(account);
}

std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignErrorOrder(AccountType account)
{
    return GetHostServices().OrderBK_GetForeignErrorOrder(account);
}

std::vector<CAcceptComFfuture> OrderBK_GetForeignAccptCom() { return GetHostServices().OrderBK_GetForeignAccptCom(); }
std::vector<CAcceptComFoption> OrderBK_GetFOptionAccptCom() { return GetHostServices().OrderBK_GetFOptionAccptCom(); }
std::vector<CAcceptComDoption> OrderBK_GetOptionAccptCom() { return GetHostServices().OrderBK_GetOptionAccptCom(); }

bool OrderBK_LoadOrderInsurance(AccountType account) { return GetHostServices().OrderBK_LoadOrderInsurance(account); }

CBaseOrder_InsuranceInfo OrderBK_GetOrderInsurance(AccountType account, double& usedToday)
{
    return GetHostServices().OrderBK_GetOrderInsurance(account, usedToday);
}

CBaseOrder_StockCredit OrderBK_GetStockCredit(CString symbolId)
{
    return GetHostServices().OrderBK_GetStockCredit(symbolId);
}

bool OrderBK_bGetAccountName(const CString& account, CString& name)
{
    return GetHostServices().OrderBK_bGetAccountName(account, name);
}

std::vector<CBaseOrder_AlertStock> OrderBK_GetDSAlertStock(AccountType account)
{
    return GetHostServices().OrderBK_GetDSAlertStock(account);
}

bool OrderBK_bIsStockInfo(CString symbolId, bool& first, bool& second, bool& third)
{
    return GetHostServices().OrderBK_bIsStockInfo(symbolId, first, second, third);
}

void OrderBK_vGetUnit(CString symbolId, int& unit, bool flag) { GetHostServices().OrderBK_vGetUnit(symbolId, unit, flag); }

CBaseOrderBK* BK_pGetBaseOrder(unsigned long kind) { return GetHostServices().BK_pGetBaseOrder(kind); }

bool g_bGetYMID(const CString& text, CString& ymId, bool secondForm)
{
    return GetHostServices().g_bGetYMID(text, ymId, secondForm);
}

bool g_bGetFutureYearMonth(const CString& text, int& yearMonth, unsigned long marketType)
{
    return GetHostServices().g_bGetFutureYearMonth(text, yearMonth, marketType);
}

CString CApi_GetSpecificString2(int base, double value, int code)
{
    return GetHostServices().CApi_GetSpecificString2(base, value, code);
}

CString CApi_DisplayDenominator(const double& value, unsigned char fractionType)
{
    return GetHostServices().CApi_DisplayDenominator(value, fractionType);
}

CString CApi_DisplayFraction2Dot(const double& value, unsigned char fractionType)
{
    return GetHostServices().CApi_DisplayFraction2Dot(value, fractionType);
}

CString CApi_AccountHideCode(const CString& account, char mask, int start, int count)
{
    return GetHostServices().CApi_AccountHideCode(account, mask, start, count);
}

CString s_LangGetLangString(char* id) { return GetHostServices().LangGetLangString(CString(id)); }

CString s_PathGetSysPath(unsigned char which) { return GetHostServices().s_PathGetSysPath(which); }

CString g_GetProductName()
{
    CString name;
    GetHostServices().AppInfoGetProductName(name);
    return name;
}
