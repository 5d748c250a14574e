// Registry lookups that the screens run on every quote tick, removals and queues of very long
// registries, and the order insurance check's walk of a very long deny list.
#include <benchmark/benchmark.h>

#include <vector>

#include "orderview.h"

namespace {

// 10,000 OCO groups of 2 legs; the looked-up leg is in the last group, so the walk is whole.
void BM_OCOSNbyPrice(benchmark::State& state)
{
    orderview::ResetSmartOrderRegistries();
    unsigned char sync = 1;
    for (int i = 0; i < 10000; ++i) {
        CString sn;
        sn.Format("OCO%05d", i);
        std::vector<STRUCT_FLASH_OCO_DATA> legs(2);
        legs[0].strSymbol = legs[1].strSymbol = "TXFL6";
        legs[0].strPrice.Format("%d", 20000 + i);
        legs[1].strPrice.Format("%d", 10000 - i);
        legs[0].strMark = legs[1].strMark = "m";
        g_vSetOCOInfoBySN(sn, legs, sync);
    }
    CString price = "1", found;  // the second leg of the last group
    bool flag = false;
    for (auto _ : state) {
        g_vGetOCOSNbyPrice(price, "TXFL6", found, flag, "m");
        benchmark::DoNotOptimize(found);
    }
    if (found != "OCO09999") state.SkipWithError("wrong group found");
    orderview::ResetSmartOrderRegistries();
}

// 10,000 moving SMT entries of one sync type, 10 of them at the looked-up price and mark.
void BM_MoveSMTInfoByPrice(benchmark::State& state)
{
    orderview::ResetSmartOrderRegistries();
    for (int i = 0; i < 10000; ++i) {
        STRUCT_FLASH_MOVESMT_DATA data;
        data.OrderInfo.strDealNo.Format("D%05d", i);
        data.strMoveMark = "m";
        CString price;
        price.Format("%d", i % 1000);
        g_vSetMoveSMTInfoByPrice(price, data, 1);
    }
    CString price = "500", mark = "m";
    unsigned char sync = 1;
    size_t found = 0;
    for (auto _ : state) {
        found = g_vecGetMoveSMTInfoByPrice(price, mark, sync).size();
        benchmark::DoNotOptimize(found);
    }
    if (found != 10) state.SkipWithError("wrong match count");
    orderview::ResetSmartOrderRegistries();
}

// 200,000 OCO groups of one leg each, half of them of one mark: removing that mark's groups walks
// the list once, however long it is.
void BM_OCODelByMarkOnHugeList(benchmark::State& state)
{
    const int n = 200000;
    unsigned char sync = 1;
    std::vector<CString> removed;
    for (auto _ : state) {
        state.PauseTiming();
        orderview::ResetSmartOrderRegistries();
        removed.clear();
        for (int i = 0; i < n; ++i) {
            CString sn;
            sn.Format("SN%07d", i);
            std::vector<STRUCT_FLASH_OCO_DATA> legs(1);
            legs[0].strSymbol = "TXF";
            legs[0].strPrice = "1";
            legs[0].strMark = i % 2 ? "odd" : "even";
            g_vSetOCOInfoBySN(sn, legs, sync);
        }
        state.ResumeTiming();
        g_vDelOCOInfoBySN("", sync, removed, "odd", true);
    }
    if (removed.size() != static_cast<size_t>(n / 2) || g_vecGetOCOSNBySync(sync).size() != static_cast<size_t>(n / 2))
        state.SkipWithError("wrong groups removed");
    orderview::ResetSmartOrderRegistries();
}

// A reuse queue of 200,000 serial numbers filled and emptied again: each pop takes the front in
// constant time.
void BM_OCOReuseQueueFillAndEmpty(benchmark::State& state)
{
    const int n = 200000;
    CString key = "Q", front;
    int left = -1;
    orderview::ResetSmartOrderRegistries();
    for (auto _ : state) {
        for (int i = 0; i < n; ++i) g_vSetReuseOCOSN(key, "x", false, false);
        for (int i = 0; i < n; ++i) g_vSetReuseOCOSN(key, "", true, false);
        left = g_iGetReuseOCOSN(key, front);
    }
    if (left != 0) state.SkipWithError("the queue did not empty");
    orderview::ResetSmartOrderRegistries();
}

// The order insurance check of a futures order against a deny list of 200,000 entries whose only
// match is the last: the walk reaches the end of any list.
void BM_InsuranceHugeDenyList(benchmark::State& state)
{
    orderview::TableHost host;
    orderview::SetHostServices(&host);
    CBaseOrder_InsuranceInfo& settings = host.mapInsurance["ACC1"].info;
    settings.bAllowMarketPrice = settings.bAllowMarginBuy = settings.bAllowShortSell = true;
    settings.vecDenyList.assign(200000, CString("MXF00"));
    settings.vecDenyList.back() = "TXFL6";
    AccountType account;
    account.csAccount = "ACC1";
    account.dwTradeType = '0';
    CBaseOrder_OrderInfo order;
    order.commodity.csComId = "TXF";
    order.commodity.csSymbolID = "TXFL6";
    order.commodity.byServiceID = 1;
    order.commodity.dwMarketKind = '1';
    order.dwComplexKind = 'N';
    order.dwOrderKind = order.dwOrderType = '2';
    order.dbOrderPrice = 100;
    order.dwOrderQty = 1;
    bool passed = true;
    for (auto _ : state) {
        CString message;
        passed = g_bCheckOrderInsurance(account, &order, message);
        benchmark::DoNotOptimize(message);
    }
    if (passed) state.SkipWithError("the last deny-list entry was not matched");
    orderview::SetHostServices(nullptr);
}

}  // namespace

BENCHMARK(BM_OCOSNbyPrice);
BENCHMARK(BM_MoveSMTInfoByPrice);
BENCHMARK(BM_OCODelByMarkOnHugeList)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OCOReuseQueueFillAndEmpty)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InsuranceHugeDenyList)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
