#include <gtest/gtest.h>

#include <vector>

#include "support/substitute_host.h"
#include "platform/list_control.h"
#include "rows/operations.h"
#include "settings/order_settings.h"
#include "support/temp_folder.h"

namespace {

class Operations : public ::testing::Test {
protected:
    void SetUp() override
    {
        orderview::ResetForeignChaseSetting();
        SetSwitches(true, true, true, true);
        order.commodity.dwMarketKind = '0';
        order.dwOrderKind = '2';
        order.dwOrderCond = 'R';
        order.csStatusCode = "0000";
    }
    void TearDown() override
    {
        orderview::ResetForeignChaseSetting();
        SetSwitches(false, false, false, false);
    }
    void SetSwitches(bool del, bool qty, bool chase, bool price)
    {
        host.abOperator[0] = del;
        host.abOperator[1] = qty;
        host.abOperator[2] = chase;
        host.abOperator[3] = price;
        g_vInitialOrderOperate();
    }
    void ForeignChase(int value)
    {
        folder.Write("sys/OrderCfg.ini", "[Operate]\r\nFOREIGN_CHASE=" + std::to_string(value) + "\r\n");
    }
    std::vector<CString> Offered() { return g_vSetOperator(&order); }

    ovtest::TempFolder folder;
    ovtest::SubstituteHost host{folder.MainPath()};
    ovtest::InstalledHost installed{host};
    CBaseOrder_OrderInfo order;
};

const CString kDelete = "IDS_ORDER-ITEM_DELETEQTY";
const CString kQty = "IDS_ORDER-ITEM_CHANGEQTY";
const CString kChase = "IDS_ORDER-ITEM_CHASEPRICE";
const CString kPrice = "IDS_ORDER-ITEM_CHANGEPRICE";

TEST_F(Operations, OfferedByOrder)
{
    ForeignChase(1);
    struct Case {
        char market, kind, cond, productClass;
        const char* status;
        std::vector<CString> offered;
    };
    const std::vector<Case> cases = {
        {'0', '2', 'R', 0, "0000", {kDelete, kQty, kPrice}},
        {'0', '1', 'R', 0, "0000", {kDelete}},                  // market orders change nothing
        {'0', '3', 'R', 0, "0000", {kDelete}},
        {'E', '2', 'R', 0, "0000", {kDelete}},
        {'0', '2', 'F', 0, "9997", {kDelete, kQty}},            // FOK queued: quantity only
        {'0', '2', 'I', 0, "0000", {kDelete}},
        {'0', '2', 'R', 'S', "0000", {kDelete, kPrice}},        // price change only
        {'3', '2', 'R', 0, "0000", {kDelete}},                  // '3': price set, then taken back
        {'2', '2', 'R', 0, "0000", {kDelete, kQty, kChase}},    // foreign futures chase, no price change
        {'4', '1', 'R', 0, "0000", {kDelete}},
    };
    for (const Case& c : cases) {
        order.commodity.dwMarketKind = static_cast<std::uint32_t>(c.market);
        order.dwOrderKind = static_cast<std::uint32_t>(c.kind);
        order.dwOrderCond = static_cast<std::uint32_t>(c.cond);
        order.dwProductClass = static_cast<std::uint32_t>(c.productClass);
        order.csStatusCode = c.status;
        EXPECT_EQ(Offered(), c.offered) << c.market << c.kind << c.cond << c.productClass;
    }
}

TEST_F(Operations, SwitchesAndTheChaseSettingGate)
{
    order.commodity.dwMarketKind = '2';
    SetSwitches(false, false, false, false);
    EXPECT_TRUE(Offered().empty());
    SetSwitches(false, true, true, true);
    EXPECT_EQ(Offered(), (std::vector<CString>{kQty}));  // FOREIGN_CHASE absent: 0
    ForeignChase(1);
    EXPECT_EQ(Offered(), (std::vector<CString>{kQty}));  // read once per process: still 0
    orderview::ResetForeignChaseSetting();
    EXPECT_EQ(Offered(), (std::vector<CString>{kQty, kChase}));
    EXPECT_TRUE(g_vSetOperator(nullptr).empty());
}

TEST_F(Operations, DeletableOrders)
{
    auto make = [](char bs, char kind, std::uint32_t qty, std::uint32_t dealt, const char* status) {
        CBaseOrder_OrderInfo o;
        o.dwBS = static_cast<std::uint32_t>(bs);
        o.dwOrderKind = static_cast<std::uint32_t>(kind);
        o.dwOrderQty = qty;
        o.dwDealQty = dealt;
        o.csStatusCode = status;
        o.csOrderNo = CString(bs) + CString(kind) + status;
        return o;
    };
    host.vecTodayOrders = {make('B', '2', 5, 0, "0000"), make('S', '2', 5, 1, "9997"),
                           make('B', 'C', 5, 0, "0000"), make('S', '2', 5, 5, "0000"),
                           make('B', '2', 5, 6, "0000"), make('B', '2', 5, 0, "C010")};
    auto numbers = [&](unsigned long code) {
        std::vector<CBaseOrder_OrderInfo> out{make('X', 'X', 1, 0, "stale")};
        g_vGetBeDelOrder(AccountType(), code, out);
        std::vector<std::string> n;
        for (const auto& o : out) n.push_back(o.csOrderNo.str());
        return n;
    };
    EXPECT_EQ(numbers('C'), (std::vector<std::string>{"B20000", "S29997"}));
    EXPECT_EQ(numbers('Z'), (std::vector<std::string>{"B20000"}));
    EXPECT_EQ(numbers('X'), (std::vector<std::string>{"S29997"}));
    EXPECT_EQ(numbers('?').size(), 6u);  // any other code: the whole day, unfiltered
    host.vecTodayOrders = {make('B', '2', 5, 0, "0000")};
    EXPECT_TRUE(numbers('X').empty());
}

TEST_F(Operations, RowNumbers)
{
    orderview::MemoryListCtrl list;
    list.InsertColumn("first");
    list.InsertColumn("no");
    for (const char* first : {"17", "Group", "", "0042", "3a"}) list.InsertItem({first, "old"});
    CBaseOrderItemGroup row;
    g_vResetDatano(&list, 0, &row);  // no row-number column: nothing happens
    EXPECT_EQ(list.GetItemText(0, 1), "old");
    row.vSetDisplayItems({"IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_DATACOUNT"});
    g_vResetDatano(&list, 0, &row);
    const char* expected[] = {"1", "old", "old", "4", "old"};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(list.GetItemText(i, 1), expected[i]) << i;
    g_vResetDatano(nullptr, 0, &row);
    g_vResetDatano(&list, 0, nullptr);
}

TEST(MemoryListCtrl, CellsOutsideTheTableAreEmpty)
{
    orderview::MemoryListCtrl list;
    EXPECT_EQ(list.InsertItem({"no columns"}), 0);
    EXPECT_EQ(list.GetItemText(0, 0), "");
    EXPECT_EQ(list.InsertColumn("A", CListCtrl::kFormatRight, 80), 0);
    EXPECT_EQ(list.GetItemText(0, 0), "");  // the new column is empty in existing rows
    EXPECT_TRUE(list.SetItemText(0, 0, "x"));
    EXPECT_FALSE(list.SetItemText(1, 0, "x"));
    EXPECT_FALSE(list.SetItemText(0, -1, "x"));
    EXPECT_EQ(list.GetColumnFormat(0), CListCtrl::kFormatRight);
    EXPECT_EQ(list.GetColumnWidth(5), 0);
    EXPECT_EQ(list.GetColumnText(-1), "");
    EXPECT_FALSE(list.GetItemSelected(0));
    EXPECT_TRUE(list.SetItemSelected(0, true));
    EXPECT_TRUE(list.GetItemSelected(0));
    EXPECT_FALSE(list.SetItemSelected(3, true));
}

}  // namespace
