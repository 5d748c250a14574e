// Records that cross the boundary between the host's order book and this library.
//
// Plain value types: the library reads them, fills list rows, and keeps copies of orders.
// Fields appear in the order the order book defines them. The portable build keeps natural
// alignment (no packing) so that no reference is ever bound to a misaligned member.
// Character codes are one ASCII character held in an unsigned 32-bit field ('B', '1').
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/export.h"

// The commodity of an order or deal.
class ORDERVIEW_API CBaseOrder_Commodity {
public:
    CString csExchangeId;
    std::uint32_t dwMarketKind = 0;      // '0'..'8' futures/options, 'A','D' stock in lots, 'E','O' in shares
    std::uint32_t dwStockTradeKind = 0;  // 'B','F','I' margin buy; 'C','G','J' short sell; '9' day trade
    CString csComId;
    CString csComMonth;                  // contract month text
    CString csComType;                   // commodity type text
    CString csComWeek;                   // weekly contract text
    // Host-side fields behind the accessors below.
    CString csSymbolID;
    std::uint8_t byServiceID = 0;
    std::uint32_t dwMarketType = 0;      // 'O' marks an option or warrant market
    // The legs of the order's contract, from which the insurance check builds product keys.
    CString csSymbolID2;                 // second contract of a two-month spread
    double dbStrikePrice = 0.0;          // options: strike price of the first leg
    std::uint32_t dwCallPut = 0;         // options: 'C' call or 'P' put of the first leg
    double dbStrikePrice2 = 0.0;         // options: strike price of the second leg
    std::uint32_t dwCallPut2 = 0;        // options: call/put of the second leg

    const CString& cszGetSymbolID() const { return csSymbolID; }
    std::uint8_t byGetServiceID() const { return byServiceID; }
    std::uint32_t dwGetMarketType() const { return dwMarketType; }
    void vClear() { *this = CBaseOrder_Commodity(); }
};

// One order.
class ORDERVIEW_API CBaseOrder_OrderInfo {
public:
    CString csAccount;
    CString csField4;
    CString csField8;
    CString csField12;
    std::uint32_t dwTradeType = 0;
    std::uint32_t dwProductClass = 0;
    std::uint32_t dwDealTime = 0;       // hhmmssmmm; 0 = none
    std::uint32_t dwOrderDate = 0;      // yyyymmdd
    std::uint32_t dwOrderTime = 0;      // hhmmssmmm
    std::uint32_t dwBookDate = 0;       // yyyymmdd; 0 = not booked
    std::uint32_t dwBookTime = 0;       // hhmmssmmm
    std::uint32_t dwOrderSource = 0;
    CString csAltOrderNo;
    CString csOrderNo;
    std::uint32_t dwHoursType = 0;
    std::uint32_t dwAccountDate = 0;    // yyyymmdd; 0 = none
    CBaseOrder_Commodity commodity;
    std::uint32_t dwBS = 0;             // 'B' buy, 'S' sell
    std::uint32_t dwLegBS = 0;
    std::uint32_t dwOpenOffset = 0;
    std::uint32_t dwDayTrade = 0;
    std::uint32_t dwOrderKind = 0;
    std::uint32_t dwOrderType = 0;
    std::uint32_t dwLastAction = 0;
    std::uint32_t dwComplexKind = 0;    // 'N' or '0' plain; '2' two-month spread
    std::uint32_t dwOrderCond = 0;      // 'F' FOK, 'I' IOC, else rest of day
    double dbOrderPrice = 0.0;
    double dbOrderPriceFrac = 0.0;
    double dbDenominator = 0.0;
    double dbTriggerPrice = 0.0;
    double dbTriggerPriceFrac = 0.0;
    double dbTriggerDenominator = 0.0;
    std::uint32_t dwOrderQty = 0;
    std::uint32_t dwDealQty = 0;
    std::uint32_t dwCancelQty = 0;
    std::int32_t iOrderSeq = 0;
    CString strDealNo;
    double dbAvgPrice = 0.0;
    double dbAvgPrice2 = 0.0;
    std::int32_t iDecimals = 0;
    CString csStatusCode;               // four-character gateway status
    CString csStatusMsg;
    CString csStateCode;                // "C", "U", "F", "P" or empty
    std::uint32_t dwChangeLock = 0;     // 'Y' forbids a change
    CString csOperator;
    CString csSourceName;
    std::uint8_t byStateShown = 0;
    CString csFirm;
    std::uint8_t byChasePrice = 0;
    CString csDeliveryCurrency;
    CString csChangeLock;               // "Y" forbids a change

    // Resets to the empty order.
    void vClear() { *this = CBaseOrder_OrderInfo(); }
};

// One deal report.
class ORDERVIEW_API CBaseOrder_DealInfo {
public:
    CString csAccount;
    CString csOrderNo;
    CBaseOrder_Commodity commodity;
    std::uint32_t dwDealQty = 0;

    void vClear() { *this = CBaseOrder_DealInfo(); }
};

// An account key.
class ORDERVIEW_API AccountType {
public:
    CString csField0;
    CString csAccount;
    CString csField8;
    std::uint32_t dwTradeType = 0;      // '0','2' futures/options; 'A' stock; '1','4' further kinds
    CString csField20;
    CString csField24;
    CString csField28;
    std::uint32_t dwField37 = 0;

    void vClear() { *this = AccountType(); }
};

// An account's insurance (mistaken-order guard) settings.
class ORDERVIEW_API CBaseOrder_InsuranceInfo {
public:
    std::vector<CString> vecAllowList;
    std::vector<CString> vecDenyList;
    std::int32_t iMaxQty = 0;
    double dbPriceLimit = 0.0;
    bool bAllowMarginBuy = false;
    bool bAllowShortSell = false;
    bool bAllowMarketPrice = false;
    double dbTodayLimit = 0.0;
    bool bUseAllowList = false;

    void vClear() { *this = CBaseOrder_InsuranceInfo(); }
};

// Credit-trading data of a stock.
class ORDERVIEW_API CBaseOrder_StockCredit {
public:
    CString csSymbolID;
    bool bSpecial = false;              // specially treated stock
};

// A stock under alert for an account.
class ORDERVIEW_API CBaseOrder_AlertStock {
public:
    CString csSymbolID;
    CString csName;
};

// Passed through to the exports.
class ORDERVIEW_API CBaseOrder_DayTradeInfo {
public:
    CString csAccount;
    CString csComId;
};

// The signed-in user, shown in the heading block of exports.
class ORDERVIEW_API CBaseOrder_UserInfo {
public:
    CString csName;
    CString csBranchNo;
    CString csMainBranchNo;
    CString csAccount;
};

// Accepted foreign futures commodity: the price denominator is iDenominator x iSubDenominator.
struct ORDERVIEW_API CAcceptComFfuture {
    char szComId[32] = {};
    std::int32_t iDenominator = 0;
    std::int32_t iSubDenominator = 0;
};

// Accepted foreign options commodity.
struct ORDERVIEW_API CAcceptComFoption {
    char szComId[32] = {};
    std::int32_t iDenominator = 0;
    std::int32_t iSubDenominator = 0;
};

// Accepted domestic options commodity.
struct ORDERVIEW_API CAcceptComDoption {
    char szComId[32] = {};
};

// Copies `id` into a fixed commodity-id field, cut to fit and always NUL-terminated.
ORDERVIEW_API void g_vSetComId(char (&field)[32], const char* id);

// One list row: item values addressed by item keys (language-string ids).
class ORDERVIEW_API CBaseOrderItemGroup {
public:
    enum class ValueKind { Text, Double, Int };
    struct Item {
        ValueKind kind = ValueKind::Text;
        CString csText;
        double dbValue = 0.0;
        int iValue = 0;
        CString csExtra1;
        CString csExtra2;
    };

    bool bSetItemValue(const CString& key, const char* text, const char* extra1, const char* extra2);
    bool bSetItemValue(const CString& key, double& value, const char* extra1, const char* extra2);
    bool bSetItemValue(const CString& key, int value, const char* extra1, const char* extra2);

    // Display column of an item: its index in the row definition, or -1 when it has none.
    int iGetDisplayItem(const CString& key) const;
    void vSetDisplayItems(const std::vector<CString>& keys) { display_ = keys; }

    const Item* pGetItem(const CString& key) const;
    const std::map<CString, Item>& items() const { return items_; }
    void vClear() { items_.clear(); }

private:
    std::map<CString, Item> items_;
    std::vector<CString> display_;
};
