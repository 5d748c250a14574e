// DefaultHost: the real, file-backed host services the library uses out of the box.
//
// Everything lives under one main folder (ORDERVIEW_HOME, else the current folder), with
// "sys" and "Log" beneath it. The tables are read from these files in "sys" when the host is
// created or reloaded; every file is optional. CSV files have a header row naming their
// columns (any order, extra columns are reported); blank lines and lines starting with '#'
// are skipped; a UTF-8 mark at the start is allowed.
//
//   language.txt       id=text lines; a missing id shows the id itself. With a language chosen
//                      (host.ini [Host] Language, or the host's constructor), language.<name>.txt
//                      instead ("language.zh-TW.txt"); "en" and none mean language.txt
//   host.ini           [Host] ProductName, FractionType, MarketClosedText, MarketPreOpenText,
//                      MarketOpenText, Language; [OrderBK] ShowDelete, Operator (four 0/1 flags, comma
//                      separated), OffsetFirms (comma separated); [User] Name, BranchNo,
//                      MainBranchNo, Account
//   services.csv       service,quote_mode,delay_service
//   quotes.csv         service,symbol,item,unit,value        quote items of symbols
//   commodities.csv    service,commodity,item,unit,value     quote items of commodities
//   symbols.csv        service,symbol,commodity,market_state,is_stock,transfer_symbol,name
//   contracts.csv      service,commodity,weekly,week_relation,months   (months blank separated)
//   weekly_names.csv   commodity,year_month,name
//   accounts.csv       trade_type,account,field0,field8,field20,field24,field28,field37,active,
//                      name (the account's display name)
//   orders.csv         list (today or error) and any order field by its name (csAccount,
//                      dwBS, dbOrderPrice, csComId, ...); codes are written as the character
//   deals.csv          any deal field by its name: the order's fields and the deal's own
//                      (dwDealDate, dwDealTime, csDealNo, dbDealPrice, dbFee, ...)
//   accepted.csv       kind (foreign_future, foreign_option, domestic_option),commodity,
//                      denominator,sub_denominator
//   insurance.csv      account,allow_list,deny_list (blank separated product keys in the form
//                      of checks/order_insurance.h: "TXFL6", "TXF00", "TXFL6/A7",
//                      "TXO202612;18000C18200P", "2330"),max_qty,price_limit,allow_margin_buy,
//                      allow_short_sell,allow_market_price,today_limit,use_allow_list,used_today
//                      (quantity or money already used today)
//   alert_stocks.csv   account,symbol,name
//   stocks.csv         symbol,unit,special,flag1,flag2,flag3   (unit: shares per lot; special:
//                      the stock credit record's special mark; flag1..3: OrderBK_bIsStockInfo)
//
// What the order checks read: quote items (last, reference and limit prices, yesterday's
// volume) from quotes.csv, market states from symbols.csv (market_state 0 closed, 1 pre-open,
// 2 open; empty: no status), the transfer table from symbols.csv (transfer_symbol), the firms
// of the offset rule from host.ini [OrderBK] OffsetFirms, and the order fields csSymbolID2,
// dbStrikePrice, dwCallPut, dbStrikePrice2, dwCallPut2 from orders.csv like any other field.
//
// A malformed line is never skipped silently: it is reported as "<file>:<line>: <message>"
// in Diagnostics() and on standard error. The debug log goes to "Log/debug.log".
#pragma once

#include <unordered_map>
#include <vector>

#include "host/table_host.h"

namespace orderview {

class ORDERVIEW_API DefaultHost : public TableHost {
public:
    // Reads the tables of `mainPath` (backslash or native form, no trailing separator).
    explicit DefaultHost(const CString& mainPath = DefaultMainPath());
    // What a host reads: everything, or every table but the day's orders and deals (for programs
    // that go through those themselves with RecordFile, however large the day).
    enum class Tables { All, WithoutOrdersAndDeals };
    DefaultHost(const CString& mainPath, Tables tables);
    // With the language `language` ("zh-TW"), whatever host.ini says; empty: host.ini's choice.
    DefaultHost(const CString& mainPath, Tables tables, const CString& language);

    // ORDERVIEW_HOME when set, else ".".
    static CString DefaultMainPath();

    // Reads every table again; true when no line was malformed.
    bool bReload();
    const std::vector<CString>& Diagnostics() const { return diagnostics_; }

    void vWriteDebugLog(char* category, int level, const char* text) override;

protected:
    CString LookUpLanguage(const CString& id) override;

private:
    bool loadRecords_ = true;
    CString language_name_;  // chosen by the constructor; empty: host.ini's [Host] Language
    void LoadLanguage();
    void LoadSettings();
    void LoadServices();
    void LoadItems(const char* file, const char* idColumn, std::map<ItemKey, X1Format>& table);
    void LoadSymbols();
    void LoadContracts();
    void LoadWeeklyNames();
    void LoadAccounts();
    void LoadOrders();
    void LoadDeals();
    void LoadAccepted();
    void LoadInsurance();
    void LoadAlertStocks();
    void LoadStocks();
    CString SysFile(const char* name) const;

    std::unordered_map<CString, CString> language_;
    std::vector<CString> diagnostics_;
};

}  // namespace orderview
