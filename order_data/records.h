// Records that cross the boundary between the host's order book and this library.
//
// Plain value types: the library reads them, fills list rows, and keeps copies of orders.
// Fields appear in the order the order book defines them. The portable build keeps natural
// alignment (no packing) so that no reference is ever bound to a misaligned member.
// Character codes are one ASCII character held in an unsigned 32-bit field ('B', '1').
#pragma once

#include <cstdint>
#include <cstddef>
#include <map>
#include <unordered_map>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

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
    // Second leg of a spread: its commodity id (empty: the first leg's) and contract month.
    CString csComId2;
    CString csComMonth2;
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

// One deal report: the fields of the order it fills, then the deal's own. Its dwDealQty is the
// quantity of this deal, and dwDealTime (hiding the order's) the time of this deal.
class ORDERVIEW_API CBaseOrder_DealInfo : public CBaseOrder_OrderInfo {
public:
    std::uint32_t dwDealDate = 0;        // yyyymmdd
    std::uint32_t dwDealTime = 0;        // hhmmssmmm; kNoDealTime = none
    std::uint32_t dwDealMarketKind = 0;  // market kind that picks the time form
    CString csDealNo;
    double dbDealPrice = 0.0;            // first leg: price, fraction numerator, denominator
    double dbDealPriceFrac = 0.0;
    double dbDealDenominator = 0.0;
    double dbDealPrice2 = 0.0;           // second leg, the same
    double dbDealPriceFrac2 = 0.0;
    double dbDealDenominator2 = 0.0;
    double dbFee = 0.0;
    double dbTax = 0.0;
    double dbNetAmount = 0.0;
    double dbTradeValue = 0.0;

    // Class constants are enumerators: a DLL exports no storage for them, and none is needed.
    enum : std::uint32_t { kNoDealTime = 0xFFFFFFFFu };

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
//
// The row keeps every set call in order (key, kind, value): the row functions define the order
// in which items are set, and a key set twice appears twice. A lookup by key finds the value of
// the key's last set call through a hash table. Keys are interned process-wide (item keys are a
// small, fixed vocabulary), so a set call copies no key text; like the rest of the library,
// rows are used from one thread.
class ORDERVIEW_API CBaseOrderItemGroup {
public:
    enum class ValueKind { Text, Double, Int };
    struct Item {
        const CString& Key() const { return *pKey; }
        const CString* pKey = nullptr;
        ValueKind kind = ValueKind::Text;
        CString csText;
        double dbValue = 0.0;
        int iValue = 0;
        CString csExtra1;
        CString csExtra2;
    };

    // Each appends one set call; false (and nothing set) for an empty key.
    bool bSetItemValue(const CString& key, const char* text, const char* extra1, const char* extra2);
    bool bSetItemValue(const CString& key, double& value, const char* extra1, const char* extra2);
    bool bSetItemValue(const CString& key, int value, const char* extra1, const char* extra2);

    // Display column of an item: its index in the row definition, or -1 when it has none.
    int iGetDisplayItem(const CString& key) const;
    void vSetDisplayItems(const std::vector<CString>& keys);
    const std::vector<CString>& GetDisplayItems() const { return display_; }

    // The current value of a key (its last set call), or null when it was never set.
    const Item* pGetItem(const CString& key) const;
    // Every set call, in order.
    const std::vector<Item>& GetSetCalls() const { return calls_; }
    // Forgets the set calls; the row definition stays.
    void vClear();

private:
    Item& Append(const CString& key, ValueKind kind, const char* extra1, const char* extra2);
    // Open-addressing table of interned key -> index of its last set call.
    struct Slot {
        const CString* key = nullptr;
        std::size_t call = 0;
    };
    Slot* FindSlot(const CString* key) const;
    void Grow();

    std::vector<Item> calls_;
    std::vector<Slot> slots_;   // size 0 or a power of two, at most half full
    std::size_t used_ = 0;
    std::vector<CString> display_;
    std::unordered_map<CString, int> displayIndex_;  // key -> first display column
};
