// Printing a list control: the platform's print dialog (IPlatform::StartPrintJob) chooses the
// printer; the default platform prints to a PDF file (platform/print.h: Chinese and other
// characters the standard fonts lack print from an embedded TrueType font, '?' without one).
//
// Every page shows the title, the printing date and time ("2026/11/21 09:00:00", from the
// platform clock), the column headings, its rows and "n / m" at the foot. Columns of width 0
// (hidden in the list) are not printed. Control bytes in texts print as blanks; a text too long
// for its cell is cut with "...". See print/list_print_layout.h for the page layout.
//
// Each returns true when the job was printed; false, with nothing printed, when the dialog is
// cancelled, there is nothing to print (no visible column; for the partial print no selected
// row) or the job fails (for a PDF file: an unwritable path or a missing folder; an existing
// file stays as it was).
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "platform/list_control.h"

// The list as it is: headings underlined, no grid.
ORDERVIEW_API bool g_vPrintListCtrl(const CListCtrl& list, const CString& title);
// The same with a grid around every cell and a shaded heading row, as a spreadsheet prints.
ORDERVIEW_API bool g_vPrintListCtrlExcelStyle(const CListCtrl& list, const CString& title);
// The same as g_vPrintListCtrl plus a bold totals row after the last row, for the columns whose
// every non-empty cell is a number (print/list_totals.h gives the rule).
ORDERVIEW_API bool g_vPrintListCtrlInventory(const CListCtrl& list, const CString& title);
// Only the rows selected in the list, as g_vPrintListCtrl prints them.
ORDERVIEW_API bool g_vPrintListCtrlPatial(const CListCtrl& list, const CString& title);
