// List rows: one order or deal record becomes one row of the order lists, as named items.
//
// Each function sets the row's items in a fixed order with CBaseOrderItemGroup::bSetItemValue.
// A null row or record returns false and touches nothing.
#pragma once

#include "order_data/visibility.h"
#include "order_data/records.h"

// The compact order list. Only the low byte of `listMode` counts: 255 shows every order;
// otherwise cancel and change requests ('C', 'U') are hidden and 1 (working), 2 (fully done),
// 4 (dealt), 5, 6, 7 (by state), 8 (dealt buys) and 9 (filled sells) filter further. False
// when the order does not belong in the list; the row is then left untouched.
ORDERVIEW_API bool g_bAddODOI2OIG_SimpleOrderListCtrl(CBaseOrderItemGroup* row, CBaseOrder_OrderInfo* order,
                                                      int listMode);

// The full order (query result) list. The bits above the low byte select market groups
// (0x11100 futures, 0x11200 options, 0x41100 / 0x41200 / 0x41400 stocks by trade kind 'A' / 'B'
// / 'C', 0x41800 kind 'D', 0x42100 kind 'E', 0x4ff00 all); the low byte filters as in the
// compact list (mode 1 also admits status "0000", mode 9 tests the dealt quantity like mode 8).
// `bFullStamp` shows the booking date with the time; `bOperatorPlaceholder` sets "--" in the
// operator column; `bWithExchange` is handed to g_cszDisplayOrderSymbol for the commodity.
ORDERVIEW_API bool g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(CBaseOrderItemGroup* row,
                                                                  CBaseOrder_OrderInfo* order, int listMode,
                                                                  bool bFullStamp, bool bOperatorPlaceholder,
                                                                  bool bWithExchange);

// The deal list: never filtered, true for any deal. `bFullStamp` shows the deal date with the
// time; `bWithExchange` is handed to g_cszDisplayOrderSymbol (outside the ETS case); the int and
// the second bool are not read.
ORDERVIEW_API bool g_bAddODOI2OIG_DealRet2FullOrderListCtrl(CBaseOrderItemGroup* row, CBaseOrder_DealInfo* deal,
                                                            int unused, bool bFullStamp, bool unusedFlag,
                                                            bool bWithExchange);
