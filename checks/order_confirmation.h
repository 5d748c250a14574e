// The order confirmation a screen shows before an order is sent.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// One "label: value" line per item, lines separated by CR LF, labels the language texts of the
// list headings:
//   "IDS_ORDER-ITEM_ACCOUNT_NAME"          the account name (g_cszDisplayAccountName)
//   "IDS_ORDER-ITEM_COMMODITY"             the symbol, then the stock or commodity name when
//                                          the host has one ("2330 TSMC")
//   "IDS_ORDER-ITEM_BUYSELL"               the side (g_cszDisplayOrderBSorComplex)
//   "IDS_ORDER-ITEM_NEWOFFSET"             open or close (g_cszDisplayOrderOS), futures and
//                                          options only
//   "IDS_ORDER-ITEM_ORDERCATEGORY"         the order kind word (g_cszDisplayOrderKind)
//   "IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE"   price type and price as the lists show them
//   "IDS_ORDER-ITEM_ORDERQTY"              the quantity with its unit (g_cszDisplayOrderQty)
//   "HTS_ORDER-ITEM_ROLE"                  time in force (g_cszDisplayOrderRole)
//   "IDS_ORDER-ITEM_TRIGGERPRICE"          the trigger price, for stop orders (kinds '3', '4')
// Unknown codes show what the list rows show for them. A null order gives the empty text.
ORDERVIEW_API CString g_cszGetStockInfo(CBaseOrder_OrderInfo* order, unsigned long unused = 0);
