// One item of the host's quote table for one symbol (last price, reference price, limits...).
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/x1format.h"

// The value of quote item `itemNo` of `symbolId` in service `serviceId`, as the host's quote
// table holds it; an X1Format of value 0 (base unit 0) when the host has no such item.
ORDERVIEW_API X1Format g_xGetSymbolInfoByItem(unsigned char serviceId, const CString& symbolId,
                                              unsigned short itemNo);
// The same value as a double; 0 when the host has none.
ORDERVIEW_API double g_GetSymbolInfoByItem(unsigned char serviceId, const CString& symbolId,
                                           unsigned short itemNo);
