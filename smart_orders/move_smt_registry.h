// Moving SMT registry: per sync type, the moving SMT orders with their deal number, price key
// and data. Process-wide; not thread-safe.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// The data of one moving SMT order.
struct ORDERVIEW_API STRUCT_FLASH_MOVESMT_DATA {
    std::uint32_t dwMoveInfo1 = 0;
    double dbMoveValue = 0.0;
    CBaseOrder_OrderInfo OrderInfo;
    std::uint32_t dwMoveInfo2 = 0;
    std::uint32_t dwMoveInfo3 = 0;
    std::uint32_t dwMoveInfo4 = 0;
    CString strMoveMark;  // second key of the price lookup and of the removal by price
};

// One registry entry.
struct ORDERVIEW_API STRUCT_FLASH_MOVESMT_SYNC {
    CString strDealNo;  // the order record's strDealNo when the entry was made
    CString strPrice;
    STRUCT_FLASH_MOVESMT_DATA Data;
};

ORDERVIEW_API void g_vSetMoveSMTInfoByPrice(CString& price, STRUCT_FLASH_MOVESMT_DATA data, unsigned char syncType);
ORDERVIEW_API std::vector<STRUCT_FLASH_MOVESMT_DATA> g_vecGetMoveSMTInfoByPrice(CString& price, CString& mark,
                                                                               unsigned char& syncType);
ORDERVIEW_API bool g_bGetMoveSMTInfoByDealNO(CString& dealNo, unsigned char& syncType, STRUCT_FLASH_MOVESMT_SYNC& entry);
ORDERVIEW_API std::vector<CString> g_vecGetMoveSMTDealNOBySyncType(unsigned char& syncType);
ORDERVIEW_API bool g_bGetHaveMoveSMTOrder(unsigned char& syncType);
// bAll removes the sync type's whole list; otherwise only the first entry of the deal number.
ORDERVIEW_API void g_vDelMoveSMTInfoByDealNO(CString dealNo, unsigned char& syncType, bool bAll);
// bAll removes the sync type's whole list; otherwise every entry with the price and mark.
ORDERVIEW_API void g_vDelMoveSMTInfoByPrice(CString price, CString mark, unsigned char& syncType, bool bAll);
