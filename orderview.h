// orderview: the order view data library of the trading front end.
// One header for everything the library exports.
#pragma once

#include "order_data/cstring.h"
#include "host/default_host.h"
#include "platform/file_system.h"
#include "platform/list_control.h"
#include "order_data/host_api.h"
#include "order_data/host_services.h"
#include "platform/platform.h"
#include "platform/print.h"
#include "platform/profile_file.h"
#include "order_data/records.h"
#include "host/table_host.h"
#include "order_data/x1format.h"

#include "format/code_display.h"
#include "format/compare_round.h"
#include "format/contract_month.h"
#include "format/normalize.h"
#include "format/order_state.h"
#include "format/price_display.h"
#include "format/quote_items.h"
#include "format/symbol_display.h"

#include "smart_orders/market_flags.h"
#include "smart_orders/move_smt_registry.h"
#include "smart_orders/oco_registry.h"
#include "smart_orders/registries.h"
#include "smart_orders/smt_registry.h"

#include "rows/operations.h"
#include "rows/order_rows.h"
#include "rows/status_codes.h"

#include "settings/account_selection.h"
#include "settings/client_log.h"
#include "settings/error_order_file.h"
#include "settings/order_settings.h"

#include "export/list_print.h"
#include "export/list_print_layout.h"

#include "xls/biff_record.h"
#include "xls/book.h"
#include "xls/cell.h"
#include "xls/compound_file.h"
#include "xls/sheet.h"
#include "xls/utf16.h"
#include "xls/workbook_records.h"
#include "xls/worksheet_records.h"
