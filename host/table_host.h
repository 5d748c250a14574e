// TableHost: host services answered from in-memory tables.
//
// The core of the host that ships with the library: DefaultHost fills the tables from files in
// the main folder. An embedder may fill a TableHost from code and install it as it is, or derive
// from it and override only what it serves itself.
//
// Formatters (documented behaviour of this host):
// - CApi_DisplayDenominator(value, type): the value as a plain decimal text, at most 8
//   decimals, trailing zeros cut ("101.515625").
// - CApi_GetSpecificString2(base, value, code): bond-quote notation in 32nds or 64ths: whole
//   part, '-', the count of 1/base steps as two digits, and, when the price falls between two
//   steps, one more digit with the tenths of a step cut (101.515625 in 32nds: "101-16";
//   101.53125 + 1/64 in 32nds: "101-165"; a quarter step: "...2", three quarters "...7").
//   Negative prices carry a leading '-'. Non-finite or huge values fall back to the decimal text.
// - CApi_DisplayFraction2Dot(value, type): dotted fraction "whole.numerator" with the numerator
//   of 1/den steps zero-padded to the width of den - 1; den is 2^type for types 1..8, else 32
//   (3.625 with type 3: "3.5"; 101.5 with type 5: "101.16"; 101.15625 with type 5: "101.05").
// - CApi_AccountHideCode(account, mask, start, count): `count` characters from position `start`
//   replaced by `mask` ("1234567", '*', 3, 5: "123****").
// - g_bGetYMID(text, id, second): the month code of a contract text, its last two characters
//   ("TXFL6" gives "L6"); the second form gives the six-digit year-month when the text ends
//   in one. g_bGetFutureYearMonth reads a text ending in six digits yyyymm.
#pragma once

#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "order_data/host_services.h"

namespace orderview {

class ORDERVIEW_API TableHost : public IHostServices {
public:
    struct SymbolInfo {
        CString csCommodityId;
        int iMarketState = -1;   // -1: no market status
        bool bIsStock = false;
        CString csTransferId;    // empty: not in the transfer table
        CString csName;          // the symbol's name (a stock's name); may be empty
    };
    struct CommodityInfo {
        bool bWeekly = false;
        CString csWeekRelation;
        std::vector<CString> vecContractMonths;
    };
    struct StockInfo {
        int iUnit = 1000;
        bool bSpecial = false;
        bool bFlag1 = false, bFlag2 = false, bFlag3 = false;
    };
    struct Insurance {
        CBaseOrder_InsuranceInfo info;
        double dbUsedToday = 0.0;
    };
    using ItemKey = std::tuple<std::uint8_t, CString, unsigned short>;

    TableHost();
    ~TableHost() override;

    // --- Tables (fed by the derived hosts or by an embedder) ---
    CString csMainPath = ".";
    std::unordered_map<CString, CString> mapLanguage;  // language id -> text; a missing id shows itself
    CString csProductName = "OrderView";
    SpecificFraction_Type eFractionType = SpecificFraction_Decimal;
    CString csStateClosed = "CLOSE", csStatePreOpen = "PREOPEN", csStateOpen = "OPEN";
    std::map<ItemKey, X1Format> mapQuotes;       // (service, symbol, item) -> value
    std::map<ItemKey, X1Format> mapCommodities;  // (service, commodity, item) -> value
    std::map<std::pair<std::uint8_t, CString>, SymbolInfo> mapSymbols;
    std::map<std::pair<std::uint8_t, CString>, CommodityInfo> mapCommodityInfo;
    std::map<std::pair<CString, CString>, CString> mapWeeklyNames;  // (commodity, year-month) -> name
    std::map<std::uint8_t, std::uint8_t> mapQuoteMode;
    std::map<std::uint8_t, std::uint8_t> mapDelayService;
    std::map<std::uint8_t, AccountType> mapActiveAccounts;  // trade type -> account
    std::map<CString, CString> mapAccountNames;             // account -> display name
    bool abOperator[4] = {false, false, false, false};
    bool bShowDelete = false;
    std::vector<CString> vecOffsetFirms;
    std::vector<CBaseOrder_OrderInfo> vecTodayOrders;
    std::vector<CBaseOrder_OrderInfo> vecErrorOrders;
    std::vector<CBaseOrder_DealInfo> vecDeals;  // the day's deals, for the deal list
    std::vector<CAcceptComFfuture> vecForeignAccept;
    std::vector<CAcceptComFoption> vecFOptionAccept;
    std::vector<CAcceptComDoption> vecOptionAccept;
    std::map<CString, Insurance> mapInsurance;  // account -> settings
    std::map<CString, std::vector<CBaseOrder_AlertStock>> mapAlertStocks;  // account -> stocks
    std::map<CString, StockInfo> mapStocks;
    CBaseOrderBK baseOrder;
    std::vector<CString> vecDebugLog;  // what vWriteDebugLog received, in order

    // Convenience setters for the item tables.
    void vSetQuote(std::uint8_t serviceId, const CString& symbol, unsigned short item, const X1Format& v);
    void vSetCommodityItem(std::uint8_t serviceId, const CString& commodity, unsigned short item,
                           const X1Format& v);

    // --- IHostServices ---
    CString LangGetLangString(const CString& id) override;
    CString PathGetMainPath() override;
    void AppInfoGetProductName(CString& name) override;
    bool bGetItemDataByItemNo(std::uint8_t serviceId, const CString& symbolId,
                              const std::vector<unsigned short>& itemNos, std::vector<X1Format>& values,
                              bool flag, const CCDSInfo* info) override;
    bool bGetCommodityItemDataByItemNo(std::vector<X1Format>& values, std::uint8_t serviceId,
                                       const CString& commodityId, const std::vector<unsigned short>& itemNos,
                                       const CCDSInfo* info) override;
    bool bGetMarketStatus(std::uint8_t serviceId, const CString& symbolId, CMarketStatus& status,
                          const CCDSInfo* info) override;
    bool bGetCommodityIDBySymbolID(CString& commodityId, std::uint8_t serviceId, const CString& symbolId,
                                   const int& flag) override;
    bool bGetTransferTableSymbolID(CString& out, std::uint8_t serviceId, const CString& in) override;
    bool bGetContractMonthByCommodity(std::vector<CString>& months, std::uint8_t serviceId,
                                      const CString& commodityId) override;
    bool bIsStock(std::uint8_t serviceId, const CString& symbolId) override;
    bool bGetSymbolName(std::uint8_t serviceId, const CString& symbolId, CString& name) override;
    bool bIsWeeklyCommodity(const std::uint8_t& serviceId, const CString& commodityId) override;
    bool bGetWeeklyNameByStockOptionCommodity(const CString& commodityId, const CString& yearMonth,
                                              CString& name) override;
    void vGetWeekRelationByCommodityID(const std::uint8_t& serviceId, const CString& commodityId,
                                       CString& related) override;
    std::uint8_t byGetQuoteMode(std::uint8_t serviceId) const override;
    bool bGetServiceID2Delay(std::uint8_t& delayedServiceId, std::uint8_t serviceId) override;
    void vWriteDebugLog(char* category, int level, const char* text) override;

    bool OrderBK_bGetActiveAccount(AccountType& account, std::uint8_t tradeType) override;
    void OrderBK_vGetOperator(bool& first, bool& second, bool& third, bool& fourth) override;
    bool OrderBK_GetSettingShowDelete() override;
    bool OrderBK_bGetIsAllowOffsetByFirm(std::vector<CString>& firms) override;
    std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignTodayOrder(AccountType account) override;
    std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignErrorOrder(AccountType account) override;
    std::vector<CAcceptComFfuture> OrderBK_GetForeignAccptCom() override;
    std::vector<CAcceptComFoption> OrderBK_GetFOptionAccptCom() override;
    std::vector<CAcceptComDoption> OrderBK_GetOptionAccptCom() override;
    bool OrderBK_LoadOrderInsurance(AccountType account) override;
    CBaseOrder_InsuranceInfo OrderBK_GetOrderInsurance(AccountType account, double& usedToday) override;
    CBaseOrder_StockCredit OrderBK_GetStockCredit(CString symbolId) override;
    std::vector<CBaseOrder_AlertStock> OrderBK_GetDSAlertStock(AccountType account) override;
    bool OrderBK_bGetAccountName(const CString& account, CString& name) override;
    bool OrderBK_bIsStockInfo(CString symbolId, bool& first, bool& second, bool& third) override;
    void OrderBK_vGetUnit(CString symbolId, int& unit, bool flag) override;

    CBaseOrderBK* BK_pGetBaseOrder(unsigned long kind) override;

    bool g_bGetYMID(const CString& text, CString& ymId, bool secondForm) override;
    bool g_bGetFutureYearMonth(const CString& text, int& yearMonth, unsigned long marketType) override;

    SpecificFraction_Type SYS_GetSpecificFractionType() override;

    CString CApi_GetSpecificString2(int base, double value, int code) override;
    CString CApi_DisplayDenominator(const double& value, unsigned char fractionType) override;
    CString CApi_DisplayFraction2Dot(const double& value, unsigned char fractionType) override;
    CString CApi_AccountHideCode(const CString& account, char mask, int start, int count) override;

    CString s_PathGetSysPath(unsigned char which) override;
    void vGetMarketStateTexts(CString& closed, CString& preOpen, CString& open) override;

protected:
    // Language lookup; the base looks in mapLanguage and answers the id itself when it is not there.
    virtual CString LookUpLanguage(const CString& id);
};

}  // namespace orderview
