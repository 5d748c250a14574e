// Loading the library reads nothing: run in a main folder full of tables (the sample's), the
// process reaches main without the library having tried to open a single file or built a host.
// The first call that needs a host then builds the built-in one from this folder.
#include <cstdio>

#include "order_data/host_api.h"
#include "platform/file_system.h"

int main()
{
    const unsigned long atStart = orderview::detail::FileOpenAttempts();
    if (atStart != 0) {
        std::fprintf(stderr, "loading the library tried to open %lu files\n", atStart);
        return 1;
    }
    if (!g_cszProductName.IsEmpty() || !STATUS_OPEN_STRING.IsEmpty()) {
        std::fprintf(stderr, "loading the library took texts from a host\n");
        return 1;
    }
    const CString buy = BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_BS_BUY");
    if (buy == "IDS_ORDER-ITEM_BS_BUY" || orderview::detail::FileOpenAttempts() == 0) {
        std::fprintf(stderr, "the first use did not read the main folder's tables (got '%s')\n", buy.GetString());
        return 1;
    }
    if (g_cszProductName.IsEmpty() || STATUS_OPEN_STRING != "OPEN") {
        std::fprintf(stderr, "the built-in host's texts were not taken when it was built\n");
        return 1;
    }
    std::printf("no file opened at load; %lu opened on first use\n", orderview::detail::FileOpenAttempts());
    return 0;
}
