// Display functions against a baseline that only formats the same result text with snprintf,
// with the file-backed default host (language file in a scratch main folder).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "orderview.h"

namespace {

struct Fixture {
    Fixture()
    {
        char pattern[] = "/tmp/orderview-bench-XXXXXX";
        folder = mkdtemp(pattern);
        std::system(("mkdir -p " + folder + "/sys").c_str());
        std::ofstream(folder + "/sys/language.txt")
            << "IDS_ORDER-ITEM_STATUS_ORDERSUCCESS=Order accepted\n"
               "IDS_ORDER-ITEM_STATUS_COMPLETEDEAL=Filled\n"
               "IDS_CSTOCKCTRLVIEW-STRING_SETVIEWBYODOI22=Odd-lot limit\n"
               "IDS_ORDER-ITEM_CHASEPRICE=chase\n";
        std::ofstream(folder + "/sys/accepted.csv")
            << "kind,commodity,denominator,sub_denominator\nforeign_future,ZB,32,4\nforeign_future,ZN,32,2\n"
               "foreign_future,ZF,32,4\nforeign_future,ZT,32,8\n";
        std::ofstream(folder + "/sys/host.ini") << "[Host]\nFractionType=0\n";
        host = new orderview::DefaultHost(CString(folder.c_str()));
        orderview::SetHostServices(host);
    }
    ~Fixture()
    {
        orderview::SetHostServices(nullptr);
        delete host;
        std::system(("rm -rf " + folder).c_str());
    }
    std::string folder;
    orderview::DefaultHost* host = nullptr;
};

Fixture& Setup()
{
    static Fixture fixture;
    return fixture;
}

CString Snprintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
CString Snprintf(const char* format, ...)
{
    char buffer[128];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return CString(buffer);
}

void BM_DisplayPrice_Decimal(benchmark::State& state)
{
    Setup();
    const double a = 16250.5, zero = 0.0;
    const CString com = "TXF";
    for (auto _ : state) benchmark::DoNotOptimize(g_cszDisplayPrice(a, zero, zero, com));
}

void BM_Baseline_Decimal(benchmark::State& state)
{
    const double a = 16250.5;
    for (auto _ : state) benchmark::DoNotOptimize(Snprintf("%.1f", a));
}

void BM_DisplayPrice_Fraction(benchmark::State& state)
{
    Setup();
    const double a = 101, b = 49, c = 128;
    const CString com = "ZB";
    for (auto _ : state) benchmark::DoNotOptimize(g_cszDisplayPrice(a, b, c, com));
}

void BM_Baseline_Fraction(benchmark::State& state)
{
    int a = 101, q = 12, den = 32, r = 1, sub = 4;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Snprintf("%d %d/%d %d/%d", a, q, den, r, sub));
        benchmark::ClobberMemory();
    }
}

void BM_DisplayOrderState(benchmark::State& state)
{
    Setup();
    CBaseOrder_OrderInfo order;
    order.commodity.dwMarketKind = '0';
    order.dwOrderKind = '2';
    order.csStatusCode = "0000";
    order.dwOrderQty = 5;
    order.byChasePrice = 1;
    for (auto _ : state) benchmark::DoNotOptimize(g_cszDisplayOrderState(&order, 0));
}

void BM_Baseline_OrderState(benchmark::State& state)
{
    const char* word = "Order accepted";
    const char* chase = "chase";
    for (auto _ : state) benchmark::DoNotOptimize(Snprintf("%s(%s)", word, chase));
}

void BM_DisplayOrderType(benchmark::State& state)
{
    Setup();
    unsigned long code = 0x313033;
    for (auto _ : state) {
        benchmark::DoNotOptimize(g_cszDisplayOrderType(code));
        benchmark::ClobberMemory();
    }
}

void BM_Baseline_OrderType(benchmark::State& state)
{
    const char* word = "Odd-lot limit";
    for (auto _ : state) benchmark::DoNotOptimize(Snprintf("%s", word));
}

}  // namespace

BENCHMARK(BM_DisplayPrice_Decimal);
BENCHMARK(BM_Baseline_Decimal);
BENCHMARK(BM_DisplayPrice_Fraction);
BENCHMARK(BM_Baseline_Fraction);
BENCHMARK(BM_DisplayOrderState);
BENCHMARK(BM_Baseline_OrderState);
BENCHMARK(BM_DisplayOrderType);
BENCHMARK(BM_Baseline_OrderType);

BENCHMARK_MAIN();
