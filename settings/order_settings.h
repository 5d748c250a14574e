// The order settings file "OrderCfg.ini" in the system folder: its name, the keys the screens
// read, the generic list readers, and the few options the library caches for the process
// (the one-way check rule flag, the order-response show mode and the four operator flags).
// The library only reads this file.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

// s_PathGetSysPath(0) followed by "\OrderCfg.ini".
ORDERVIEW_API CString g_vGetOrderCfgFileName();
// 1 when [ORDER_SETTING] LimitPriceEqualStopPrice is 1, else 0; read at every call.
ORDERVIEW_API int g_vGetPriceToStopPrice();
// Caches [ORDER_SETTING] MSNRESP_SHOWMODE (default 0).
ORDERVIEW_API void g_vSetMsnOrderRespShowMode();
// The cached show mode; 0 until the setter has run.
ORDERVIEW_API int g_vGetMsnOrderRespShowMode();
// Sets the check rule flag; nothing sets it back for the life of the process.
ORDERVIEW_API void g_vSetCheckRule();
ORDERVIEW_API bool g_bGetCheckRule();
// Caches the order back end's four operator flags.
ORDERVIEW_API void g_vInitialOrderOperate();
// The first character of each token of [ORDER_SOURCE] NO_OPERATOR (tokens split at blank, comma
// and line feed), widened as a signed character.
ORDERVIEW_API std::vector<unsigned long> g_GetOnsiteOrder();
// The tokens of any key read with atoi, cut to their low 16 bits, padded with zeros to 16 entries.
ORDERVIEW_API std::vector<int> g_vGetSettingParameter(CString section, CString key);

namespace orderview {
// The cached operator flags, in the order OrderBK_vGetOperator fills them (index 0 to 3).
ORDERVIEW_API bool GetOrderOperateFlag(int index);
// [ORDER_SETTING] YesterdayTradeVolume (default 0): above 0, buy orders of stocks that traded
// fewer lots than this yesterday are refused by the stock order check. Read at every call.
ORDERVIEW_API int GetYesterdayTradeVolumeSetting();
// [ORDER_SETTING] StockPriceAlert (default 1): 0 no price-band warning, 2 only while the market
// is open, any other value always. Read at every call.
ORDERVIEW_API int GetStockPriceAlertSetting();
}  // namespace orderview
