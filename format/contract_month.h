// Contract months of futures and option symbols: a month letter and a one-digit year at the end
// of a future symbol (or in front of the ';' of an option symbol) become a year and month.
// The decade comes from the local clock: a digit below this year's last digit is next decade.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"

// Short form "yyyymm" ("203506" for M5 in 2026); long form (longForm exactly 1) "yymm" and the
// code's last two characters ("2606AB" for M6AB). A symbol of 3 characters or fewer gives
// "200001" and false.
ORDERVIEW_API bool g_GetFutureYearMonth(bool longForm, const CString& symbol, CString& out);
// The same for the code before the first ';'; false with `out` unchanged when the ';' is missing
// or stands before position 2.
ORDERVIEW_API bool g_GetOptionYearMonth(bool longForm, const CString& symbol, CString& out);
