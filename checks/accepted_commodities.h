// Whether the broker accepts a foreign future or foreign option commodity for trading.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// True when `comId` is in the host's accepted foreign futures list (OrderBK_GetForeignAccptCom);
// the accepted record, denominators included, is then copied to `accepted` (untouched otherwise).
// Ids compare exactly as stored (case and blanks count); an empty id is never accepted.
ORDERVIEW_API bool g_bGetForeignAccptTradeCom(const CString& comId, CAcceptComFfuture& accepted);
// The same for foreign options (OrderBK_GetFOptionAccptCom).
ORDERVIEW_API bool g_bGetFOptionAccptTradeCom(const CString& comId, CAcceptComFoption& accepted);
