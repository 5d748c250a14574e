#include "smart_orders/market_flags.h"

#include <algorithm>
#include <cstdint>
#include <map>

#include "smart_orders/detail/list_registry.h"
#include "smart_orders/detail/registry_reset.h"

using orderview::detail::EraseFirst;
using orderview::detail::ListRegistry;

namespace {

std::map<std::uint8_t, bool> g_marketOrders;               // created at load, destroyed at unload
ListRegistry<std::uint8_t, CString> g_smartOrderSymbols;

}  // namespace

namespace orderview {
namespace detail {
void ResetMarketRegistries()
{
    g_marketOrders.clear();
    g_smartOrderSymbols.Clear();
}
}  // namespace detail
}  // namespace orderview

void g_vSetHaveMKTOrder(unsigned char& syncType, bool bHave) { g_marketOrders[syncType] = bHave; }

bool g_bGetHaveMKTOrder(unsigned char& syncType)
{
    const auto it = g_marketOrders.find(syncType);
    return it != g_marketOrders.end() && it->second;
}

void g_vSetSmartOrderSymbol(CString& symbol, unsigned char syncType, bool bDelete)
{
    if (symbol.IsEmpty()) return;
    if (bDelete) {
        if (auto* list = g_smartOrderSymbols.Find(syncType)) EraseFirst(*list, symbol);  // an emptied list stays
        return;
    }
    auto& list = g_smartOrderSymbols.Get(syncType);
    if (std::find(list.begin(), list.end(), symbol) == list.end()) list.push_back(symbol);
}

bool g_bIsHaveSmartOrderSymbol(CString& symbol, unsigned char syncType)
{
    const auto* list = g_smartOrderSymbols.Find(syncType);
    return list && std::find(list->begin(), list->end(), symbol) != list->end();
}
