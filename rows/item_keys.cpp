#include "rows/detail/item_keys.h"

namespace orderview {
namespace detail {
namespace key {

const CString kOrderNo("IDS_ORDER-ITEM_ORDERNO");
const CString kBackTableNo("IDS_ORDER-ITEM_BACKTABLENO");
const CString kOprather("IDS_ORDER-ITEM_OPRATHER");
const CString kBookStamp("IDS_ORDER-ITEM_BOKDTANDTM");
const CString kOrderDate("IDS_ORDER-ITEM_ORDERDATE");
const CString kOrderTime("IDS_ORDER-ITEM_ORDERTIME");
const CString kDealTime("IDS_ORDER-ITEM_DEALTIME");
const CString kSource("IDS_ORDER-ITEM_SOURCE");
const CString kCommodity("IDS_ORDER-ITEM_COMMODITY");
const CString kComStock("IDS_ORDER-ITEM_COMSTOCK");
const CString kBuySell("IDS_ORDER-ITEM_BUYSELL");
const CString kNewOffset("IDS_ORDER-ITEM_NEWOFFSET");
const CString kStatus("IDS_ORDER-ITEM_STATUS");
const CString kOperator("IDS_ORDER-ITEM_OPERATOR");
const CString kOrderCategory("IDS_ORDER-ITEM_ORDERCATEGORY");
const CString kOrderType("IDS_ORDER-ITEM_ORDERTYPE");
const CString kOrderPrice("IDS_ORDER-ITEM_ORDERPRICE");
const CString kOrderTypeAndPrice("IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE");
const CString kRole("HTS_ORDER-ITEM_ROLE");
const CString kCommodityRole("IDS_ORDER-ITEM_COMMODITYROLE");
const CString kTriggerPrice("IDS_ORDER-ITEM_TRIGGERPRICE");
const CString kOrderQty("IDS_ORDER-ITEM_ORDERQTY");
const CString kOrderQtySdk("IDS_ORDER-ITEM_ORDERQTYSDK");
const CString kHkOrderQty("IDS_ORDER-ITEM_HKORDERQTY");
const CString kHkHistoryOrderQty("IDS_ORDER-ITEM_HKHISTORYORDERQTY");
const CString kDealQty("IDS_ORDER-ITEM_DEALQTY");
const CString kDealQtySdk("IDS_ORDER-ITEM_DEALQTYSDK");
const CString kHkDealQty("IDS_ORDER-ITEM_HKDEALQTY");
const CString kHkHistoryDealQty("IDS_ORDER-ITEM_HKHISTORYDEALQTY");
const CString kCancelQty("IDS_ORDER-ITEM_CANCELQTY");
const CString kCancelQtySdk("IDS_ORDER-ITEM_CANCELQTYSDK");
const CString kHkCancelQty("IDS_ORDER-ITEM_HKCANCELQTY");
const CString kHkHistoryCancelQty("IDS_ORDER-ITEM_HKHISTORYCANCELQTY");
const CString kAvePrice("IDS_ORDER-ITEM_AVEPRICE");
const CString kBalanceQty("IDS_ORDER-ITEM_BALANCEQTY");
const CString kTradeDate("IDS_ORDER-ITEM_TRADEDATE");
const CString kAppropriate("IDS_ORDER-ITEM_APPROPRIATE");
const CString kAccountName("IDS_ORDER-ITEM_ACCOUNT_NAME");
const CString kComType("IDS_ORDER-ITEM_COMTYPE");
const CString kFirm("IDS_ORDER-ITEM_FIRM");
const CString kOffset1("IDS_CFOREIGNFUTURECTRLVIEW-STRING_OFFSET1");
const CString kDeliveryCurrency("IDS_QWORDERVIEW_SQWORDERSTOCKDLG_DELIVERYCURRENCY");
const CString kHoursType("IDS_ORDER-ITEM_HOURETYPE");
const CString kAccountDate("IDS_ORDER-ITEM_ACCOUNTDATE");
const CString kExchange("IDS_ORDER-ITEM_EXCNANGE");  // the language files spell it so
const CString kDealPrice("IDS_ORDER-ITEM_DEALPRICE");
const CString kDealNo("IDS_ORDER-ITEM_DEALNO");
const CString kFee("IDS_ORDER-TAB-DEALREPORT_FEE");
const CString kTax("IDS_ORDER-TAB-DEALREPORT_TAX");
const CString kNetAmount("IDS_ORDER-ITEM_NETAMOUNT");
const CString kTradeValue("IDS_ORDER-TAB-DEALREPORT_PRICE");
const CString kDataCount("IDS_ORDER-ITEM_DATACOUNT");

}  // namespace key
}  // namespace detail
}  // namespace orderview
