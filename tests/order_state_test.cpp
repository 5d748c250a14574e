#include <gtest/gtest.h>

#include "format/order_state.h"
#include "support/substitute_host.h"

namespace {

class OrderState : public ovtest::HostTest {
protected:
    OrderState()
    {
        order.commodity.dwMarketKind = '0';
        order.dwOrderKind = '1';
        order.dwLastAction = 'N';
        order.csStatusCode = "0000";
        order.dwOrderQty = 10;
    }
    CString State() { return g_cszDisplayOrderState(&order, 0); }
    CBaseOrder_OrderInfo order;
};

TEST_F(OrderState, ExchangeStateComesFirst)
{
    struct Case { const char* state; std::uint32_t qty, dealt, cancelled, chase; const char* text; };
    const Case cases[] = {
        {"C", 10, 0, 10, 0, "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS"},
        {"C", 10, 0, 0, 1, "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS(IDS_ORDER-ITEM_CHASEPRICE)"},
        {"C", 10, 4, 6, 0, "IDS_ORDER-ITEM_STATUS_PARTDEALANDCANCEL"},
        {"F", 10, 4, 0, 0, "IDS_ORDER-ITEM_STATUS_PARTDEAL"},
        {"F", 10, 10, 0, 0, "IDS_ORDER-ITEM_STATUS_COMPLETEDEAL"},
        {"F", 10, 4, 6, 0, "IDS_ORDER-ITEM_STATUS_PARTDEALANDCANCEL"},
        {"U", 10, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS"},
        {"U", 10, 0, 0, 1, "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS"},  // never chased
        {"P", 10, 4, 0, 0, "IDS_ORDER-ITEM_STATUS_CHANGEPRICESUCCESS"},
        {"P", 10, 10, 0, 0, "IDS_ORDER-ITEM_STATUS_COMPLETEDEAL"},
        {"Q", 10, 0, 0, 0, "Q"},
    };
    for (const auto& c : cases) {
        order.csStateCode = c.state;
        order.dwOrderQty = c.qty;
        order.dwDealQty = c.dealt;
        order.dwCancelQty = c.cancelled;
        order.byChasePrice = static_cast<std::uint8_t>(c.chase);
        order.byStateShown = 7;
        EXPECT_EQ(State(), c.text) << c.state << " " << c.dealt << "/" << c.cancelled;
        EXPECT_EQ(order.byStateShown, 7);  // untouched on this path
    }
}

TEST_F(OrderState, TheGatingActionDependsOnTheMarket)
{
    order.csStateCode = "F";
    order.dwDealQty = 10;
    order.dwLastAction = 'U';
    order.commodity.dwMarketKind = 'E';  // stock: the last action gates, so the state is skipped
    EXPECT_EQ(State(), "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS[0000]");
    order.commodity.dwMarketKind = '0';  // futures: the kind gates
    EXPECT_EQ(State(), "IDS_ORDER-ITEM_STATUS_COMPLETEDEAL");
}

TEST_F(OrderState, QuantityPath)
{
    struct Case { const char* status; std::uint32_t dealt, cancelled, lock, cond, chase; const char* text; int shown; };
    const Case cases[] = {
        {"0000", 0, 4, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS", 0},
        {"0000", 0, 10, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS", 0},
        {"0000", 0, 10, 0, 0, 1, "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS(IDS_ORDER-ITEM_CHASEPRICE)", 0},
        {"0000", 0, 0, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_ORDERSUCCESS", 1},
        {"0000", 0, 0, 'Y', '6', 0, "IDS_ORDER-ITEM_STATUS_ETSCLOSE", 0},
        {"0000", 0, 0, 'Y', 'R', 0, "IDS_ORDER-ITEM_STATUS_CLOSE", 0},
        {"9997", 0, 0, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_BOOKORDER", 1},
        {"0000", 3, 0, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_PARTDEAL", 0},
        {"E019", 3, 7, 0, 0, 0, "IDS_ORDER-ITEM_STATUS_COMPLETEDEAL", 0},  // something dealt: any status
    };
    for (const auto& c : cases) {
        order.csStatusCode = c.status;
        order.dwDealQty = c.dealt;
        order.dwCancelQty = c.cancelled;
        order.dwChangeLock = c.lock;
        order.dwOrderCond = c.cond;
        order.byChasePrice = static_cast<std::uint8_t>(c.chase);
        order.byStateShown = 0;
        EXPECT_EQ(State(), c.text) << c.status << " " << c.dealt << "/" << c.cancelled;
        EXPECT_EQ(order.byStateShown, c.shown) << c.text;
    }
}

TEST_F(OrderState, MessagePath)
{
    order.csStatusCode = "E123";
    order.csStatusMsg = "  price out of band ";
    order.byStateShown = 0;
    EXPECT_EQ(State(), "  price out of band [E123]");
    EXPECT_EQ(order.byStateShown, 1);
    order.dwOrderKind = 'C';
    order.csStateCode = "X";
    order.dwLastAction = 'C';  // a change action skips step 1 even with a state code
    order.byStateShown = 0;
    EXPECT_EQ(State(), "X[E123]");
    EXPECT_EQ(order.byStateShown, 0);
}

TEST_F(OrderState, GatewayCodePath)
{
    order.dwOrderKind = 'X';  // kind outside '1'..'8' skips the quantity path
    struct Case { const char* status; unsigned long kind, last; std::uint8_t chase; const char* text; int shown; };
    const Case cases[] = {
        {"9997", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_WAITING[9997]", 1},
        {"9997", 'X', 'N', 1, "IDS_ORDER-ITEM_STATUS_WAITING(IDS_ORDER-ITEM_CHASEPRICE)[9997]", 1},
        {"9998", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_WAITINGORDER[9998]", 1},
        {"9999", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_WAITINGORDER[9999]", 1},
        {"0123", 'X', 'N', 0, "[0123]", 1},
        {"E019", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_PRICEERROR[E019]", 1},
        {"C010", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_ATTEND[C010]", 1},
        {"Etsi", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_PEICEOUTSIDERANGE[Etsi]", 1},
        {"etsi", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_NOSUCHERRORNO[etsi]", 1},
        {"Eers", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_MARKETPEICEOUTSIDERANGE[Eers]", 1},
        {"A005", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_NOTENOUGHIAMT[A005]", 1},
        {"", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_NOSUCHERRORNO[]", 1},
        {"0000", 'X', 'N', 0, "IDS_ORDER-ITEM_STATUS_ORDERSUCCESS[0000]", 1},
        {"0000", 'U', 'N', 0, "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS[0000]", 0},
        {"0000", 'X', 'C', 0, "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS[0000]", 0},
        {"0000", 'P', 'N', 0, "IDS_ORDER-ITEM_STATUS_CHANGEPRICESUCCESS[0000]", 0},
        {"99999999999999999999", 'X', 'N', 0, "[99999999999999999999]", 1},
    };
    for (const auto& c : cases) {
        order.csStatusCode = c.status;
        order.dwOrderKind = static_cast<std::uint32_t>(c.kind);
        order.dwLastAction = static_cast<std::uint32_t>(c.last);
        order.byChasePrice = c.chase;
        order.byStateShown = 5;
        EXPECT_EQ(State(), c.text) << c.status;
        EXPECT_EQ(order.byStateShown, c.shown) << c.status;
    }
}

TEST_F(OrderState, StockKindComesFromThePriceType)
{
    order.commodity.dwMarketKind = 'A';
    order.dwOrderKind = 'X';
    order.dwOrderType = '2';
    EXPECT_EQ(State(), "IDS_ORDER-ITEM_STATUS_ORDERSUCCESS");
    EXPECT_EQ(g_cszDisplayOrderState(nullptr, 0), "");
}

}  // namespace
