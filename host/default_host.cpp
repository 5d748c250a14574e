#include "host/default_host.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "host/detail/csv_reader.h"
#include "host/record_file.h"
#include "platform/file_system.h"
#include "platform/profile_file.h"
#include "order_data/detail/value_parse.h"

namespace orderview {

namespace {

using detail::CsvRecord;
using detail::CsvTable;

// Typed access to the fields of one CSV row; a bad value is reported with file and line.
class RowReader {
public:
    RowReader(const CsvTable& table, const CsvRecord& row, const char* file, std::vector<CString>& errors)
        : table_(table), row_(row), file_(file), errors_(errors) {}

    const std::string& Text(const char* column) const { return table_.Get(row_, column); }

    bool UInt(const char* column, std::uint64_t max, std::uint64_t& out)
    {
        return Check(detail::ParseUInt(Text(column), max, out), column);
    }
    bool Int(const char* column, std::int32_t& out) { return Check(detail::ParseInt(Text(column), out), column); }
    bool Bool(const char* column, bool& out) { return Check(detail::ParseBool(Text(column), out), column); }
    bool Code(const char* column, std::uint32_t& out)
    {
        return Check(detail::ParseCharCode(Text(column), out), column);
    }
    bool OptionalDouble(const char* column, double& out)
    {
        return Text(column).empty() || Check(detail::ParseDouble(Text(column), out), column);
    }
    bool Byte(const char* column, std::uint8_t& out)
    {
        std::uint64_t v = 0;
        if (!UInt(column, 255, v)) return false;
        out = static_cast<std::uint8_t>(v);
        return true;
    }
    void Report(const std::string& message) const
    {
        CString line;
        line.Format("%s:%d: %s", file_, row_.line, message.c_str());
        errors_.push_back(line);
    }

private:
    bool Check(bool ok, const char* column)
    {
        if (!ok) Report(std::string("bad value '") + Text(column) + "' in column " + column);
        return ok;
    }

    const CsvTable& table_;
    const CsvRecord& row_;
    const char* file_;
    std::vector<CString>& errors_;
};

std::vector<CString> SplitList(const CString& text, char separator)
{
    std::vector<CString> out;
    int start = 0;
    while (start <= text.GetLength()) {
        int end = text.Find(separator, start);
        if (end < 0) end = text.GetLength();
        CString item = text.Mid(start, end - start);
        item.Trim();
        if (!item.IsEmpty()) out.push_back(item);
        start = end + 1;
    }
    return out;
}

}  // namespace

DefaultHost::DefaultHost(const CString& mainPath) : DefaultHost(mainPath, Tables::All) {}

DefaultHost::DefaultHost(const CString& mainPath, Tables tables) : DefaultHost(mainPath, tables, CString()) {}

DefaultHost::DefaultHost(const CString& mainPath, Tables tables, const CString& language)
    : loadRecords_(tables == Tables::All), language_name_(language)
{
    csMainPath = mainPath;
    LoadTables();
    Report(0);
}

CString DefaultHost::DefaultMainPath()
{
    const char* home = std::getenv("ORDERVIEW_HOME");
    return (home && *home) ? CString(home) : CString(".");
}

CString DefaultHost::SysFile(const char* name) const { return csMainPath + "\\sys\\" + name; }

bool DefaultHost::bReload()
{
    {
        std::lock_guard<std::mutex> lock(recordsMutex_);
        recordsRead_ = false;
    }
    LoadTables();
    Report(0);
    bLoadRecords();
    return diagnostics_.empty();
}

bool DefaultHost::bLoadRecords()
{
    std::lock_guard<std::mutex> lock(recordsMutex_);
    if (recordsRead_ || !loadRecords_) return true;
    recordsRead_ = true;
    const std::size_t before = diagnostics_.size();
    LoadOrders();
    LoadDeals();
    Report(before);
    return diagnostics_.size() == before;
}

const std::vector<CString>& DefaultHost::Diagnostics()
{
    bLoadRecords();
    return diagnostics_;
}

std::vector<CBaseOrder_OrderInfo> DefaultHost::OrderBK_GetForeignTodayOrder(AccountType account)
{
    bLoadRecords();
    return TableHost::OrderBK_GetForeignTodayOrder(account);
}

std::vector<CBaseOrder_OrderInfo> DefaultHost::OrderBK_GetForeignErrorOrder(AccountType account)
{
    bLoadRecords();
    return TableHost::OrderBK_GetForeignErrorOrder(account);
}

void DefaultHost::Report(std::size_t from) const
{
    for (std::size_t i = from; i < diagnostics_.size(); ++i)
        std::fprintf(stderr, "orderview: %s\n", diagnostics_[i].GetString());
}

void DefaultHost::LoadTables()
{
    diagnostics_.clear();
    vecTodayOrders.clear();
    vecErrorOrders.clear();
    vecDeals.clear();
    LoadLanguage();
    LoadSettings();
    LoadServices();
    LoadItems("quotes.csv", "symbol", mapQuotes);
    LoadItems("commodities.csv", "commodity", mapCommodities);
    LoadSymbols();
    LoadContracts();
    LoadWeeklyNames();
    LoadAccounts();
    LoadAccepted();
    LoadInsurance();
    LoadAlertStocks();
    LoadStocks();
}

void DefaultHost::vWriteDebugLog(char* category, int level, const char* text)
{
    TableHost::vWriteDebugLog(category, level, text);
    AppendToFile(csMainPath + "\\Log\\debug.log", std::string(text ? text : "") + "\n");
}

void DefaultHost::LoadLanguage()
{
    mapLanguage.clear();
    CString name = language_name_;
    if (name.IsEmpty()) name = ProfileString("Host", "Language", "", SysFile("host.ini"));
    name.Trim();
    std::string file = "language.txt";
    if (!name.IsEmpty() && name != "en") {
        // A name picks a file in the system folder and nothing else: letters, digits, '-' and '_'.
        for (const char c : name.str()) {
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_') {
                diagnostics_.push_back("language '" + name + "' is not a language name");
                return;
            }
        }
        file = "language." + name.str() + ".txt";
    }
    std::string text;
    if (!ReadWholeFile(SysFile(file.c_str()), text)) {
        // Without the language file every text shows its id; a language asked for must be there.
        if (file != "language.txt") diagnostics_.push_back(CString(file) + ": the language file cannot be read");
        return;
    }
    size_t pos = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    for (int line = 1; pos < text.size(); ++line) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string row = text.substr(pos, end - pos);
        pos = end + 1;
        if (!row.empty() && row.back() == '\r') row.pop_back();
        const size_t first = row.find_first_not_of(" \t");
        if (first == std::string::npos || row[first] == '#') continue;
        const size_t eq = row.find('=');
        CString id(row.substr(0, eq == std::string::npos ? row.size() : eq));
        id.Trim();
        if (eq == std::string::npos || id.IsEmpty()) {
            CString message;
            message.Format("%s:%d: expected id=text", file.c_str(), line);
            diagnostics_.push_back(message);
            continue;
        }
        mapLanguage.emplace(id, CString(row.substr(eq + 1)));  // first definition wins
    }
}

void DefaultHost::LoadSettings()
{
    const CString file = SysFile("host.ini");
    csProductName = ProfileString("Host", "ProductName", "OrderView", file);
    eFractionType = static_cast<SpecificFraction_Type>(
        static_cast<int>(GetPrivateProfileIntA("Host", "FractionType", SpecificFraction_Decimal, file)));
    csStateClosed = ProfileString("Host", "MarketClosedText", "CLOSE", file);
    csStatePreOpen = ProfileString("Host", "MarketPreOpenText", "PREOPEN", file);
    csStateOpen = ProfileString("Host", "MarketOpenText", "OPEN", file);

    bShowDelete = GetPrivateProfileIntA("OrderBK", "ShowDelete", 0, file) != 0;
    const std::vector<CString> flags = SplitList(ProfileString("OrderBK", "Operator", "", file), ',');
    for (size_t i = 0; i < 4; ++i) abOperator[i] = i < flags.size() && flags[i] == "1";
    vecOffsetFirms = SplitList(ProfileString("OrderBK", "OffsetFirms", "", file), ',');

    baseOrder.userInfo.csName = ProfileString("User", "Name", "", file);
    baseOrder.userInfo.csBranchNo = ProfileString("User", "BranchNo", "", file);
    baseOrder.userInfo.csMainBranchNo = ProfileString("User", "MainBranchNo", "", file);
    baseOrder.userInfo.csAccount = ProfileString("User", "Account", "", file);
}

void DefaultHost::LoadItems(const char* file, const char* idColumn, std::map<ItemKey, X1Format>& table)
{
    table.clear();
    CsvTable csv;
    if (!csv.Load(SysFile(file), file, {"service", idColumn, "item", "unit", "value"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        std::uint8_t service = 0, unit = 0;
        std::uint64_t item = 0;
        if (!r.Byte("service", service) || !r.UInt("item", 65535, item) || !r.Byte("unit", unit)) continue;
        table[ItemKey(service, CString(r.Text(idColumn)), static_cast<unsigned short>(item))] =
            X1Format(static_cast<unsigned short>(item), unit, CString(r.Text("value")));
    }
}

void DefaultHost::LoadSymbols()
{
    mapSymbols.clear();
    CsvTable csv;
    const char* file = "symbols.csv";
    if (!csv.Load(SysFile(file), file, {"service", "symbol"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        std::uint8_t service = 0;
        SymbolInfo info;
        if (!r.Byte("service", service) || !r.Bool("is_stock", info.bIsStock)) continue;
        if (!r.Text("market_state").empty()) {
            std::uint64_t state = 0;
            if (!r.UInt("market_state", 255, state)) continue;
            info.iMarketState = static_cast<int>(state);
        }
        info.csCommodityId = r.Text("commodity");
        info.csTransferId = r.Text("transfer_symbol");
        info.csName = r.Text("name");
        mapSymbols[{service, CString(r.Text("symbol"))}] = info;
    }
}

void DefaultHost::LoadContracts()
{
    mapCommodityInfo.clear();
    CsvTable csv;
    const char* file = "contracts.csv";
    if (!csv.Load(SysFile(file), file, {"service", "commodity"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        std::uint8_t service = 0;
        CommodityInfo info;
        if (!r.Byte("service", service) || !r.Bool("weekly", info.bWeekly)) continue;
        info.csWeekRelation = r.Text("week_relation");
        info.vecContractMonths = SplitList(r.Text("months"), ' ');
        mapCommodityInfo[{service, CString(r.Text("commodity"))}] = info;
    }
}

void DefaultHost::LoadWeeklyNames()
{
    mapWeeklyNames.clear();
    CsvTable csv;
    const char* file = "weekly_names.csv";
    if (!csv.Load(SysFile(file), file, {"commodity", "year_month", "name"}, diagnostics_)) return;
    for (const auto& row : csv.rows())
        mapWeeklyNames[{CString(csv.Get(row, "commodity")), CString(csv.Get(row, "year_month"))}] =
            csv.Get(row, "name");
}

void DefaultHost::LoadAccounts()
{
    mapActiveAccounts.clear();
    mapAccountNames.clear();
    baseOrder.vecAccounts.clear();
    CsvTable csv;
    const char* file = "accounts.csv";
    if (!csv.Load(SysFile(file), file, {"trade_type", "account"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        AccountType account;
        std::uint64_t field37 = 0;
        bool active = false;
        if (!r.Code("trade_type", account.dwTradeType) || !r.Bool("active", active)) continue;
        if (!r.Text("field37").empty() && !r.UInt("field37", 0xFFFFFFFFu, field37)) continue;
        account.csAccount = r.Text("account");
        account.csField0 = r.Text("field0");
        account.csField8 = r.Text("field8");
        account.csField20 = r.Text("field20");
        account.csField24 = r.Text("field24");
        account.csField28 = r.Text("field28");
        account.dwField37 = static_cast<std::uint32_t>(field37);
        baseOrder.vecAccounts.push_back(account);
        if (!r.Text("name").empty()) mapAccountNames[account.csAccount] = CString(r.Text("name"));
        if (active) mapActiveAccounts[static_cast<std::uint8_t>(account.dwTradeType)] = account;
    }
}

void DefaultHost::LoadOrders()
{
    RecordFile file(SysFile("orders.csv"), "orders.csv", RecordFile::Kind::Orders);
    CBaseOrder_OrderInfo order;
    std::string list;
    while (file.NextOrder(order, list)) (list == "today" ? vecTodayOrders : vecErrorOrders).push_back(order);
    diagnostics_.insert(diagnostics_.end(), file.Diagnostics().begin(), file.Diagnostics().end());
}

void DefaultHost::LoadDeals()
{
    RecordFile file(SysFile("deals.csv"), "deals.csv", RecordFile::Kind::Deals);
    CBaseOrder_DealInfo deal;
    while (file.NextDeal(deal)) vecDeals.push_back(deal);
    diagnostics_.insert(diagnostics_.end(), file.Diagnostics().begin(), file.Diagnostics().end());
}

void DefaultHost::LoadAccepted()
{
    vecForeignAccept.clear();
    vecFOptionAccept.clear();
    vecOptionAccept.clear();
    CsvTable csv;
    const char* file = "accepted.csv";
    if (!csv.Load(SysFile(file), file, {"kind", "commodity"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        const std::string& kind = r.Text("kind");
        const std::string& id = r.Text("commodity");
        if (id.size() >= sizeof(CAcceptComFfuture::szComId)) {
            r.Report("commodity id longer than 31 bytes");
            continue;
        }
        std::int32_t den = 0, sub = 0;
        if (kind == "foreign_future" || kind == "foreign_option") {
            if (!r.Int("denominator", den) || !r.Int("sub_denominator", sub)) continue;
        }
        if (kind == "foreign_future") {
            CAcceptComFfuture rec;
            g_vSetComId(rec.szComId, id.c_str());
            rec.iDenominator = den;
            rec.iSubDenominator = sub;
            vecForeignAccept.push_back(rec);
        } else if (kind == "foreign_option") {
            CAcceptComFoption rec;
            g_vSetComId(rec.szComId, id.c_str());
            rec.iDenominator = den;
            rec.iSubDenominator = sub;
            vecFOptionAccept.push_back(rec);
        } else if (kind == "domestic_option") {
            CAcceptComDoption rec;
            g_vSetComId(rec.szComId, id.c_str());
            vecOptionAccept.push_back(rec);
        } else {
            r.Report("unknown kind '" + kind + "'");
        }
    }
}

void DefaultHost::LoadServices()
{
    mapQuoteMode.clear();
    mapDelayService.clear();
    CsvTable csv;
    const char* file = "services.csv";
    if (!csv.Load(SysFile(file), file, {"service"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        std::uint8_t service = 0, mode = 0, delayed = 0;
        if (!r.Byte("service", service)) continue;
        if (!r.Text("quote_mode").empty() && r.Byte("quote_mode", mode)) mapQuoteMode[service] = mode;
        if (!r.Text("delay_service").empty() && r.Byte("delay_service", delayed)) mapDelayService[service] = delayed;
    }
}

void DefaultHost::LoadInsurance()
{
    mapInsurance.clear();
    CsvTable csv;
    const char* file = "insurance.csv";
    if (!csv.Load(SysFile(file), file, {"account"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        Insurance entry;
        CBaseOrder_InsuranceInfo& info = entry.info;
        const bool ok = (r.Text("max_qty").empty() || r.Int("max_qty", info.iMaxQty)) &&
                        r.OptionalDouble("price_limit", info.dbPriceLimit) &&
                        r.OptionalDouble("today_limit", info.dbTodayLimit) &&
                        r.OptionalDouble("used_today", entry.dbUsedToday) &&
                        r.Bool("allow_margin_buy", info.bAllowMarginBuy) &&
                        r.Bool("allow_short_sell", info.bAllowShortSell) &&
                        r.Bool("allow_market_price", info.bAllowMarketPrice) &&
                        r.Bool("use_allow_list", info.bUseAllowList);
        if (!ok) continue;
        // Blank separated: the option keys of the insurance check hold ';' themselves.
        info.vecAllowList = SplitList(r.Text("allow_list"), ' ');
        info.vecDenyList = SplitList(r.Text("deny_list"), ' ');
        mapInsurance[CString(r.Text("account"))] = entry;
    }
}

void DefaultHost::LoadAlertStocks()
{
    mapAlertStocks.clear();
    CsvTable csv;
    const char* file = "alert_stocks.csv";
    if (!csv.Load(SysFile(file), file, {"account", "symbol"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        CBaseOrder_AlertStock stock;
        stock.csSymbolID = csv.Get(row, "symbol");
        stock.csName = csv.Get(row, "name");
        mapAlertStocks[CString(csv.Get(row, "account"))].push_back(stock);
    }
}

void DefaultHost::LoadStocks()
{
    mapStocks.clear();
    CsvTable csv;
    const char* file = "stocks.csv";
    if (!csv.Load(SysFile(file), file, {"symbol"}, diagnostics_)) return;
    for (const auto& row : csv.rows()) {
        RowReader r(csv, row, file, diagnostics_);
        StockInfo info;
        if (!r.Text("unit").empty() && !r.Int("unit", info.iUnit)) continue;
        if (!r.Bool("special", info.bSpecial) || !r.Bool("flag1", info.bFlag1) || !r.Bool("flag2", info.bFlag2) ||
            !r.Bool("flag3", info.bFlag3))
            continue;
        mapStocks[CString(r.Text("symbol"))] = info;
    }
}

}  // namespace orderview
