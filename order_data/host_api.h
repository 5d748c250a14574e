// The host services as the library's code (and the front end's modules) spell them.
// Every call forwards to the installed orderview::IHostServices.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/host_services.h"

// Front-end interface singleton; fetch it with GetBKInterface() at every use.
class ORDERVIEW_API BKOrderInterface {
public:
    static BKOrderInterface& GetBKInterface();

    CString LangGetLangString(const CString& id);
    CString PathGetMainPath();
    void AppInfoGetProductName(CString& name);
    bool bGetItemDataByItemNo(unsigned char serviceId, const CString& symbolId,
                              const std::vector<unsigned short>& itemNos, std::vector<X1Format>& values,
                              bool flag, const CCDSInfo* info);
    bool bGetCommodityItemDataByItemNo(std::vector<X1Format>& values, unsigned char serviceId,
                                       const CString& commodityId, const std::vector<unsigned short>& itemNos,
                                       const CCDSInfo* info);
    bool bGetMarketStatus(unsigned char serviceId, const CString& symbolId, CMarketStatus& status,
                          const CCDSInfo* info);
    bool bGetCommodityIDBySymbolID(CString& commodityId, unsigned char serviceId, const CString& symbolId,
                                   const int& flag);
    bool bGetTransferTableSymbolID(CString& out, unsigned char serviceId, const CString& in);
    bool bGetContractMonthByCommodity(std::vector<CString>& months, unsigned char serviceId,
                                      const CString& commodityId);
    bool bIsStock(unsigned char serviceId, const CString& symbolId);
    bool bGetSymbolName(unsigned char serviceId, const CString& symbolId, CString& name);
    bool bIsWeeklyCommodity(const unsigned char& serviceId, const CString& commodityId);
    bool bGetWeeklyNameByStockOptionCommodity(const CString& commodityId, const CString& yearMonth,
                                              CString& name);
    void vGetWeekRelationByCommodityID(const unsigned char& serviceId, const CString& commodityId,
                                       CString& related);
    unsigned char byGetQuoteMode(unsigned char serviceId) const;
    bool bGetServiceID2Delay(unsigned char& delayedServiceId, unsigned char serviceId);
    void vWriteDebugLog(char* category, int level, const char* text);

private:
    BKOrderInterface() = default;
};

// Global settings singleton.
class ORDERVIEW_API CSyncInfo {
public:
    static CSyncInfo& GetSettingCFG();
    SpecificFraction_Type SYS_GetSpecificFractionType();

private:
    CSyncInfo() = default;
};

// Order back end.
ORDERVIEW_API bool OrderBK_bGetActiveAccount(AccountType& account, unsigned char tradeType);
ORDERVIEW_API void OrderBK_vGetOperator(bool& first, bool& second, bool& third, bool& fourth);
ORDERVIEW_API bool OrderBK_GetSettingShowDelete();
ORDERVIEW_API bool OrderBK_bGetIsAllowOffsetByFirm(std::vector<CString>& firms);
ORDERVIEW_API std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignTodayOrder(AccountType account);
ORDERVIEW_API std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignErrorOrder(AccountType account);
ORDERVIEW_API std::vector<CAcceptComFfuture> OrderBK_GetForeignAccptCom();
ORDERVIEW_API std::vector<CAcceptComFoption> OrderBK_GetFOptionAccptCom();
ORDERVIEW_API std::vector<CAcceptComDoption> OrderBK_GetOptionAccptCom();
ORDERVIEW_API bool OrderBK_LoadOrderInsurance(AccountType account);
ORDERVIEW_API CBaseOrder_InsuranceInfo OrderBK_GetOrderInsurance(AccountType account, double& usedToday);
ORDERVIEW_API CBaseOrder_StockCredit OrderBK_GetStockCredit(CString symbolId);
ORDERVIEW_API std::vector<CBaseOrder_AlertStock> OrderBK_GetDSAlertStock(AccountType account);
ORDERVIEW_API bool OrderBK_bGetAccountName(const CString& account, CString& name);
ORDERVIEW_API bool OrderBK_bIsStockInfo(CString symbolId, bool& first, bool& second, bool& third);
ORDERVIEW_API void OrderBK_vGetUnit(CString symbolId, int& unit, bool flag);

// Data container.
ORDERVIEW_API CBaseOrderBK* BK_pGetBaseOrder(unsigned long kind);

// Order record module.
ORDERVIEW_API bool g_bGetYMID(const CString& text, CString& ymId, bool secondForm);
ORDERVIEW_API bool g_bGetFutureYearMonth(const CString& text, int& yearMonth, unsigned long marketType);

// Common formatting.
ORDERVIEW_API CString CApi_GetSpecificString2(int base, double value, int code);
ORDERVIEW_API CString CApi_DisplayDenominator(const double& value, unsigned char fractionType);
ORDERVIEW_API CString CApi_DisplayFraction2Dot(const double& value, unsigned char fractionType);
ORDERVIEW_API CString CApi_AccountHideCode(const CString& account, char mask, int start, int count);

// Common module.
ORDERVIEW_API CString s_LangGetLangString(char* id);
ORDERVIEW_API CString s_PathGetSysPath(unsigned char which);
ORDERVIEW_API extern CString STATUS_OPEN_STRING;
ORDERVIEW_API extern CString STATUS_CLOSE_STRING;
ORDERVIEW_API extern CString STATUS_PREOPEN_STRING;

// Process-wide texts created at load: the product name (from the host), "NT$" and an empty time.
ORDERVIEW_API extern CString g_cszProductName;
ORDERVIEW_API extern CString g_cszQueryMargin;
ORDERVIEW_API extern CString g_cszQueryMarginTime;

// The host's product name.
ORDERVIEW_API CString g_GetProductName();
