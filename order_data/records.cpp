#include "order_data/records.h"

#include <cstring>

void g_vSetComId(char (&field)[32], const char* id)
{
    std::memset(field, 0, sizeof field);
    if (id) std::strncpy(field, id, sizeof field - 1);
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, const char* text, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Item& item = items_[key];
    item = Item();
    item.kind = ValueKind::Text;
    item.csText = text;
    item.csExtra1 = extra1;
    item.csExtra2 = extra2;
    return true;
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, double& value, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Item& item = items_[key];
    item = Item();
    item.kind = ValueKind::Double;
    item.dbValue = value;
    item.csExtra1 = extra1;
    item.csExtra2 = extra2;
    return true;
}

bool CBaseOrderItemGroup::bSetItemValue(const CString& key, int value, const char* extra1,
                                        const char* extra2)
{
    if (key.IsEmpty()) return false;
    Item& item = items_[key];
    item = Item();
    item.kind = ValueKind::Int;
    item.iValue = value;
    item.csExtra1 = extra1;
    item.csExtra2 = extra2;
    return true;
}

int CBaseOrderItemGroup::iGetDisplayItem(const CString& key) const
{
    for (size_t i = 0; i < display_.size(); ++i)
        if (display_[i] == key) return static_cast<int>(i);
    return -1;
}

const CBaseOrderItemGroup::Item* CBaseOrderItemGroup::pGetItem(const CString& key) const
{
    const auto it = items_.find(key);
    return it == items_.end() ? nullptr : &it->second;
}
