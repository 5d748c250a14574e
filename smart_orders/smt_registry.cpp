#include "smart_orders/smt_registry.h"

#include <algorithm>
#include <map>

#include "smart_orders/detail/list_registry.h"
#include "smart_orders/detail/registry_reset.h"

using orderview::detail::ListRegistry;

namespace {

struct SmtRegistries {
    ListRegistry<CString, STRUCT_FLASH_SMT_INFO> infoByDealNo;
    ListRegistry<std::uint8_t, STRUCT_FLASH_SMT_SYNC> pricesBySync;
    std::map<CString, std::uint8_t> seenDeals;
    std::map<CString, std::uint8_t> seenOrders;
};

SmtRegistries g_smt;  // created at load, destroyed at unload

CString CompositeKey(const STRUCT_FLASH_SMT_SYNC& entry)
{
    CString key;
    key.Format("%s_%s", entry.strKey1.GetString(), entry.strKey2.GetString());
    return key;
}

bool TestAndRegister(std::map<CString, std::uint8_t>& seen, const CString& key, std::uint8_t value, bool reset)
{
    if (reset) seen.clear();
    if (key.IsEmpty()) return false;
    const auto found = seen.emplace(key, value);
    return !found.second && found.first->second == value;
}

}  // namespace

namespace orderview {
namespace detail {
void ResetSmtRegistries() { g_smt = SmtRegistries(); }
}  // namespace detail
}  // namespace orderview

void g_vSetSMTInfoByDealNo(CString& dealNo, STRUCT_FLASH_SMT_INFO& info, bool bDelete)
{
    if (bDelete)
        g_smt.infoByDealNo.Erase(dealNo);
    else
        g_smt.infoByDealNo.Get(dealNo).push_back(info);
}

std::vector<STRUCT_FLASH_SMT_INFO> g_vecGetSMTInfoByDealNo(CString& dealNo) { return g_smt.infoByDealNo.Copy(dealNo); }

bool g_bGetHaveSMTOrder(unsigned char& syncType) { return g_smt.pricesBySync.HasItems(syncType); }

std::vector<STRUCT_FLASH_SMT_SYNC> g_vecGetSMTDataBySyncType(unsigned char& syncType)
{
    return g_smt.pricesBySync.Copy(syncType);
}

void g_vSetSMTPriceBySyncType(unsigned char& syncType, CString key, CString price, bool bDelete, bool bRemoveKey)
{
    std::vector<STRUCT_FLASH_SMT_SYNC>* list = g_smt.pricesBySync.Find(syncType);
    if (bRemoveKey) {
        if (!list) return;
        if (key.IsEmpty()) {
            g_smt.pricesBySync.Erase(syncType);
            return;
        }
        // Matches the second key part alone, not the composite key.
        list->erase(std::remove_if(list->begin(), list->end(),
                                   [&](const STRUCT_FLASH_SMT_SYNC& e) { return e.strKey2 == key; }),
                    list->end());
        return;
    }
    if (bDelete) {
        if (!list) return;
        if (!key.IsEmpty()) {
            const auto it = std::find_if(list->begin(), list->end(),
                                         [&](const STRUCT_FLASH_SMT_SYNC& e) { return CompositeKey(e) == key; });
            if (it != list->end()) list->erase(it);
        } else if (!price.IsEmpty()) {
            g_smt.seenOrders.erase(price);
            for (STRUCT_FLASH_SMT_SYNC& entry : *list)  // entries stay, even emptied
                entry.vecPrice.erase(std::remove(entry.vecPrice.begin(), entry.vecPrice.end(), price),
                                     entry.vecPrice.end());
        }
        return;
    }
    if (list) {
        for (STRUCT_FLASH_SMT_SYNC& entry : *list) {
            if (CompositeKey(entry) == key) {
                entry.vecPrice.push_back(price);
                return;
            }
        }
    }
    STRUCT_FLASH_SMT_SYNC entry;
    const int first = key.Find('_');
    const int last = key.ReverseFind('_');
    entry.strKey1 = first >= 0 ? key.Left(first) : CString();
    entry.strKey2 = last >= 0 ? key.Mid(last + 1) : key;
    entry.vecPrice.push_back(price);
    g_smt.pricesBySync.Get(syncType).push_back(std::move(entry));
}

bool g_bGetSMTDealInfo(CString dealNo, unsigned char value, bool bReset)
{
    return TestAndRegister(g_smt.seenDeals, dealNo, value, bReset);
}

bool g_bGetSMTOrderInfo(CString orderKey, unsigned char value, bool bReset)
{
    return TestAndRegister(g_smt.seenOrders, orderKey, value, bReset);
}
