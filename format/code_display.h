// Display words of the coded order fields (side, open/close, kind, time in force, price type,
// commodity class, hours type, spread kind). Each code maps to a language-string id whose host
// text is returned. A trailing `unsigned long` that a function does not name is accepted and
// ignored, so that all display functions share one calling shape.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

ORDERVIEW_API CString g_cszDisplayHoursType(unsigned long code);
ORDERVIEW_API CString g_cszDisplayOrderBS(unsigned long side, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderCP(unsigned long callPut, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderComType(unsigned long marketKind, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderComplex(unsigned long complexKind, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderDayTrade(unsigned long dayTrade, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderKind(CBaseOrder_OrderInfo* order, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderOS(unsigned long openClose, unsigned long dayTrade, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderOSForeTrade(unsigned long openClose, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderRole(unsigned long timeInForce, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderType(unsigned long priceType);
// Market word, kind word and side word of a stock order, joined without separator.
ORDERVIEW_API CString g_cszDisplayOrderStockBSType(unsigned long marketKind, unsigned long stockTradeKind,
                                                   unsigned long side, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayOrderBSorComplex(CBaseOrder_OrderInfo* order, unsigned long unused = 0);
// The price of the order, or its price-type word where the type says more than a price.
ORDERVIEW_API CString g_cszDisplayOrderTypeAndPrice(CBaseOrder_OrderInfo* order);
