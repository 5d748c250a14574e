// Account selection: the all-accounts entry, the active account's place in a list, the account
// chosen in a drop-down list, and stamping an account into an order record.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "platform/platform.h"
#include "order_data/records.h"

// True when the account is the all-accounts entry (its text is "IDS_ORDER-COMMON_ALL_ACCOUNT"'s).
ORDERVIEW_API bool g_bIsAllAccountByTradeType(AccountType& account);
// The index of the active account of the trade type in the list; 0 when none or not found.
ORDERVIEW_API int g_iGetSelectAccount(std::vector<AccountType> accounts, unsigned char tradeType);
// Copies the account chosen in the combo box (its item data is the list index) into `active`.
ORDERVIEW_API bool g_bSetActiveAccountData(CComboBox* combo, std::vector<AccountType> accounts, AccountType& active);
// The account to place an order with: `current`, or for the all-accounts entry the account of
// the same trade type with the given text (a default account when there is none).
ORDERVIEW_API AccountType g_strGetOrderAccount(AccountType& current, std::vector<AccountType>& accounts,
                                               CString accountText);
// Stamps the account into the order record by its trade type.
ORDERVIEW_API void g_vSetODOIAccount(AccountType& account, CBaseOrder_OrderInfo& order);
