// The order symbol and account name as the order lists show them.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// The commodity of an order as the lists show it.
// - The commodity's symbol id, when the host gave one (it already names the contract, and both
//   legs of a spread).
// - Otherwise the commodity id and its contract month, "TXF 202606"; a spread (complex kind other
//   than 'N' and '0') adds the second leg after a '/', "TXF 202606/202607", with the second leg's
//   commodity id in front of its month when it differs ("TXF 202606/MXF 202606"). A missing
//   month leaves the commodity id alone.
// - `bWithExchange` puts the exchange id in front, "CME ES 202606", when the commodity has one
//   (foreign lists show it; the domestic lists pass false).
// A null order gives the empty text.
ORDERVIEW_API CString g_cszDisplayOrderSymbol(CBaseOrder_OrderInfo* order, bool bWithExchange,
                                              unsigned long unused = 0);
// The commodity of a day-trade record: its commodity id (the record carries no month or
// exchange, so `bWithExchange` changes nothing). A null record gives the empty text.
ORDERVIEW_API CString g_cszDisplayOrderSymbol(CBaseOrder_DayTradeInfo* dayTrade, bool bWithExchange,
                                              unsigned long unused = 0);

// The account of an order as the lists show it: the display name the order back end keeps for
// the account (OrderBK_bGetAccountName), or the account text itself when it has none. A null
// order gives the empty text.
ORDERVIEW_API CString g_cszDisplayAccountName(CBaseOrder_OrderInfo* order);
