// Prints a list as an aligned text table: headings, a rule, then one line per row. Column
// widths come from the headings and the first rows, so the table streams; a longer cell later
// widens only its own line.
#pragma once

#include <cstdio>

#include "platform/list_control.h"

namespace ovcli {

class Progress;

// Writes `list` to `out`; false when writing failed.
bool PrintTable(const CListCtrl& list, std::FILE* out, Progress* progress);

}  // namespace ovcli
