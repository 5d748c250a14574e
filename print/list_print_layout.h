// The page layout of a printed list, computed before anything is drawn so that every page
// knows the page count. Columns keep the list's proportions scaled to the printable width;
// the font shrinks with them down to kMinFontSize, then the paper turns to landscape, and only
// when they do not fit there at kMinFontSize are the columns split into groups, the first column
// repeated, as few groups as fit and as even as they can be (no group of a lone column when
// others could give it company). Pages run row band by row band, each band across all groups.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "platform/list_control.h"
#include "platform/print.h"

namespace orderview {

enum class ListPrintStyle {
    kPlain,      // headings underlined, no grid
    kGrid,       // a grid around every cell and a shaded heading row
    kInventory,  // plain, plus a totals row for the numeric columns
};

constexpr double kMaxFontSize = 9;
constexpr double kMinFontSize = 6;

struct ListPrintColumn {
    int iColumn = 0;     // column of the list control
    double dLeft = 0;    // left edge on the page, in points
    double dWidth = 0;
    PrintAlign align = PrintAlign::kLeft;
};

struct ListPrintLayout {
    PrintPaper paper;                                   // in the orientation printed
    PrintFont body;                                     // cells; headings use it bold
    double dRowHeight = 0;
    double dTableTop = 0;                               // top of the heading row
    int iRowsPerPage = 0;
    int iRowBands = 0;                                  // pages down the list
    std::vector<std::vector<ListPrintColumn>> groups;   // column groups, one page across each
    std::vector<int> rows;                              // list rows printed, in order
    bool bTotals = false;                               // totals rows follow the last row
    std::vector<std::vector<CString>> totals;           // totals rows (print/list_totals.h), by list column

    int PageCount() const { return iRowBands * static_cast<int>(groups.size()); }
};

// Lays `rows` of `list` out on the job's paper, turning the job to landscape when the columns
// need it. False when no column is visible (every width 0 or less): nothing to print.
ORDERVIEW_API bool LayOutListPrint(IPrintJob& job, const CListCtrl& list, std::vector<int> rows,
                                   ListPrintStyle style, ListPrintLayout& layout);

// The title band and the foot of every page.
constexpr double kTitleHeight = 18, kDateHeight = 12, kFootHeight = 14;

}  // namespace orderview
