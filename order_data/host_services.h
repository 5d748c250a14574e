// The one interface through which the library reaches the host front end's services.
//
// An embedding host implements IHostServices and installs it with orderview::SetHostServices.
// Until it does, the library uses its built-in file-backed DefaultHost (host/default_host.h).
// Callers inside the library reach the services the way the front end's modules spell them:
// BKOrderInterface::GetBKInterface(), the OrderBK_ free functions, CSyncInfo::GetSettingCFG(),
// the CApi_ formatters and so on (order_data/host_api.h); each forwards to the installed host.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"
#include "order_data/x1format.h"

// How fractional prices are displayed: 1 decimals, 3 the host's per-commodity format,
// any other value fraction text ("101 12/32").
enum SpecificFraction_Type : int {
    SpecificFraction_Text = 0,
    SpecificFraction_Decimal = 1,
    SpecificFraction_HostFormat = 3,
};

// The order back end's store; the exports read the signed-in user and the accounts from it.
class ORDERVIEW_API CBaseOrderBK {
public:
    CBaseOrder_UserInfo userInfo;
    std::vector<AccountType> vecAccounts;
};

namespace orderview {

class ORDERVIEW_API IHostServices {
public:
    virtual ~IHostServices();

    // --- Front-end interface (BKOrderInterface) ---
    virtual CString LangGetLangString(const CString& id) = 0;
    virtual CString PathGetMainPath() = 0;  // no trailing backslash
    virtual void AppInfoGetProductName(CString& name) = 0;
    virtual bool bGetItemDataByItemNo(std::uint8_t serviceId, const CString& symbolId,
                                      const std::vector<unsigned short>& itemNos,
                                      std::vector<X1Format>& values, bool flag, const CCDSInfo* info) = 0;
    virtual bool bGetCommodityItemDataByItemNo(std::vector<X1Format>& values, std::uint8_t serviceId,
                                               const CString& commodityId,
                                               const std::vector<unsigned short>& itemNos,
                                               const CCDSInfo* info) = 0;
    virtual bool bGetMarketStatus(std::uint8_t serviceId, const CString& symbolId, CMarketStatus& status,
                                  const CCDSInfo* info) = 0;
    virtual bool bGetCommodityIDBySymbolID(CString& commodityId, std::uint8_t serviceId,
                                           const CString& symbolId, const int& flag) = 0;
    virtual bool bGetTransferTableSymbolID(CString& out, std::uint8_t serviceId, const CString& in) = 0;
    virtual bool bGetContractMonthByCommodity(std::vector<CString>& months, std::uint8_t serviceId,
                                              const CString& commodityId) = 0;
    virtual bool bIsStock(std::uint8_t serviceId, const CString& symbolId) = 0;
    // The name of a symbol (a stock's name); false when the host has none (the default).
    virtual bool bGetSymbolName(std::uint8_t serviceId, const CString& symbolId, CString& name);
    virtual bool bIsWeeklyCommodity(const std::uint8_t& serviceId, const CString& commodityId) = 0;
    virtual bool bGetWeeklyNameByStockOptionCommodity(const CString& commodityId, const CString& yearMonth,
                                                      CString& name) = 0;
    virtual void vGetWeekRelationByCommodityID(const std::uint8_t& serviceId, const CString& commodityId,
                                               CString& related) = 0;
    virtual std::uint8_t byGetQuoteMode(std::uint8_t serviceId) const = 0;
    virtual bool bGetServiceID2Delay(std::uint8_t& delayedServiceId, std::uint8_t serviceId) = 0;
    virtual void vWriteDebugLog(char* category, int level, const char* text) = 0;

    // --- Order back end (OrderBK_ functions) ---
    virtual bool OrderBK_bGetActiveAccount(AccountType& account, std::uint8_t tradeType) = 0;
    virtual void OrderBK_vGetOperator(bool& first, bool& second, bool& third, bool& fourth) = 0;
    virtual bool OrderBK_GetSettingShowDelete() = 0;
    virtual bool OrderBK_bGetIsAllowOffsetByFirm(std::vector<CString>& firms) = 0;
    virtual std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignTodayOrder(AccountType account) = 0;
    virtual std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignErrorOrder(AccountType account) = 0;
    virtual std::vector<CAcceptComFfuture> OrderBK_GetForeignAccptCom() = 0;
    virtual std::vector<CAcceptComFoption> OrderBK_GetFOptionAccptCom() = 0;
    virtual std::vector<CAcceptComDoption> OrderBK_GetOptionAccptCom() = 0;
    virtual bool OrderBK_LoadOrderInsurance(AccountType account) = 0;
    virtual CBaseOrder_InsuranceInfo OrderBK_GetOrderInsurance(AccountType account, double& usedToday) = 0;
    virtual CBaseOrder_StockCredit OrderBK_GetStockCredit(CString symbolId) = 0;
    virtual std::vector<CBaseOrder_AlertStock> OrderBK_GetDSAlertStock(AccountType account) = 0;
    virtual bool OrderBK_bIsStockInfo(CString symbolId, bool& first, bool& second, bool& third) = 0;
    virtual void OrderBK_vGetUnit(CString symbolId, int& unit, bool flag) = 0;
    // The display name of an account; false when the back end has none (the default).
    virtual bool OrderBK_bGetAccountName(const CString& account, CString& name);

    // --- Data container ---
    virtual CBaseOrderBK* BK_pGetBaseOrder(unsigned long kind) = 0;

    // --- Order record module ---
    virtual bool g_bGetYMID(const CString& text, CString& ymId, bool secondForm) = 0;
    virtual bool g_bGetFutureYearMonth(const CString& text, int& yearMonth, unsigned long marketType) = 0;

    // --- Global settings (CSyncInfo) ---
    virtual SpecificFraction_Type SYS_GetSpecificFractionType() = 0;

    // --- Common formatting (CApi_) ---
    virtual CString CApi_GetSpecificString2(int base, double value, int code) = 0;
    virtual CString CApi_DisplayDenominator(const double& value, unsigned char fractionType) = 0;
    virtual CString CApi_DisplayFraction2Dot(const double& value, unsigned char fractionType) = 0;
    virtual CString CApi_AccountHideCode(const CString& account, char mask, int start, int count) = 0;

    // --- Common module ---
    virtual CString s_PathGetSysPath(unsigned char which) = 0;  // 0: main folder + "\sys"
    // Market-state texts for closed, pre-open and open (STATUS_CLOSE/PREOPEN/OPEN_STRING).
    virtual void vGetMarketStateTexts(CString& closed, CString& preOpen, CString& open) = 0;
};

// Installs `host` as the process-wide host services (null goes back to the built-in default
// host). The caller keeps ownership and keeps the object alive while it is installed. Takes the
// process-wide texts from the host (product name, market-state texts) and drops every setting the
// library cached from the previous host, so the next use reads it from this one. Installing
// reads nothing else; with null, the built-in host is built only when something first needs it.
ORDERVIEW_API void SetHostServices(IHostServices* host);

// The installed host services; the built-in host when none is installed, built on the first call.
ORDERVIEW_API IHostServices& GetHostServices();

namespace detail {
// Counts host installations: a setting cached from the host is stale once this has changed
// since it was read.
unsigned HostGeneration();

// The host the library uses while none is installed: the file-backed DefaultHost, created on
// first use. Declared here and defined with the default host (host/builtin_host.cpp), so the
// order data layer reaches it through this interface only.
IHostServices& BuiltInHost();
}  // namespace detail

}  // namespace orderview
