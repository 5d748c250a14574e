// Prices and quantities as list columns show them.
//
// A price arrives as a triple: a (integral part, or the whole price), b (numerator, or the
// decimal digits when there is no denominator) and c (denominator, 0 for no fraction). The
// accepted foreign commodity table gives the denominator and sub-denominator of a commodity;
// the host's fraction setting chooses decimals (1), the host's per-commodity format (3) or
// fraction text (anything else).
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

ORDERVIEW_API CString g_cszDisplayPrice(const double& a, const double& b, const double& c, const CString& comId);
// Like g_cszDisplayPrice, but the numerator of an average may itself have decimals (two kept, cut).
ORDERVIEW_API CString g_cszDisplayAveragePrice(const double& a, const double& b, const double& c,
                                               const CString& comId);
// Bond-style price in 1/denominator steps and thousandths of a step ("101.16500" for 101.515625
// in 32nds) written to `out`; mode 1 leaves `out` as it is. Returns a copy of `out`.
ORDERVIEW_API CString g_cszDisplaySpecialDecimal(const double& value, const int& mode, const int& denominator,
                                                 CString& out);
// The quantity followed by the unit word of the market kind.
ORDERVIEW_API CString g_cszDisplayOrderQty(CBaseOrder_OrderInfo* order, unsigned long unused = 0);
ORDERVIEW_API CString g_cszDisplayDealQty(CBaseOrder_DealInfo* deal, unsigned long unused = 0);
