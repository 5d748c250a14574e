#include "smart_orders/move_smt_registry.h"

#include <algorithm>

#include "smart_orders/detail/list_registry.h"
#include "smart_orders/detail/registry_reset.h"

using orderview::detail::ListRegistry;

namespace {

ListRegistry<std::uint8_t, STRUCT_FLASH_MOVESMT_SYNC> g_moveSmt;  // created at load, destroyed at unload

bool SamePriceAndMark(const STRUCT_FLASH_MOVESMT_SYNC& entry, const CString& price, const CString& mark)
{
    return entry.strPrice == price && entry.Data.strMoveMark == mark;
}

}  // namespace

namespace orderview {
namespace detail {
void ResetMoveSmtRegistry() { g_moveSmt.Clear(); }
}  // namespace detail
}  // namespace orderview

void g_vSetMoveSMTInfoByPrice(CString& price, STRUCT_FLASH_MOVESMT_DATA data, unsigned char syncType)
{
    STRUCT_FLASH_MOVESMT_SYNC entry;
    entry.strDealNo = data.OrderInfo.strDealNo;
    entry.strPrice = price;
    entry.Data = std::move(data);
    g_moveSmt.Get(syncType).push_back(std::move(entry));
}

std::vector<STRUCT_FLASH_MOVESMT_DATA> g_vecGetMoveSMTInfoByPrice(CString& price, CString& mark,
                                                                 unsigned char& syncType)
{
    std::vector<STRUCT_FLASH_MOVESMT_DATA> found;
    if (const auto* list = g_moveSmt.Find(syncType))
        for (const auto& entry : *list)
            if (SamePriceAndMark(entry, price, mark)) found.push_back(entry.Data);
    return found;
}

bool g_bGetMoveSMTInfoByDealNO(CString& dealNo, unsigned char& syncType, STRUCT_FLASH_MOVESMT_SYNC& entry)
{
    if (const auto* list = g_moveSmt.Find(syncType)) {
        for (const auto& candidate : *list) {
            if (candidate.strDealNo == dealNo) {
                entry = candidate;
                return true;
            }
        }
    }
    return false;
}

std::vector<CString> g_vecGetMoveSMTDealNOBySyncType(unsigned char& syncType)
{
    std::vector<CString> dealNos;
    if (const auto* list = g_moveSmt.Find(syncType)) {
        dealNos.reserve(list->size());
        for (const auto& entry : *list) dealNos.push_back(entry.strDealNo);
    }
    return dealNos;
}

bool g_bGetHaveMoveSMTOrder(unsigned char& syncType) { return g_moveSmt.HasItems(syncType); }

void g_vDelMoveSMTInfoByDealNO(CString dealNo, unsigned char& syncType, bool bAll)
{
    auto* list = g_moveSmt.Find(syncType);
    if (!list) return;
    if (bAll) {
        g_moveSmt.Erase(syncType);
        return;
    }
    // Only the first entry with the deal number goes.
    const auto it = std::find_if(list->begin(), list->end(),
                                 [&](const STRUCT_FLASH_MOVESMT_SYNC& e) { return e.strDealNo == dealNo; });
    if (it != list->end()) list->erase(it);
}

void g_vDelMoveSMTInfoByPrice(CString price, CString mark, unsigned char& syncType, bool bAll)
{
    auto* list = g_moveSmt.Find(syncType);
    if (!list) return;
    if (bAll) {
        g_moveSmt.Erase(syncType);
        return;
    }
    // Every entry with the price and mark goes.
    list->erase(std::remove_if(list->begin(), list->end(),
                               [&](const STRUCT_FLASH_MOVESMT_SYNC& e) { return SamePriceAndMark(e, price, mark); }),
                list->end());
}
