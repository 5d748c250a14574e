// Prints a list as an aligned text table: headings, a rule, then one line per row. Column
// widths come from the headings and the first rows, so the table streams; a longer cell later
// widens only its own line. Widths are terminal columns (a Chinese character takes two); a column
// but the last is at most 60 wide, its longer texts cut between characters.
#pragma once

#include "line_output.h"
#include "order_list.h"

namespace ovcli {

class Progress;

// Writes `list` to `out`, its rows in order; false when writing failed.
bool PrintTable(const OrderList& list, LineOutput& out, Progress* progress);

}  // namespace ovcli
