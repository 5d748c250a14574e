// Gateway status codes and error texts, changeability of an order, and the order sources that
// get no operator actions.
#pragma once

#include <cstdint>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// 1 for an accepted status ("0000", "9997", "9996"), 0 for a gateway time-out ("C010", "C019"),
// -1 for a refused order or a filter code other than 'C' and 'U'; `message` is replaced.
ORDERVIEW_API int g_iCheckHtsODStatus(std::uint32_t unused, const CString& status, std::uint32_t dwFilter,
                                      CString& message);
// Appends "[exchange number] " (unless empty or the waiting text) and the first word of the
// <status> text of a tagged gateway reply to `message`; false when a tag pair is missing.
ORDERVIEW_API bool g_bGetErrorMsg(CString& message, const CString& reply);
// True when the order may still be changed or deleted.
ORDERVIEW_API bool g_bIsOrderAvailableChange(const CBaseOrder_OrderInfo* order);
// True for 'C', 'U' and 'P' while the host shows deleted orders.
ORDERVIEW_API bool g_bRejectDelChg(std::uint32_t code);
// True when orders of the source get operator actions (it is not in the exclusion list).
ORDERVIEW_API bool g_bISOperator(std::uint32_t source);

namespace orderview {
// Reads the order-source exclusion list ([ORDER_SOURCE] NO_OPERATOR of "OrderCfg.ini") again.
// It is read on first use and again after host services are installed.
ORDERVIEW_API void ReloadOrderSourceExclusions();
}  // namespace orderview
