#include "settings/account_selection.h"

#include "order_data/host_api.h"

bool g_bIsAllAccountByTradeType(AccountType& account)
{
    return account.csAccount == BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-COMMON_ALL_ACCOUNT");
}

int g_iGetSelectAccount(std::vector<AccountType> accounts, unsigned char tradeType)
{
    AccountType active;
    OrderBK_bGetActiveAccount(active, tradeType);
    if (active.csAccount.IsEmpty()) return 0;
    for (size_t i = 0; i < accounts.size(); ++i) {
        const AccountType& a = accounts[i];
        if (a.csAccount == active.csAccount && a.csField24 == active.csField24 && a.dwTradeType == active.dwTradeType)
            return static_cast<int>(i);
    }
    return 0;  // also the first entry: the ambiguity is the screens' convention
}

bool g_bSetActiveAccountData(CComboBox* combo, std::vector<AccountType> accounts, AccountType& active)
{
    if (accounts.empty() || !combo) return false;
    const long index = combo->GetItemData(combo->GetCurSel());
    // The item data is checked against the list, so a stale index never reads past it.
    if (index < 0 || static_cast<size_t>(index) >= accounts.size()) return false;
    const AccountType& chosen = accounts[static_cast<size_t>(index)];
    if (chosen.csAccount.IsEmpty()) return false;
    active.csAccount = chosen.csAccount;
    active.csField0 = chosen.csField0;
    active.dwTradeType = chosen.dwTradeType;
    active.csField28 = chosen.csField28;
    active.csField20 = chosen.csField20;
    active.csField24 = chosen.csField24;
    active.csField8 = chosen.csField8;
    active.dwField37 = chosen.dwField37;
    return true;
}

AccountType g_strGetOrderAccount(AccountType& current, std::vector<AccountType>& accounts, CString accountText)
{
    if (!g_bIsAllAccountByTradeType(current)) return current;
    for (const AccountType& a : accounts)
        if (a.dwTradeType == current.dwTradeType && a.csAccount == accountText) return a;
    return AccountType();
}

void g_vSetODOIAccount(AccountType& account, CBaseOrder_OrderInfo& order)
{
    switch (account.dwTradeType) {
    case '0': case '1': case '2': case '4':
        order.csAccount = account.csAccount;
        order.csField8 = account.csField8;
        order.dwTradeType = account.dwTradeType;
        order.csField12 = account.csField20;
        break;
    case 'A':
        order.csAccount = account.csAccount;
        order.csField4 = account.csField24;
        order.csField8 = account.csField8;
        order.dwTradeType = account.dwTradeType;
        order.csField12 = account.csField28;
        break;
    default:
        break;
    }
}
