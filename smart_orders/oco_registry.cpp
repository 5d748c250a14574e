#include "smart_orders/oco_registry.h"

#include <deque>
#include <set>

#include "smart_orders/detail/list_registry.h"
#include "smart_orders/detail/registry_reset.h"

using orderview::detail::EraseFirst;
using orderview::detail::ListRegistry;

namespace {

struct OcoRegistries {
    ListRegistry<std::uint8_t, CString> snBySync;
    std::map<CString, std::vector<STRUCT_FLASH_OCO_DATA>> legsBySN;
    std::map<CString, CString> snByOrderSN;
    ListRegistry<CString, CString, std::deque<CString>> reuse;
};

OcoRegistries g_oco;  // created at load, destroyed at unload

}  // namespace

namespace orderview {
namespace detail {
void ResetOcoRegistries() { g_oco = OcoRegistries(); }
}  // namespace detail
}  // namespace orderview

void g_vSetOCOInfoBySN(CString& ocoSN, std::vector<STRUCT_FLASH_OCO_DATA> legs, unsigned char& syncType)
{
    auto it = g_oco.legsBySN.find(ocoSN);
    if (it == g_oco.legsBySN.end()) {
        g_oco.snBySync.Get(syncType).push_back(ocoSN);
        it = g_oco.legsBySN.emplace(ocoSN, std::vector<STRUCT_FLASH_OCO_DATA>()).first;
    }
    it->second = std::move(legs);
}

std::vector<STRUCT_FLASH_OCO_DATA> g_vecGetOCOInfoBySN(CString& ocoSN)
{
    const auto it = g_oco.legsBySN.find(ocoSN);
    return it == g_oco.legsBySN.end() ? std::vector<STRUCT_FLASH_OCO_DATA>() : it->second;
}

std::vector<CString> g_vecGetOCOSNBySync(unsigned char& syncType) { return g_oco.snBySync.Copy(syncType); }

bool g_bGetHaveOCOOrder(unsigned char& syncType) { return g_oco.snBySync.HasItems(syncType); }

int g_iGetOCOInfoSize(unsigned char& syncType)
{
    const auto* list = g_oco.snBySync.Find(syncType);
    if (!list) return 0;
    int count = 0;
    for (const CString& sn : *list)
        if (g_oco.legsBySN.count(sn)) ++count;
    return count;
}

void g_vSetOCOOrder(CString ocoSN, unsigned char& syncType, bool bDelete, bool bClear)
{
    if (bClear) {
        g_oco.snBySync.Erase(syncType);  // clearing wins over bDelete
    } else if (!bDelete) {
        g_oco.snBySync.Get(syncType).push_back(ocoSN);  // no duplicate check
    } else if (auto* list = g_oco.snBySync.Find(syncType)) {
        EraseFirst(*list, ocoSN);  // an emptied list stays; the legs are not touched
    }
}

// When the legs registry has run empty, the caller gets nothing back and the sync type goes.
static bool DropSyncIfNoLegsLeft(unsigned char syncType, std::vector<CString>& removed)
{
    if (!g_oco.legsBySN.empty()) return false;
    removed.clear();
    g_oco.snBySync.Erase(syncType);
    return true;
}

void g_vDelOCOInfoBySN(CString ocoSN, unsigned char& syncType, std::vector<CString>& removed, CString mark, bool bAll)
{
    std::vector<CString>* list = g_oco.snBySync.Find(syncType);
    if (!list) return;
    if (bAll) {
        // Bulk: every group whose first leg carries the mark; `removed` is appended to.
        for (const CString& sn : *list) {
            const auto legs = g_oco.legsBySN.find(sn);
            if (legs == g_oco.legsBySN.end() || legs->second.empty() || legs->second.front().strMark != mark) continue;
            g_oco.legsBySN.erase(legs);
            removed.push_back(sn);
        }
        if (DropSyncIfNoLegsLeft(syncType, removed)) return;
        const std::set<CString> gone(removed.begin(), removed.end());
        std::vector<CString> kept;
        kept.reserve(list->size());
        for (const CString& sn : *list)
            if (!gone.count(sn)) kept.push_back(sn);
        list->swap(kept);
        return;
    }
    EraseFirst(*list, ocoSN);
    g_oco.legsBySN.erase(ocoSN);
    if (DropSyncIfNoLegsLeft(syncType, removed)) return;
    // Kept as the screens rely on it: the list becomes one copy of the OCO SN for each entry of
    // `removed` that differs from it (so an empty `removed` leaves the list empty).
    std::vector<CString> rebuilt;
    for (const CString& sn : removed)
        if (sn != ocoSN) rebuilt.push_back(ocoSN);
    list->swap(rebuilt);
}

void g_vGetOCOSNbyPrice(CString& price, CString symbol, CString& ocoSN, bool& flag, CString mark)
{
    for (const auto& entry : g_oco.legsBySN) {
        for (const STRUCT_FLASH_OCO_DATA& leg : entry.second) {
            if (leg.strPrice != price || leg.strSymbol != symbol) continue;
            if (!mark.IsEmpty() && leg.strMark != mark) continue;
            ocoSN = entry.first;
            flag = leg.byFlag != 0;
            return;
        }
    }
}

void g_vSetOCOSNtoOrderSN(CString& orderSN, CString second, unsigned char& syncType, bool bDelete)
{
    const auto linked = g_oco.snByOrderSN.find(orderSN);
    if (linked == g_oco.snByOrderSN.end()) {
        if (!bDelete) g_oco.snByOrderSN[orderSN] = second;  // `second` is the OCO SN here
        return;
    }
    const CString ocoSN = linked->second;
    if (!bDelete) {
        // Re-key: `second` is the order's new serial number for the same group.
        g_oco.snByOrderSN[second] = ocoSN;
        g_oco.snByOrderSN.erase(orderSN);
        return;
    }
    std::vector<CString> removed;
    g_vDelOCOInfoBySN(ocoSN, syncType, removed, CString(), false);
    g_oco.snByOrderSN.erase(orderSN);
}

CString g_cszGetOCOSNbyOrderSN(CString& orderSN)
{
    const auto it = g_oco.snByOrderSN.find(orderSN);
    return it == g_oco.snByOrderSN.end() ? CString() : it->second;
}

std::vector<CString> g_cszGetOrderSNbyOCOSN(CString& ocoSN)
{
    std::vector<CString> orderSNs;
    for (const auto& link : g_oco.snByOrderSN)
        if (link.second == ocoSN) orderSNs.push_back(link.first);
    return orderSNs;
}

void g_vSetReuseOCOSN(CString& key, CString ocoSN, bool bPop, bool bClear)
{
    if (bPop) {
        if (auto* queue = g_oco.reuse.Find(key)) {
            if (!queue->empty()) queue->pop_front();
            if (queue->empty()) g_oco.reuse.Erase(key);
        }
    } else if (!bClear) {
        g_oco.reuse.Get(key).push_back(ocoSN);
        return;
    }
    if (bClear) g_oco.reuse.Erase(key);
}

int g_iGetReuseOCOSN(CString& key, CString& ocoSN)
{
    const auto* queue = g_oco.reuse.Find(key);
    if (!queue) return 0;
    if (!queue->empty()) ocoSN = queue->front();
    return static_cast<int>(queue->size());
}
