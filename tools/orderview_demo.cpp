// Prints a few prices and numbers as the order screens show them, with the default host
// (reading its tables from ORDERVIEW_HOME, or the folder given as the first argument).
#include <cstdio>

#include "orderview.h"

int main(int argc, char** argv)
{
    orderview::DefaultHost host(argc > 1 ? CString(argv[1]) : orderview::DefaultHost::DefaultMainPath());
    orderview::SetHostServices(&host);

    std::printf("product           %s\n", g_cszProductName.GetString());
    const double values[] = {1234567.891, -0.5, 100.0, 0.000000004, 99.515625};
    for (double v : values) {
        const CString plain = g_cszNormalizDouble(v);
        const CString grouped = g_cszNormalizCstring(plain);
        std::printf("%-17.9g %-14s %s\n", v, plain.GetString(), grouped.GetString());
    }
    std::printf("32nds             %s\n", CApi_GetSpecificString2(32, 101.515625, 9).GetString());
    std::printf("dotted eighths    %s\n", CApi_DisplayFraction2Dot(3.625, 3).GetString());
    std::printf("masked account    %s\n", g_csTransShowString("9801234567").GetString());
    std::printf("base unit 0.005   %u\n", g_byGetBaseUnitFromMinTick(X1Format(1, 25, 12.5), 0.005));
    std::printf("buy               %s\n", BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_BS_BUY").GetString());
    orderview::SetHostServices(nullptr);
    return 0;
}
