#include "rows/operations.h"

#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"
#include "platform/profile_file.h"
#include "rows/detail/item_keys.h"
#include "settings/order_settings.h"

namespace {

// [Operate] FOREIGN_CHASE, read on first use and kept for the process; -1 until read.
int g_foreignChase = -1;

bool ForeignChaseEnabled()
{
    if (g_foreignChase < 0)
        g_foreignChase = static_cast<int>(
            orderview::GetPrivateProfileIntA("Operate", "FOREIGN_CHASE", 0, g_vGetOrderCfgFileName()));
    return g_foreignChase == 1;
}

bool IsOneOf(std::uint32_t code, const char* codes)
{
    for (; *codes; ++codes)
        if (code == static_cast<unsigned char>(*codes)) return true;
    return false;
}

using orderview::detail::LangText;

bool IsAllDigits(const CString& text)
{
    if (text.IsEmpty()) return false;
    for (char c : text.str())
        if (c < '0' || c > '9') return false;
    return true;
}

}  // namespace

namespace orderview {
void ResetForeignChaseSetting() { g_foreignChase = -1; }
}  // namespace orderview

std::vector<CString> g_vSetOperator(CBaseOrder_OrderInfo* order)
{
    using orderview::GetOrderOperateFlag;
    std::vector<CString> operations;
    if (!order) return operations;
    if (GetOrderOperateFlag(0)) operations.push_back(LangText("IDS_ORDER-ITEM_DELETEQTY"));

    const std::uint32_t market = order->commodity.dwMarketKind;
    const std::uint32_t kind = order->dwOrderKind;
    bool changeQty = !IsOneOf(market, "OED3") && !IsOneOf(kind, "431");
    bool changePrice = changeQty;
    if (order->dwOrderCond == 'F' || order->dwOrderCond == 'I') {
        // Fill-or-kill and immediate-or-cancel orders change quantity only while queued ("9997").
        changeQty = order->csStatusCode == "9997";
        changePrice = false;
    }
    if (order->dwProductClass == 'S' || market == '3') {
        changeQty = false;
        changePrice = true;
    }
    if (IsOneOf(market, "243")) changePrice = false;
    const bool chase = (market == '2' || market == '4') && kind != '1' && kind != '3' && ForeignChaseEnabled();

    if (changeQty && GetOrderOperateFlag(1)) operations.push_back(LangText("IDS_ORDER-ITEM_CHANGEQTY"));
    if (chase && GetOrderOperateFlag(2)) operations.push_back(LangText("IDS_ORDER-ITEM_CHASEPRICE"));
    if (changePrice && GetOrderOperateFlag(3)) operations.push_back(LangText("IDS_ORDER-ITEM_CHANGEPRICE"));
    return operations;
}

void g_vGetBeDelOrder(AccountType account, unsigned long selection, std::vector<CBaseOrder_OrderInfo>& orders)
{
    std::vector<CBaseOrder_OrderInfo> today = OrderBK_GetForeignTodayOrder(account);
    if (selection != 'C' && selection != 'Z' && selection != 'X') {
        orders = std::move(today);  // the caller takes the whole list this way
        return;
    }
    orders.clear();
    for (CBaseOrder_OrderInfo& order : today) {
        if (order.dwOrderKind == 'C' || order.dwOrderKind == 'U') continue;
        const auto remaining = static_cast<std::int32_t>(order.dwOrderQty - order.dwDealQty - order.dwCancelQty);
        if (remaining <= 0) continue;
        if (order.csStatusCode != "0000" && order.csStatusCode != "9997") continue;
        if ((selection == 'Z' && order.dwBS != 'B') || (selection == 'X' && order.dwBS != 'S')) continue;
        orders.push_back(std::move(order));
    }
}

void g_vResetDatano(CListCtrlEx* list, int, CBaseOrderItemGroup* row)
{
    if (!list || !row) return;
    const int column = row->iGetDisplayItem(orderview::detail::key::kDataCount);
    if (column < 0) return;
    CString number;
    // One index past the end is read too; it finds an empty text and is skipped.
    for (long long i = 0; i <= list->GetItemCount(); ++i) {
        const int index = static_cast<int>(i);
        if (!IsAllDigits(list->GetItemText(index, 0))) continue;
        number.Format("%lld", i + 1);
        list->SetItemText(index, column, number);
    }
}
