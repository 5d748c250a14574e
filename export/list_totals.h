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

}  // namespace orderview
