// The order insurance check: one order against the insurance settings of its account
// (CBaseOrder_InsuranceInfo, kept by the host: OrderBK_LoadOrderInsurance and
// OrderBK_GetOrderInsurance).
//
// Product keys. The allow and deny lists hold product keys, compared byte for byte with the key
// the check builds from the order's commodity (`c` below is order.commodity; ym(x) is the month
// id the host's g_bGetYMID gives for the contract text x, in its second form when the market
// kind c.dwMarketKind is '7'; N(x) is g_cszNormalizDouble(x), "18000", "0.5"):
//   accounts '0', '2' (futures and options)
//       c.csComId + ym(c.csSymbolID)                                  "TXFL6"
//       two-month spread (dwComplexKind '2'):
//       c.csComId + ym(c.csSymbolID) + "/" + ym(c.csSymbolID2)        "TXFL6/A7"
//   account kind '1' (two option legs)
//       c.csComId + c.csComMonth + ";" + N(c.dbStrikePrice) + c.dwCallPut
//                                       + N(c.dbStrikePrice2) + c.dwCallPut2
//                                                                     "TXO202612;18000C18200P"
//   account kind '4' (one option leg)
//       c.csComId + c.csComMonth + ";" + N(c.dbStrikePrice) + c.dwCallPut
//                                                                     "TXO202612;18000C"
//   every other account (stock accounts 'A' among them)
//       c.csComId                                                     "2330"
// A call/put code is its one character; a code of 0 adds nothing. For futures and options
// accounts a listed key that holds "00", "&" or "@" (a placeholder such as "TXF00" for the near
// month) is first translated through the host's symbol transfer table with service id 1
// (BKOrderInterface::bGetTransferTableSymbolID); a key the table does not know is compared as
// written. The default host's insurance file (host/default_host.h) holds keys in this form.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// True when the order passes every rule; `message` is then left untouched. Otherwise false with
// `message` set to the text of "IDS_INSURANCESETTING_MESSAGE" followed by the text of the first
// broken rule, tried strictly in this order:
//   product lists    allow list without the key: "..._STOCK_BUY" (stock account 'A') or "..._BUY";
//                    deny list with it: "..._STOCK_NOTBUY" or "..._NOTBUY" (empty lists pass)
//   largest quantity iMaxQty above 0 and below dwOrderQty: "..._QTY" ('0', '2') or "..._STOCK_QTY"
//   credit           margin buy (dwStockTradeKind 'B') not allowed: "..._RZ";
//                    short sell ('C') not allowed: "..._RG"
//   other than 'A'   dbTodayLimit above 0 and below dwOrderQty + used today: "..._TODAY_QTY";
//                    market price not allowed and dwOrderKind not '2': "..._MARKETPRICE";
//                    current price (g_dbGetCurrentPrice) not 0.0, dbPriceLimit above 0 and the
//                    order price outside current -/+ limit: "..._PRICE_DIFF"
//   stock 'A'        price: dbOrderPrice for dwOrderType '2', g_dbGetLIMITPrice for '6', '7', '8',
//                    else 0.0; amount: quantity x price (market kinds 'E', 'O') or quantity x
//                    price x the stock's unit (OrderBK_vGetUnit, 1000 when the host has none);
//                    dbTodayLimit above 0 and below amount + used today: "..._TODAY_MONEY";
//                    else dbPriceLimit above 0 and below the price: "..._PRICE";
//                    else market price not allowed and dwOrderKind '6' or '7': "..._UPDOWNRICE"
// ("..." stands for "IDS_INSURANCESETTING_MESSAGE"). Limits that are NaN never refuse. A null
// order is refused with the message untouched.
ORDERVIEW_API bool g_bCheckOrderInsurance(AccountType& account, CBaseOrder_OrderInfo* order, CString& message);
