#include "order_data/records.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <unordered_set>

void g_vSetComId(char (&field)[32], const char* id)
{
    std::memset(field, 0, sizeof field);
    if (id) std::strncpy(field, id, sizeof field - 1);
}

namespace {

// The process-wide pool of item keys; nodes never move, so their addresses identify the keys.
std::unordered_set<CString>& KeyPool()
{
    static auto* pool = new std::unordered_set<CString>();  // outlives every row
    return *pool;
}

// Row functions set and read items by the same few key objects row after row, so the interned
// key last found for each key text's address is kept: a hit costs a compare of the text, not a
// hash lookup.
struct RecentKey {
    const char* text = nullptr;
    const CString* interned = nullptr;
};

// The interned key equal to `key`; with `add` false, null when no row has set it yet.
const CString* LookUpKey(const CString& key, bool add)
{
    static RecentKey recent[1024];
    const std::string& text = key.str();
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(text.data());
    RecentKey& entry = recent[(address * 0x9E3779B97F4A7C15ull) >> 54];
    if (entry.text == text.data() && entry.interned->str() == text) return entry.interned;
    const CString* interned = nullptr;
    if (add) {
        interned = &*KeyPool().insert(key).first;
    } else {
        const auto it = KeyPool().find(key);
        if (it == KeyPool().end()) return nullptr;
        interned = &*it;
    }
    entry = {text.data(), interned};
    return interned;
}

std::size_t HashKey(const CString* key)
{
    auto bits = reinterpret_cast<std::uintptr_t>(key);
    bits ^= bits >> 17;
    bits *= 0x9E3779B97F4A7C15ull;
    return static_cast<std::size_t>(bits ^ (bits >> 29));
}

}  // namespace

CBaseOrderItemGroup::Slot* CBaseOrderItemGroup::FindSlot(const CString* key) const
{
    if (slots_.empty()) return nullptr;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = HashKey(key) & mask;; i = (i + 1) & mask) {
        const Slot& slot = slots_[i];
        if (slot.key == key || slot.key == nullptr) return const_cast<Slot*>(&slot);
    }
}

void CBaseOrderItemGroup::Grow()
{
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? 64 : old.size() * 2, Slot());
    for (const Slot& slot : old)
        if (slot.key) *FindSlot(slot.key) = slot;
}

CBaseOrderItemGroup::Item& CBaseOrderItemGroup::Append(const CString& key, ValueKind kind, const char* extra1,
                                                       const char* extra2)
{
    if (calls_.empty()) calls_.reserve(48);  // a full list row sets about 45 items
    if (2 * (used_ + 1) > slots_.size()) Grow();
    const CString* interned = LookUpKey(key, true);
    Slot* slot = FindSlot(interned);
    if (!slot->key) {
        slot->key = interned;
        ++used_;
    }
    slot->call = calls_.size();
    calls_.emplace_back();
    Item& item = calls_.back();
    item.pKey = interned;
    item.kind = kind;
    if (extra1) item.csExtra1 = extra1;
    if (extra2) item.csExtra2 = extra2;
    return item;
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, const char* text, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Item& item = Append(key, ValueKind::Text, extra1, extra2);
    if (text) item.csText = text;
    return true;
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, double& value, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Append(key, ValueKind::Double, extra1, extra2).dbValue = value;
    return true;
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, int value, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Append(key, ValueKind::Int, extra1, extra2).iValue = value;
    return true;
}

void CBaseOrderItemGroup::vSetDisplayItems(const std::vector<CString>& keys)
{
    display_ = keys;
    displayIndex_.clear();
    for (std::size_t i = 0; i < display_.size(); ++i)
        displayIndex_.emplace(display_[i], static_cast<int>(i));  // the first column of a key wins
}

int CBaseOrderItemGroup::iGetDisplayItem(const CString& key) const
{
    const auto it = displayIndex_.find(key);
    return it == displayIndex_.end() ? -1 : it->second;
}

const CBaseOrderItemGroup::Item* CBaseOrderItemGroup::pGetItem(const CString& key) const
{
    const CString* interned = LookUpKey(key, false);
    const Slot* slot = interned ? FindSlot(interned) : nullptr;
    return slot && slot->key ? &calls_[slot->call] : nullptr;
}

void CBaseOrderItemGroup::vClear()
{
    calls_.clear();
    std::fill(slots_.begin(), slots_.end(), Slot());  // the table keeps its size for the next row
    used_ = 0;
}

// The fixed-layout records cross the module boundary as raw bytes: their sizes and field offsets
// are the same on every platform (fields are fixed-width, never `long`).
static_assert(sizeof(CAcceptComFfuture) == 40 && offsetof(CAcceptComFfuture, iDenominator) == 32 &&
                  offsetof(CAcceptComFfuture, iSubDenominator) == 36,
              "CAcceptComFfuture layout");
static_assert(sizeof(CAcceptComFoption) == 40 && offsetof(CAcceptComFoption, iDenominator) == 32 &&
                  offsetof(CAcceptComFoption, iSubDenominator) == 36,
              "CAcceptComFoption layout");
static_assert(sizeof(CAcceptComDoption) == 32, "CAcceptComDoption layout");
