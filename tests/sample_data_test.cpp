// The bundled sample main folder and the generator of synthetic ones: every language id of the
// library has a text, the folders load cleanly, their orders and deals agree and every list mode
// shows orders.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "generate.h"
#include "host/default_host.h"
#include "rows/order_rows.h"
#include "support/substitute_host.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

const fs::path kSource = ORDERVIEW_SOURCE_DIR;

std::string ReadFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Every language file of the sample (English and Traditional Chinese) has a text for every id.
TEST(SampleLanguage, DefinesEveryIdTheLibraryUses)
{
    const std::regex id("\"((IDS|HTS)_[A-Za-z0-9_-]+)\"");
    std::map<std::string, std::string> used;  // id -> a file that uses it
    for (const char* folder : {"order_data", "platform", "host", "format", "rows", "checks", "smart_orders",
                               "settings", "export", "print", "xls"}) {
        if (!fs::is_directory(kSource / folder)) continue;
        for (const auto& entry : fs::recursive_directory_iterator(kSource / folder)) {
            const std::string ext = entry.path().extension().string();
            if (ext != ".cpp" && ext != ".h") continue;
            const std::string text = ReadFile(entry.path());
            for (std::sregex_iterator it(text.begin(), text.end(), id), end; it != end; ++it)
                used.emplace((*it)[1].str(), fs::relative(entry.path(), kSource).string());
        }
    }
    // The display tables alone use well over a hundred ids; far fewer means the scan broke.
    EXPECT_GT(used.size(), 100u);

    for (const char* file : {"language.txt", "language.zh-TW.txt"}) {
        std::map<std::string, std::string> defined;
        std::istringstream language(ReadFile(kSource / "sample/sys" / file));
        for (std::string line; std::getline(language, line);) {
            const size_t eq = line.find('=');
            if (eq != std::string::npos && line[0] != '#') {
                EXPECT_LT(eq + 1, line.size()) << file << ": empty text: " << line;
                defined.emplace(line.substr(0, eq), line.substr(eq + 1));
            }
        }
        for (const auto& [name, where] : used)
            EXPECT_TRUE(defined.count(name)) << file << ": " << name << " (used in " << where << ")";
        // Texts the checks use as formats keep their one conversion.
        for (const char* format : {"IDS_ORDER-STOCK-CV_OUTOF_UPPERLMT", "IDS_ORDER-FUTURE-CV_OUTOF_DOWNERLMT"})
            EXPECT_NE(defined[format].find("%.2f"), std::string::npos) << file << ": " << format;
        EXPECT_NE(defined["IDS_ORDER-STOCK-CV_YESTERDAY_TRADE_VOLUME"].find("%d"), std::string::npos) << file;
    }
}

bool IsRequest(const CBaseOrder_OrderInfo& order)
{
    return order.dwOrderKind == 'C' || order.dwOrderKind == 'U' || order.dwOrderKind == 'P';
}

// Problems of a loaded day: deals without their order, quantities that do not add up, average
// prices that are not the deals' weighted mean.
std::vector<std::string> CoherenceProblems(const orderview::TableHost& host)
{
    std::vector<std::string> problems;
    std::map<std::string, const CBaseOrder_OrderInfo*> orders;
    for (const auto& order : host.vecTodayOrders) {
        if (order.dwCancelQty + order.dwDealQty > order.dwOrderQty)
            problems.push_back(std::string(order.csOrderNo.GetString()) + ": cancelled and dealt above the quantity");
        if (IsRequest(order)) continue;
        const std::string key = std::string(order.csAccount.GetString()) + "/" + order.csOrderNo.GetString();
        if (!orders.emplace(key, &order).second) problems.push_back(key + ": two orders with one number");
    }
    std::map<std::string, std::pair<unsigned, double>> dealt;  // quantity and price sum per order
    for (const auto& deal : host.vecDeals) {
        const std::string key = std::string(deal.csAccount.GetString()) + "/" + deal.csOrderNo.GetString();
        const auto it = orders.find(key);
        if (it == orders.end()) {
            problems.push_back(key + ": deal without its order");
            continue;
        }
        if (deal.commodity.csSymbolID != it->second->commodity.csSymbolID)
            problems.push_back(key + ": deal of another commodity");
        auto& sums = dealt[key];
        sums.first += deal.dwDealQty;
        sums.second += deal.dwDealQty * (deal.dbDealPrice + (deal.dbDealDenominator > 0
                                                                 ? deal.dbDealPriceFrac / deal.dbDealDenominator
                                                                 : 0.0));
    }
    for (const auto& [key, order] : orders) {
        const auto it = dealt.find(key);
        const unsigned qty = it == dealt.end() ? 0 : it->second.first;
        if (qty != order->dwDealQty) {
            problems.push_back(key + ": deals add up to " + std::to_string(qty) + ", the order has " +
                               std::to_string(order->dwDealQty));
        } else if (qty && std::fabs(it->second.second / qty - order->dbAvgPrice) > 1e-6 * (1 + order->dbAvgPrice)) {
            problems.push_back(key + ": average price is not the deals' weighted mean");
        }
    }
    return problems;
}

// Prices off their product's tick: decimal prices against the exchange's tick, fractional ones
// must be whole numerators below their denominator.
std::vector<std::string> OffTickPrices(const orderview::TableHost& host)
{
    const std::map<std::string, double> ticks = {{"TXF", 1},    {"MXF", 1},   {"TXO", 1},    {"2330", 1},
                                                 {"2317", 0.5}, {"0050", 0.05}, {"2603", 0.5}, {"2498", 0.05}};
    std::vector<std::string> problems;
    const auto check = [&](const CBaseOrder_OrderInfo& o, double price, double frac, double den, const char* what) {
        const std::string where = std::string(o.csOrderNo.GetString()) + " " + what;
        if (den > 0) {
            if (frac < 0 || frac >= den || frac != std::floor(frac) || price != std::floor(price))
                problems.push_back(where + ": not on a 1/" + std::to_string(static_cast<int>(den)) + " tick");
            return;
        }
        const auto it = ticks.find(o.commodity.csComId.GetString());
        if (it == ticks.end()) {
            problems.push_back(where + ": unknown product " + o.commodity.csComId.GetString());
            return;
        }
        const double steps = price / it->second;
        if (std::fabs(steps - std::round(steps)) > 1e-6) problems.push_back(where + ": not on the tick");
    };
    for (const auto& o : host.vecTodayOrders) {
        check(o, o.dbOrderPrice, o.dbOrderPriceFrac, o.dbDenominator, "order price");
        check(o, o.dbTriggerPrice, o.dbTriggerPriceFrac, o.dbTriggerDenominator, "trigger price");
    }
    for (const auto& d : host.vecDeals) check(d, d.dbDealPrice, d.dbDealPriceFrac, d.dbDealDenominator, "deal price");
    return problems;
}

// Loads a main folder with the default host installed, as the order screens would.
class LoadedFolder {
public:
    explicit LoadedFolder(const std::string& folder) : host_(CString(folder)), installed_(host_)
    {
        host_.bLoadRecords();
    }
    orderview::DefaultHost& host() { return host_; }

    int ShownInSimpleList(int mode)
    {
        int shown = 0;
        for (auto& order : host_.vecTodayOrders) {
            CBaseOrderItemGroup row;
            shown += g_bAddODOI2OIG_SimpleOrderListCtrl(&row, &order, mode) ? 1 : 0;
        }
        return shown;
    }

private:
    orderview::DefaultHost host_;
    ovtest::InstalledHost installed_;
};

template <typename Line>
std::string Joined(const std::vector<Line>& lines)
{
    std::string text;
    for (const auto& line : lines) text += CString(line).str() + "\n";
    return text;
}

// A loaded day loads without diagnostics, its orders and deals agree, its prices are on their
// ticks and every list mode shows some of its orders.
void ExpectCoherentDay(LoadedFolder& day)
{
    EXPECT_TRUE(day.host().Diagnostics().empty()) << Joined(day.host().Diagnostics());
    EXPECT_TRUE(CoherenceProblems(day.host()).empty()) << Joined(CoherenceProblems(day.host()));
    EXPECT_TRUE(OffTickPrices(day.host()).empty()) << Joined(OffTickPrices(day.host()));
    for (int mode : {1, 2, 4, 5, 6, 7, 8, 9}) EXPECT_GT(day.ShownInSimpleList(mode), 0) << "mode " << mode;
}

TEST(SampleFolder, LoadsCleanlyAgreesAndEveryListModeShowsOrders)
{
    LoadedFolder sample((kSource / "sample").string());
    ExpectCoherentDay(sample);
    EXPECT_GE(sample.host().vecTodayOrders.size(), 100u);
    EXPECT_FALSE(sample.host().vecDeals.empty());
    const int all = sample.ShownInSimpleList(255);
    EXPECT_EQ(all, static_cast<int>(sample.host().vecTodayOrders.size()));
    for (int mode : {1, 2, 4, 5, 6, 7, 8, 9})
        EXPECT_LT(sample.ShownInSimpleList(mode), all) << "mode " << mode << " filters nothing";
}

TEST(SampleFolder, HoldsEveryKindOfOrder)
{
    using Order = CBaseOrder_OrderInfo;
    const std::vector<std::pair<const char*, std::function<bool(const Order&)>>> kinds = {
        {"state empty", [](const Order& o) { return o.csStateCode.IsEmpty(); }},
        {"state C", [](const Order& o) { return o.csStateCode == "C"; }},
        {"state U", [](const Order& o) { return o.csStateCode == "U"; }},
        {"state F", [](const Order& o) { return o.csStateCode == "F"; }},
        {"state P", [](const Order& o) { return o.csStateCode == "P"; }},
        {"buy", [](const Order& o) { return o.dwBS == 'B'; }},
        {"sell", [](const Order& o) { return o.dwBS == 'S'; }},
        {"market", [](const Order& o) { return o.dwOrderKind == '1'; }},
        {"limit", [](const Order& o) { return o.dwOrderKind == '2'; }},
        {"stop market", [](const Order& o) { return o.dwOrderKind == '3' && o.dbTriggerPrice > 0; }},
        {"stop limit", [](const Order& o) { return o.dwOrderKind == '4' && o.dbTriggerPrice > 0; }},
        {"cancel request", [](const Order& o) { return o.dwOrderKind == 'C'; }},
        {"change request", [](const Order& o) { return o.dwOrderKind == 'U'; }},
        {"rest of day", [](const Order& o) { return o.dwOrderCond == 'R'; }},
        {"fill or kill", [](const Order& o) { return o.dwOrderCond == 'F'; }},
        {"immediate or cancel", [](const Order& o) { return o.dwOrderCond == 'I'; }},
        {"status 0000", [](const Order& o) { return o.csStatusCode == "0000"; }},
        {"status 9997", [](const Order& o) { return o.csStatusCode == "9997"; }},
        {"status 9995", [](const Order& o) { return o.csStatusCode == "9995"; }},
        {"error status", [](const Order& o) { return o.csStatusCode[0] == 'E' && !o.csStatusMsg.IsEmpty(); }},
        {"futures", [](const Order& o) { return o.commodity.dwMarketKind == '0'; }},
        {"options", [](const Order& o) { return o.commodity.dwMarketKind == '1'; }},
        {"calendar spread",
         [](const Order& o) {
             return o.dwComplexKind == '2' && !o.commodity.csComMonth2.IsEmpty() && (o.dwLegBS == 'B' || o.dwLegBS == 'S');
         }},
        {"dealt spread", [](const Order& o) { return o.dwComplexKind == '2' && o.dbAvgPrice2 > 0; }},
        {"cash stock", [](const Order& o) { return o.commodity.dwMarketKind == 'A' && o.commodity.dwStockTradeKind == 'A'; }},
        {"margin stock", [](const Order& o) { return o.commodity.dwStockTradeKind == 'B'; }},
        {"short stock", [](const Order& o) { return o.commodity.dwStockTradeKind == 'C'; }},
        {"market D", [](const Order& o) { return o.commodity.dwMarketKind == 'D'; }},
        {"market E", [](const Order& o) { return o.commodity.dwMarketKind == 'E'; }},
        {"32nds", [](const Order& o) { return o.dbDenominator == 32 && o.commodity.dwMarketType == 'O'; }},
        {"64ths", [](const Order& o) { return o.dbDenominator == 64 && !o.commodity.csExchangeId.IsEmpty(); }},
        {"ETS",
         [](const Order& o) {
             return o.commodity.dwMarketType == 'O' && o.commodity.dwMarketKind == '2' && o.csOrderNo.GetLength() > 1 &&
                    o.csOrderNo[1] >= 'A' && o.csOrderNo[1] <= 'J';
         }},
    };
    LoadedFolder sample((kSource / "sample").string());
    for (const auto& [name, matches] : kinds) {
        int count = 0;
        for (const auto& order : sample.host().vecTodayOrders) count += matches(order) ? 1 : 0;
        EXPECT_GT(count, 0) << name;
    }
    std::set<std::string> accountKinds;
    for (const auto& account : sample.host().baseOrder.vecAccounts) accountKinds.insert(std::string(1, static_cast<char>(account.dwTradeType)));
    EXPECT_EQ(accountKinds, (std::set<std::string>{"0", "1", "2", "A"}));
    EXPECT_FALSE(sample.host().mapInsurance.empty());
    EXPECT_FALSE(sample.host().mapAlertStocks.empty());
}

int Generate(std::vector<std::string> args)
{
    args.insert(args.begin(), "generate");
    std::vector<char*> argv;
    for (auto& arg : args) argv.push_back(arg.data());
    return GenerateCommand(static_cast<int>(argv.size()), argv.data());
}

TEST(Generator, WritesACoherentDayOfTheRequestedSize)
{
    ovtest::TempFolder folder;
    const std::string out = folder.path() + "/day";  // created by the generator
    ASSERT_EQ(Generate({"--orders", "2000", "--output", out, "--seed", "7"}), 0);
    LoadedFolder day(out);
    ExpectCoherentDay(day);
    int orders = 0;
    for (const auto& order : day.host().vecTodayOrders) orders += IsRequest(order) ? 0 : 1;
    EXPECT_EQ(orders, 2000);
}

TEST(Generator, SameSeedSameFiles)
{
    ovtest::TempFolder folder;
    const std::string a = folder.path() + "/a", b = folder.path() + "/b", c = folder.path() + "/c";
    ASSERT_EQ(Generate({"--orders", "300", "--output", a, "--seed", "42"}), 0);
    ASSERT_EQ(Generate({"--seed", "42", "--output", b, "--orders", "300"}), 0);
    ASSERT_EQ(Generate({"--orders", "300", "--output", c, "--seed", "43"}), 0);
    for (const char* file : {"orders.csv", "deals.csv", "quotes.csv"})
        EXPECT_EQ(ReadFile(fs::path(a) / "sys" / file), ReadFile(fs::path(b) / "sys" / file)) << file;
    EXPECT_NE(ReadFile(fs::path(a) / "sys/orders.csv"), ReadFile(fs::path(c) / "sys/orders.csv"));
    for (const char* file : {"language.txt", "language.zh-TW.txt", "xls_head.txt"})
        EXPECT_EQ(ReadFile(fs::path(a) / "sys" / file), ReadFile(kSource / "sample/sys" / file)) << file;
}

TEST(Generator, ExitCodes)
{
    ovtest::TempFolder folder;
    folder.Write("plain_file", "x");
    const std::string out = folder.path() + "/out";
    struct Case { std::vector<std::string> args; int code; };
    const Case cases[] = {
        {{"--help"}, 0}, {{}, 2}, {{"--output", out}, 2}, {{"--orders", "10"}, 2},
        {{"--orders", "0", "--output", out}, 2}, {{"--orders", "10000001", "--output", out}, 2},
        {{"--orders", "-5", "--output", out}, 2}, {{"--orders", "12x", "--output", out}, 2},
        {{"--orders", "10", "--output", out, "--seed", "abc"}, 2},
        {{"--orders", "10", "--output", out, "--colour"}, 2},
        {{"--orders", "10", "--output"}, 2}, {{"--orders", "10", "--output", ""}, 2},
        {{"--orders", "10", "--output", folder.File("plain_file") + "/day"}, 1},
        {{"--orders", "10", "--output", out}, 0},
    };
    for (const auto& c : cases) {
        std::string shown;
        for (const auto& arg : c.args) shown += arg + " ";
        EXPECT_EQ(Generate(c.args), c.code) << shown;
    }
    EXPECT_TRUE(fs::exists(fs::path(out) / "sys/orders.csv"));
}

}  // namespace
