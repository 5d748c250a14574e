// Stock names, commodity ids and option contract months as the order screens show them.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// A stock's name from the host's symbol information (bGetSymbolName); the symbol id itself
// when the host has none.
ORDERVIEW_API CString g_cszDisplayStockName(unsigned char serviceId, const CString& symbolId,
                                            unsigned long unused = 0);

// The commodity id of a symbol: the text of the host's quote item 1007 for it. False with
// `commodityId` emptied when the host has no such item or it is empty.
ORDERVIEW_API bool g_GetCommodityId(const CString& symbolId, unsigned char serviceId, CString& commodityId);
// The commodity id of an order's commodity, from its symbol id and service id as above; a null
// order gives false and an empty id.
ORDERVIEW_API bool g_GetOrderComId(const CBaseOrder_OrderInfo* order, CString& commodityId);

// The contract month of an option symbol as a screen shows it: "2026/06" for a monthly contract;
// for a weekly one (the host's bIsWeeklyCommodity for the symbol's commodity) the text of
// g_cszGetWeeklyUIYearMonth. The year and month are those of g_GetOptionYearMonth (short form);
// false with `out` unchanged when that finds no contract month in the symbol.
ORDERVIEW_API bool g_GetOptionUIYearMonth(unsigned char serviceId, const CString& symbol, CString& out);

// A weekly contract's month as a screen shows it: the host's weekly name for the commodity and
// year-month ("yyyymm"), or else "2026/06 W2": the month and the week number, the digit that ends
// a weekly commodity id ("TX2"), or "W" alone when the id ends in none. A year-month that is not
// six digits is shown as it stands.
ORDERVIEW_API CString g_cszGetWeeklyUIYearMonth(const CString& commodityId, const CString& yearMonth);
