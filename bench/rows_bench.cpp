// List rows against a baseline in the same run that only formats the same item texts with
// snprintf into preallocated buffers. The default host reads a scratch main folder whose
// language file defines every language-string id found in the library's sources.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

#include "orderview.h"

namespace {

namespace fs = std::filesystem;

// Every "IDS_..." and "HTS_..." id in the library's sources, with a short English-like text.
std::string LanguageFile()
{
    const std::regex id("\"((IDS|HTS)_[A-Za-z0-9_-]+)\"");
    std::set<std::string> ids;
    for (const auto& entry : fs::recursive_directory_iterator(ORDERVIEW_SOURCE_DIR)) {
        const std::string path = entry.path().string();
        if (entry.path().extension() != ".cpp" || path.find("/build/") != std::string::npos ||
            path.find("/tests/") != std::string::npos || path.find("/bench/") != std::string::npos)
            continue;
        std::ifstream in(path);
        const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        for (std::sregex_iterator it(text.begin(), text.end(), id), end; it != end; ++it) ids.insert((*it)[1]);
    }
    std::string file;
    for (const auto& i : ids) file += i + "=" + i.substr(i.rfind('_') + 1) + "\n";
    return file;
}

struct Fixture {
    Fixture()
    {
        folder = (fs::temp_directory_path() / ("orderview-rows-bench-" + std::to_string(::getpid()))).string();
        fs::create_directories(folder + "/sys");
        std::ofstream(folder + "/sys/language.txt") << LanguageFile();
        std::ofstream(folder + "/sys/accounts.csv") << "trade_type,account,name\n2,F0001,Chen Trading\n";
        std::ofstream(folder + "/sys/host.ini") << "[Host]\nFractionType=0\n";
        std::ofstream(folder + "/sys/accepted.csv")
            << "kind,commodity,denominator,sub_denominator\nforeign_future,ZB,32,4\nforeign_future,ZN,32,2\n";
        host = new orderview::DefaultHost(CString(folder.c_str()));
        orderview::SetHostServices(host);
        MakeOrders();
    }
    ~Fixture()
    {
        orderview::SetHostServices(nullptr);
        delete host;
        fs::remove_all(folder);
    }

    // A day's mix: domestic futures, options, spreads, stocks and fractional foreign futures.
    void MakeOrders()
    {
        for (int i = 0; i < 1000; ++i) {
            CBaseOrder_DealInfo d;
            d.csAccount = "F0001";
            d.csOrderNo.Format("A%c%04d", 'A' + i % 20, i);
            d.iOrderSeq = i % 3;
            d.dwBS = i % 2 ? 'B' : 'S';
            d.dwComplexKind = 'N';
            d.dwOrderKind = '2';
            d.dwOrderCond = "RFI"[i % 3];
            d.dwOpenOffset = "01 "[i % 3];
            d.dwDayTrade = i % 5 ? 'N' : 'Y';
            d.dwHoursType = 'R';
            d.dwBookDate = d.dwOrderDate = d.dwDealDate = d.dwAccountDate = 20261123;
            d.dwBookTime = d.dwOrderTime = 84500000 + static_cast<std::uint32_t>(i) * 1013;
            d.dwDealTime = d.dwOrderTime + 1500;
            d.dwOrderQty = 1 + i % 10;
            d.dwDealQty = static_cast<std::uint32_t>(i % 4 ? 0 : 1);
            d.csStatusCode = "0000";
            d.csStateCode = i % 4 ? "" : "F";
            d.csSourceName = "Web";
            d.csOperator = "op1";
            d.dbAvgPrice = d.dwDealQty ? 23150.25 : 0.0;
            d.iDecimals = 2;
            switch (i % 5) {
            case 0:  // domestic futures
                d.commodity.dwMarketKind = '0';
                d.commodity.csComId = "TXF";
                d.commodity.csComMonth = "202612";
                d.dbOrderPrice = d.dbDealPrice = 23150 + i % 7;
                break;
            case 1:  // domestic options
                d.commodity.dwMarketKind = '1';
                d.commodity.csComId = "TXO";
                d.commodity.csComMonth = "202612";
                d.dbOrderPrice = d.dbDealPrice = 125.5;
                break;
            case 2:  // calendar spread
                d.commodity.dwMarketKind = '0';
                d.commodity.csComId = "MXF";
                d.commodity.csComMonth = "202612";
                d.commodity.csComMonth2 = "202701";
                d.dwComplexKind = '2';
                d.dwLegBS = 'B';
                d.dbOrderPrice = d.dbDealPrice = 45;
                d.dbAvgPrice2 = d.dbAvgPrice ? 44.5 : 0.0;
                d.dbDealPrice2 = 44.5;
                break;
            case 3:  // stock
                d.commodity.dwMarketKind = 'A';
                d.commodity.dwStockTradeKind = 'A';
                d.commodity.csComId = "2330";
                d.dbOrderPrice = d.dbDealPrice = 1085;
                d.dwOrderQty = 1000 * d.dwOrderQty;
                break;
            default:  // fractional foreign futures, 1/32 with quarters
                d.commodity.dwMarketKind = '2';
                d.commodity.dwMarketType = 'O';
                d.commodity.csComId = "ZB";
                d.commodity.csComMonth = "202612";
                d.commodity.csExchangeId = "CBOT";
                d.dbOrderPrice = d.dbDealPrice = 117;
                d.dbOrderPriceFrac = d.dbDealPriceFrac = 16.25;
                d.dbDenominator = d.dbDealDenominator = 32;
                break;
            }
            d.dbFee = 50;
            d.dbTax = 20;
            d.dbNetAmount = 12345.5;
            d.dbTradeValue = d.dbDealPrice * 200;
            deals.push_back(d);
        }
    }

    std::string folder;
    orderview::DefaultHost* host = nullptr;
    std::vector<CBaseOrder_DealInfo> deals;
};

Fixture& Setup()
{
    static Fixture fixture;
    return fixture;
}

// The snprintf baseline: `items` texts of the shapes the rows show (numbers, dates, times,
// prices, copied words), written into preallocated buffers.
void FormatBaselineRow(const CBaseOrder_DealInfo& d, int items, char (*buffers)[64])
{
    for (int i = 0; i < items; ++i) {
        char* b = buffers[i];
        switch (i % 6) {
        case 0: std::snprintf(b, 64, "%s-%c%d", d.csOrderNo.GetString(), static_cast<char>(d.dwOrderKind), d.iOrderSeq); break;
        case 1: std::snprintf(b, 64, "%04d/%02d/%02d", d.dwOrderDate / 10000, d.dwOrderDate / 100 % 100, d.dwOrderDate % 100); break;
        case 2: std::snprintf(b, 64, "%02d:%02d:%02d", d.dwOrderTime / 10000000, d.dwOrderTime / 100000 % 100, d.dwOrderTime / 1000 % 100); break;
        case 3: std::snprintf(b, 64, "%.2f", d.dbOrderPrice); break;
        case 4: std::snprintf(b, 64, "%d", static_cast<int>(d.dwOrderQty)); break;
        default: std::snprintf(b, 64, "%s", d.csSourceName.GetString()); break;
        }
    }
}

// Item counts of a typical row of each list.
constexpr int kSimpleItems = 28;
constexpr int kFullItems = 45;
constexpr int kDealItems = 30;

template <class Fill>
void RunRows(benchmark::State& state, Fill fill)
{
    auto& deals = Setup().deals;
    size_t i = 0;
    for (auto _ : state) {
        CBaseOrderItemGroup row;
        benchmark::DoNotOptimize(fill(row, deals[i]));
        benchmark::DoNotOptimize(row.GetSetCalls().data());
        if (++i == deals.size()) i = 0;
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void RunBaseline(benchmark::State& state, int items)
{
    auto& deals = Setup().deals;
    static char buffers[64][64];
    size_t i = 0;
    for (auto _ : state) {
        FormatBaselineRow(deals[i], items, buffers);
        benchmark::DoNotOptimize(buffers[0][0]);
        benchmark::ClobberMemory();
        if (++i == deals.size()) i = 0;
    }
}

void BM_SimpleRow(benchmark::State& state)
{
    RunRows(state, [](CBaseOrderItemGroup& r, CBaseOrder_DealInfo& d) { return g_bAddODOI2OIG_SimpleOrderListCtrl(&r, &d, 255); });
}
void BM_SimpleRow_Baseline(benchmark::State& state) { RunBaseline(state, kSimpleItems); }

void BM_FullRow(benchmark::State& state)
{
    RunRows(state, [](CBaseOrderItemGroup& r, CBaseOrder_DealInfo& d) {
        return g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&r, &d, 0x4ffff, true, false, false);
    });
}
void BM_FullRow_Baseline(benchmark::State& state) { RunBaseline(state, kFullItems); }

void BM_DealRow(benchmark::State& state)
{
    RunRows(state, [](CBaseOrderItemGroup& r, CBaseOrder_DealInfo& d) {
        return g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&r, &d, 0, true, false, false);
    });
}
void BM_DealRow_Baseline(benchmark::State& state) { RunBaseline(state, kDealItems); }

// A filtered-out order: mode 2 hides every order with nothing dealt, before any text is built.
void BM_FilteredOut(benchmark::State& state)
{
    CBaseOrder_DealInfo order = Setup().deals[1];
    order.dwDealQty = 0;
    CBaseOrderItemGroup row;
    for (auto _ : state) {
        benchmark::DoNotOptimize(order);
        benchmark::DoNotOptimize(g_bAddODOI2OIG_SimpleOrderListCtrl(&row, &order, 2));
    }
}
// The floor for it: one integer comparison chain over the same fields.
void BM_FilteredOut_Baseline(benchmark::State& state)
{
    CBaseOrder_DealInfo order = Setup().deals[1];
    order.dwDealQty = 0;
    int mode = 2;
    for (auto _ : state) {
        benchmark::DoNotOptimize(order);
        benchmark::DoNotOptimize(mode);
        const bool shown = (mode & 0xFF) == 255 ||
                           (order.dwOrderKind != 'U' && order.dwOrderKind != 'C' && order.dwDealQty != 0 &&
                            order.dwOrderQty == order.dwCancelQty + order.dwDealQty);
        benchmark::DoNotOptimize(shown);
    }
}

// A list refresh: 100,000 full rows.
void BM_Fill100kFullRows(benchmark::State& state)
{
    auto& deals = Setup().deals;
    for (auto _ : state) {
        std::vector<CBaseOrderItemGroup> rows(100000);
        for (size_t i = 0; i < rows.size(); ++i)
            g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&rows[i], &deals[i % deals.size()], 0x4ffff, true, false, false);
        benchmark::DoNotOptimize(rows.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 100000);
}

BENCHMARK(BM_SimpleRow);
BENCHMARK(BM_SimpleRow_Baseline);
BENCHMARK(BM_FullRow);
BENCHMARK(BM_FullRow_Baseline);
BENCHMARK(BM_DealRow);
BENCHMARK(BM_DealRow_Baseline);
BENCHMARK(BM_FilteredOut);
BENCHMARK(BM_FilteredOut_Baseline);
BENCHMARK(BM_Fill100kFullRows)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
