// What the orderview program's list and export cannot go below on a main folder, and how long
// the default host takes to build there:
//   cli_bound rows MAIN   reads sys/orders.csv once through RecordFile and fills one full-list
//                         row per order of the day, printing nothing
//   cli_bound host MAIN   builds the default host of MAIN and prints the milliseconds it took
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "host/default_host.h"
#include "host/record_file.h"
#include "order_data/host_api.h"
#include "rows/order_rows.h"

int main(int argc, char** argv)
{
    if (argc != 3 || (std::strcmp(argv[1], "rows") != 0 && std::strcmp(argv[1], "host") != 0)) {
        std::fprintf(stderr, "usage: cli_bound rows|host MAIN\n");
        return 2;
    }
    const CString main(argv[2]);
    if (std::strcmp(argv[1], "host") == 0) {
        const auto start = std::chrono::steady_clock::now();
        orderview::DefaultHost host(main);
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        std::printf("%.1f ms to build the default host\n", took.count());
        return 0;
    }
    orderview::DefaultHost host(main, orderview::DefaultHost::Tables::WithoutOrdersAndDeals);
    orderview::SetHostServices(&host);
    orderview::RecordFile file(main + "\\sys\\orders.csv", "orders.csv", orderview::RecordFile::Kind::Orders);
    CBaseOrder_OrderInfo order;
    CBaseOrderItemGroup row;
    std::string list;
    unsigned long filled = 0;
    while (file.NextOrder(order, list)) {
        if (list != "today") continue;
        row.vClear();
        filled += g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&row, &order, 0x4ffff, true, false, true) ? 1 : 0;
    }
    orderview::SetHostServices(nullptr);
    std::fprintf(stderr, "%lu rows filled\n", filled);
    return 0;
}
