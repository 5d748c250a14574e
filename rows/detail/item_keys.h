// The item keys of the order and deal rows: language-string ids, built once (internal).
#pragma once

#include "order_data/cstring.h"

namespace orderview {
namespace detail {
namespace key {

extern const CString kOrderNo;
extern const CString kBackTableNo;
extern const CString kOprather;
extern const CString kBookStamp;
extern const CString kOrderDate;
extern const CString kOrderTime;
extern const CString kDealTime;
extern const CString kSource;
extern const CString kCommodity;
extern const CString kComStock;
extern const CString kBuySell;
extern const CString kNewOffset;
extern const CString kStatus;
extern const CString kOperator;
extern const CString kOrderCategory;
extern const CString kOrderType;
extern const CString kOrderPrice;
extern const CString kOrderTypeAndPrice;
extern const CString kRole;
extern const CString kCommodityRole;
extern const CString kTriggerPrice;
extern const CString kOrderQty;
extern const CString kOrderQtySdk;
extern const CString kHkOrderQty;
extern const CString kHkHistoryOrderQty;
extern const CString kDealQty;
extern const CString kDealQtySdk;
extern const CString kHkDealQty;
extern const CString kHkHistoryDealQty;
extern const CString kCancelQty;
extern const CString kCancelQtySdk;
extern const CString kHkCancelQty;
extern const CString kHkHistoryCancelQty;
extern const CString kAvePrice;
extern const CString kBalanceQty;
extern const CString kTradeDate;
extern const CString kAppropriate;
extern const CString kAccountName;
extern const CString kComType;
extern const CString kFirm;
extern const CString kOffset1;
extern const CString kDeliveryCurrency;
extern const CString kHoursType;
extern const CString kAccountDate;
extern const CString kExchange;
extern const CString kDealPrice;
extern const CString kDealNo;
extern const CString kFee;
extern const CString kTax;
extern const CString kNetAmount;
extern const CString kTradeValue;
extern const CString kDataCount;

}  // namespace key
}  // namespace detail
}  // namespace orderview
