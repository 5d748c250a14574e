// Totals of a list's numeric columns, for the inventory print: a column has a total when every
// non-empty cell in it is a number and at least one cell is.
//
// A cell is a number by the same rule the HTML spreadsheet export uses: the column is
// right-aligned, the text is not empty, it holds a digit or a comma, and it holds no backslash,
// blank or colon. To be summed, such a text must also read as a decimal: an optional sign,
// digits with optional thousands commas, an optional point and decimals (at most 9), an
// optional trailing '%'. A column with any other number-like text (or a sum that 64 bits
// cannot hold exactly) gets no total.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "platform/list_control.h"

namespace orderview {

// One text per list column: the total, with as many decimals as the column's most precise
// cell, thousands commas and a percent sign when its cells use them; empty for no total.
std::vector<CString> ColumnTotals(const CListCtrl& list, const std::vector<int>& rows, const std::vector<int>& columns);

// The totals rows of an inventory print, each one text per list column; empty when no column
// of `columns` has a total.
//  - Rows of change and cancel requests are left out: the rows whose order number (the column
//    headed by the language text of "IDS_ORDER-ITEM_ORDERNO") ends in "-C" or "-U" and the
//    request's sequence number, as the order lists number them.
//  - When the currency column (headed by the text of
//    "IDS_QWORDERVIEW_SQWORDERSTOCKDLG_DELIVERYCURRENCY") is among `columns`, there is one row
//    per currency, in the order the currencies first appear, its currency in that column;
//    amounts of different currencies are never added together.
//  - Totals follow the list's number format: thousands commas when any summed cell of the list
//    shows them, and as many decimals as the column's most precise cell.
//  - The first of `columns` that has no total (and is not the currency column) holds the label,
//    the language text of "IDS_ORDER-COMMON_TOTAL" ("Total" when the language has none).
std::vector<std::vector<CString>> TotalsRows(const CListCtrl& list, const std::vector<int>& rows,
                                             const std::vector<int>& columns);

}  // namespace orderview
