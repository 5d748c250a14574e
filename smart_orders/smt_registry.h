// SMT registry: the SMT records of each deal number, the priced entries of each sync type, and
// two seen-before sets that let a screen handle each SMT deal and order once. Process-wide;
// not thread-safe.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// One priced entry of a sync type; its composite key is "strKey1_strKey2".
struct ORDERVIEW_API STRUCT_FLASH_SMT_SYNC {
    CString strKey1;
    std::vector<CString> vecPrice;  // insertion order, duplicates allowed
    CString strKey2;
};

// One SMT record of a deal.
struct ORDERVIEW_API STRUCT_FLASH_SMT_INFO {
    std::uint32_t dwInfo1 = 0;
    CString strInfo1;
    CBaseOrder_OrderInfo OrderInfo;
    std::uint32_t dwInfo2 = 0;
    std::uint32_t dwInfo3 = 0;
    CString strInfo2;
};

ORDERVIEW_API void g_vSetSMTInfoByDealNo(CString& dealNo, STRUCT_FLASH_SMT_INFO& info, bool bDelete);
ORDERVIEW_API std::vector<STRUCT_FLASH_SMT_INFO> g_vecGetSMTInfoByDealNo(CString& dealNo);
ORDERVIEW_API bool g_bGetHaveSMTOrder(unsigned char& syncType);
ORDERVIEW_API std::vector<STRUCT_FLASH_SMT_SYNC> g_vecGetSMTDataBySyncType(unsigned char& syncType);
ORDERVIEW_API void g_vSetSMTPriceBySyncType(unsigned char& syncType, CString key, CString price, bool bDelete,
                                            bool bRemoveKey);
// Test-and-register: false the first time a key is seen (it is registered with `value`), then
// true only while asked with the same value. bReset empties the registry first.
ORDERVIEW_API bool g_bGetSMTDealInfo(CString dealNo, unsigned char value, bool bReset);
ORDERVIEW_API bool g_bGetSMTOrderInfo(CString orderKey, unsigned char value, bool bReset);
