#include <gtest/gtest.h>

#include "support/substitute_host.h"
#include "settings/account_selection.h"

namespace {

AccountType Account(const char* text, std::uint32_t tradeType, const char* field24 = "")
{
    AccountType a;
    a.csAccount = text;
    a.dwTradeType = tradeType;
    a.csField24 = field24;
    a.csField0 = CString("f0-") + text;
    a.csField8 = CString("f8-") + text;
    a.csField20 = CString("f20-") + text;
    a.csField28 = CString("f28-") + text;
    a.dwField37 = 37;
    return a;
}

class AccountSelection : public ovtest::HostTest {
protected:
    std::vector<AccountType> accounts = {Account("F1", '0'), Account("F2", '0', "x"), Account("S1", 'A', "y")};
};

TEST_F(AccountSelection, AllAccountsEntry)
{
    AccountType all = Account("IDS_ORDER-COMMON_ALL_ACCOUNT", '0');
    EXPECT_TRUE(g_bIsAllAccountByTradeType(all));
    AccountType one = Account("F1", '0');
    EXPECT_FALSE(g_bIsAllAccountByTradeType(one));
    EXPECT_EQ(g_strGetOrderAccount(one, accounts, "F2").csAccount, "F1");
    EXPECT_EQ(g_strGetOrderAccount(all, accounts, "F2").csAccount, "F2");
    EXPECT_EQ(g_strGetOrderAccount(all, accounts, "S1").csAccount, "");  // other trade type
    EXPECT_EQ(g_strGetOrderAccount(all, accounts, "none").csField0, "");
}

TEST_F(AccountSelection, ActiveAccountIndex)
{
    EXPECT_EQ(g_iGetSelectAccount(accounts, '0'), 0);  // none active
    host.mapActiveAccounts['0'] = Account("F2", '0', "x");
    EXPECT_EQ(g_iGetSelectAccount(accounts, '0'), 1);
    host.mapActiveAccounts['0'] = Account("F2", '0', "other");
    EXPECT_EQ(g_iGetSelectAccount(accounts, '0'), 0);  // field24 differs: no match
    host.mapActiveAccounts['A'] = Account("S1", 'A', "y");
    EXPECT_EQ(g_iGetSelectAccount(accounts, 'A'), 2);
    EXPECT_EQ(g_iGetSelectAccount({}, 'A'), 0);
}

TEST_F(AccountSelection, ComboSelection)
{
    CComboBox combo;
    for (int i = 0; i < 3; ++i) combo.SetItemData(combo.AddString(accounts[static_cast<size_t>(i)].csAccount), 2 - i);
    AccountType active;
    active.csField28 = "stays?";
    EXPECT_FALSE(g_bSetActiveAccountData(&combo, accounts, active));  // no selection
    combo.SetCurSel(0);  // item data 2: S1
    ASSERT_TRUE(g_bSetActiveAccountData(&combo, accounts, active));
    EXPECT_EQ(active.csAccount, "S1");
    EXPECT_EQ(active.csField28, "f28-S1");
    EXPECT_EQ(active.dwTradeType, static_cast<std::uint32_t>('A'));
    EXPECT_EQ(active.dwField37, 37u);
    combo.SetItemData(1, 99);  // a stale index past the list
    combo.SetCurSel(1);
    EXPECT_FALSE(g_bSetActiveAccountData(&combo, accounts, active));
    combo.SetItemData(1, -5);
    EXPECT_FALSE(g_bSetActiveAccountData(&combo, accounts, active));
    EXPECT_FALSE(g_bSetActiveAccountData(&combo, {}, active));
    EXPECT_FALSE(g_bSetActiveAccountData(nullptr, accounts, active));
    std::vector<AccountType> blank = {AccountType()};
    combo.SetItemData(1, 0);
    EXPECT_FALSE(g_bSetActiveAccountData(&combo, blank, active));
}

TEST_F(AccountSelection, StampsOrdersByTradeType)
{
    struct Case { std::uint32_t type; const char* f4; const char* f12; bool stamped; };
    const Case cases[] = {{'0', "", "f20-X", true}, {'4', "", "f20-X", true}, {'A', "y", "f28-X", true},
                          {'3', "", "", false}};
    for (const auto& c : cases) {
        AccountType a = Account("X", c.type, "y");
        CBaseOrder_OrderInfo order;
        g_vSetODOIAccount(a, order);
        EXPECT_EQ(order.csAccount, c.stamped ? "X" : "");
        EXPECT_EQ(order.csField4, c.f4);
        EXPECT_EQ(order.csField12, c.f12);
        EXPECT_EQ(order.csField8, c.stamped ? "f8-X" : "");
        EXPECT_EQ(order.dwTradeType, c.stamped ? c.type : 0u);
    }
}

}  // namespace
