// DefaultHost: the real, file-backed host services the library uses out of the box.
//
// Everything lives under one main folder (ORDERVIEW_HOME, else the current folder), with
// "sys" and "Log" beneath it. The tables are read from files in "sys" when the host is created
// or reloaded, but for the day's orders and deals, which are read when an operation first asks
// for orders (or for Diagnostics()); every file is optional. docs/default-host.md is the
// reference for the files and their columns. A malformed line is never skipped silently: it is
// reported as "<file>:<line>: <message>" in Diagnostics() and on standard error. The debug log
// goes to "Log/debug.log".
#pragma once

#include <mutex>
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

    // Reads every table again, orders and deals included; true when no line was malformed.
    bool bReload();
    // Reads orders.csv and deals.csv now unless they have been read (or the host was made
    // without them); true when neither has a malformed line.
    bool bLoadRecords();
    // Every malformed line of every table, as "<file>:<line>: <message>"; reads the day's orders
    // and deals first if that has not been done.
    const std::vector<CString>& Diagnostics();

    void vWriteDebugLog(char* category, int level, const char* text) override;
    std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignTodayOrder(AccountType account) override;
    std::vector<CBaseOrder_OrderInfo> OrderBK_GetForeignErrorOrder(AccountType account) override;

private:
    bool loadRecords_ = true;
    CString language_name_;  // chosen by the constructor; empty: host.ini's [Host] Language
    bool recordsRead_ = false;
    std::mutex recordsMutex_;
    void LoadTables();
    void Report(std::size_t from) const;
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

    std::vector<CString> diagnostics_;
};

}  // namespace orderview
