// OCO registry: groups of order legs that cancel each other, shared by every screen of the
// process. Four process-wide maps: the OCO serial numbers of each sync type, the legs of each
// OCO serial number, the OCO serial number of each order serial number, and reuse queues of
// OCO serial numbers. Not thread-safe: call from one thread.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

// One leg of an OCO group.
struct ORDERVIEW_API STRUCT_FLASH_OCO_DATA {
    CString strSymbol;        // matched by the price lookup
    CString strPrice;         // matched by the price lookup
    std::uint32_t dwValue = 0;
    std::uint8_t byFlag = 0;  // handed back by the price lookup
    CString strData1;
    CString strData2;
    CString strMark;          // group mark: filters the price lookup and bulk removal
};

ORDERVIEW_API void g_vSetOCOInfoBySN(CString& ocoSN, std::vector<STRUCT_FLASH_OCO_DATA> legs, unsigned char& syncType);
ORDERVIEW_API std::vector<STRUCT_FLASH_OCO_DATA> g_vecGetOCOInfoBySN(CString& ocoSN);
ORDERVIEW_API std::vector<CString> g_vecGetOCOSNBySync(unsigned char& syncType);
ORDERVIEW_API bool g_bGetHaveOCOOrder(unsigned char& syncType);
ORDERVIEW_API int g_iGetOCOInfoSize(unsigned char& syncType);
ORDERVIEW_API void g_vSetOCOOrder(CString ocoSN, unsigned char& syncType, bool bDelete, bool bClear);
ORDERVIEW_API void g_vDelOCOInfoBySN(CString ocoSN, unsigned char& syncType, std::vector<CString>& removed,
                                     CString mark, bool bAll);
ORDERVIEW_API void g_vGetOCOSNbyPrice(CString& price, CString symbol, CString& ocoSN, bool& flag, CString mark);
ORDERVIEW_API void g_vSetOCOSNtoOrderSN(CString& orderSN, CString second, unsigned char& syncType, bool bDelete);
ORDERVIEW_API CString g_cszGetOCOSNbyOrderSN(CString& orderSN);
ORDERVIEW_API std::vector<CString> g_cszGetOrderSNbyOCOSN(CString& ocoSN);
ORDERVIEW_API void g_vSetReuseOCOSN(CString& key, CString ocoSN, bool bPop, bool bClear);
ORDERVIEW_API int g_iGetReuseOCOSN(CString& key, CString& ocoSN);
