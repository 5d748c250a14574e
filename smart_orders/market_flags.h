// Market-order flags and smart-order symbols, per sync type. Process-wide; not thread-safe.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"

ORDERVIEW_API void g_vSetHaveMKTOrder(unsigned char& syncType, bool bHave);
ORDERVIEW_API bool g_bGetHaveMKTOrder(unsigned char& syncType);
// Adds the symbol once, or removes its first copy; an empty symbol is ignored.
ORDERVIEW_API void g_vSetSmartOrderSymbol(CString& symbol, unsigned char syncType, bool bDelete);
ORDERVIEW_API bool g_bIsHaveSmartOrderSymbol(CString& symbol, unsigned char syncType);
