#include "rows/detail/list_filter.h"

#include <cstdint>

namespace orderview {
namespace detail {

namespace {

enum class ListKind { Simple, Full };

// State "C", "U", "F", "P" or empty: an order the exchange holds or has finished with.
bool IsKnownState(const CString& state)
{
    return state.IsEmpty() || state == "C" || state == "U" || state == "F" || state == "P";
}

bool SideIs(const CBaseOrder_OrderInfo& order, std::uint32_t side)
{
    const bool plain = order.dwComplexKind == 'N' || order.dwComplexKind == '0';
    return (plain ? order.dwBS : order.dwLegBS) == side;
}

// The low-byte filters the two lists share; `kind` selects their two differences.
bool PassesLowByte(const CBaseOrder_OrderInfo& order, int mode, ListKind kind)
{
    // Unsigned 32-bit sums, as the order book keeps them (a wrapped sum compares as it wraps).
    const std::uint32_t cancelledAndDealt = order.dwCancelQty + order.dwDealQty;
    switch (mode) {
    case 1:
        if (!(order.dwOrderQty > cancelledAndDealt)) return false;
        return IsKnownState(order.csStateCode) || order.csStatusCode == "9995" ||
               (kind == ListKind::Full && order.csStatusCode == "0000");
    case 2:
        return order.dwDealQty != 0 && order.dwOrderQty == cancelledAndDealt;
    case 4:
        return order.dwDealQty != 0;
    case 5:
        return !(order.csStateCode.IsEmpty() || order.csStateCode == "U" || order.csStateCode == "F" ||
                 order.csStateCode == "P");
    case 6:
        return IsKnownState(order.csStateCode) || order.csStatusCode == "9995";
    case 7:
        return !IsKnownState(order.csStateCode);
    case 8:
        return order.dwDealQty != 0 && SideIs(order, 'B');
    case 9:
        // The compact list tests the filled state here where mode 8 tests a dealt quantity.
        if (kind == ListKind::Simple ? order.csStateCode != "F" : order.dwDealQty == 0) return false;
        return SideIs(order, 'S');
    default:
        return true;
    }
}

struct MarketGroup {
    std::uint32_t mask;
    std::uint32_t marketKind1;
    std::uint32_t marketKind2;    // 0: only the first
    std::uint32_t stockTradeKind; // 0: any
};

constexpr MarketGroup kGroups[] = {
    {0x11100, '0', '7', 0}, {0x11200, '1', '8', 0}, {0x41100, 'A', 0, 'A'}, {0x41200, 'A', 0, 'B'},
    {0x41400, 'A', 0, 'C'}, {0x41800, 'D', 0, 0},   {0x42100, 'E', 0, 0},
};

bool InMarketGroup(const CBaseOrder_OrderInfo& order, std::uint32_t mode)
{
    if ((mode & 0x4ff00u) == 0x4ff00u) return true;
    const CBaseOrder_Commodity& c = order.commodity;
    for (const MarketGroup& g : kGroups) {
        if ((mode & g.mask) != g.mask) continue;
        const bool kindMatches = c.dwMarketKind == g.marketKind1 || (g.marketKind2 && c.dwMarketKind == g.marketKind2);
        if (kindMatches && (!g.stockTradeKind || c.dwStockTradeKind == g.stockTradeKind)) return true;
    }
    return false;
}

}  // namespace

bool ShowInSimpleList(const CBaseOrder_OrderInfo& order, int listMode)
{
    const int mode = listMode & 0xFF;
    if (mode == 255) return true;
    if (order.dwOrderKind == 'U' || order.dwOrderKind == 'C') return false;
    return PassesLowByte(order, mode, ListKind::Simple);
}

bool ShowInFullList(const CBaseOrder_OrderInfo& order, int listMode)
{
    if (!InMarketGroup(order, static_cast<std::uint32_t>(listMode))) return false;
    const int mode = listMode & 0xFF;
    if (mode == 255) return true;
    if (order.dwOrderKind == 'U' || order.dwOrderKind == 'C' || order.dwOrderKind == 'P') return false;
    return PassesLowByte(order, mode, ListKind::Full);
}

}  // namespace detail
}  // namespace orderview
