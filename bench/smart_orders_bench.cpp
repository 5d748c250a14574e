// Registry lookups that the screens run on every quote tick.
#include <benchmark/benchmark.h>

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

}  // namespace

BENCHMARK(BM_OCOSNbyPrice);
BENCHMARK(BM_MoveSMTInfoByPrice);

BENCHMARK_MAIN();
