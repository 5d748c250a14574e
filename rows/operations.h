// The operations a user may apply to one order, the orders a bulk delete may take, and the
// row-number column of a list.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"
#include "platform/list_control.h"

// The language texts of the operations offered for `order`, in menu order: delete, change
// quantity, chase price, change price; each only when the order allows it and its operator flag
// (g_vInitialOrderOperate) is on. Chasing foreign orders also needs [Operate] FOREIGN_CHASE=1 in
// "OrderCfg.ini", read once per process. A null order gives no operations.
ORDERVIEW_API std::vector<CString> g_vSetOperator(CBaseOrder_OrderInfo* order);

// Today's orders of `account` that a bulk delete may take into `orders` (replacing its content):
// live orders (not 'C' or 'U') with a remaining quantity in status "0000" or "9997"; selection
// 'C' all of them, 'Z' the buys, 'X' the sells; any other code every order of today, unfiltered.
ORDERVIEW_API void g_vGetBeDelOrder(AccountType account, unsigned long selection,
                                    std::vector<CBaseOrder_OrderInfo>& orders);

// Renumbers the row-number column (the display column of "IDS_ORDER-ITEM_DATACOUNT" in `row`'s
// definition): every list row whose first column holds decimal digits only gets its index + 1.
// Nothing happens when the definition has no such column, or for a null list or row.
ORDERVIEW_API void g_vResetDatano(CListCtrlEx* list, int unused, CBaseOrderItemGroup* row);

namespace orderview {
// Forgets the FOREIGN_CHASE setting read by g_vSetOperator, so the next call reads it again (tests).
ORDERVIEW_API void ResetForeignChaseSetting();
}  // namespace orderview
