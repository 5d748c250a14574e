// The state column of the order list: one text for where an order stands, from its exchange
// state, quantities, gateway message and gateway status code, tested in a fixed order.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// Also writes the order's byStateShown flag: 1 when the text came from the order-success or
// booking answers, the message path without exchange state, or the gateway code path (except
// the change, cancel and change-price answers to "0000", which set it to 0).
ORDERVIEW_API CString g_cszDisplayOrderState(CBaseOrder_OrderInfo* order, unsigned long unused = 0);
