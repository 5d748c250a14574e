// Exports of a list control to a file the user picks in a save-as dialog: CSV or a text table,
// an HTML table that spreadsheet programs open as a worksheet, and a binary workbook.
//
// Each export fails silently: a cancelled dialog or a file that cannot be written ends it with
// no message. Every file is written under a temporary name beside the chosen one and renamed
// over it at the end, so a failure half-way never destroys a file that was there.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"
#include "platform/list_control.h"

// The list as CSV (filter 1) or a text table (filter 2): every line ends in "\r\n", each field
// is followed by the separator ("," or a blank) except the last, which is followed by a blank.
// No quoting. Text fields are padded to 20; the commodity column ("IDS_ORDER-ITEM_COMMODITY")
// to 50 and the average-price column ("IDS_ORDER-ITEM_AVEPRICE") to 30 in the heading line and
// 50 in the rows. Both default to the last column; in them a cell with a line break after its
// first character is shown as its two halves joined by ";" ("AB\r\nCD" gives "AB;CD").
ORDERVIEW_API void g_DataExport(CListCtrl& list);

// The list as an HTML table (".xls"): the site's style sheet from "sys\xls_head.txt" of the main
// folder, a row with the user's name, branch and account (`user`, or the order back end's user
// when null), the unoffset grouping row when `title` names the stock unoffset tab and
// [ORDER_SETTING] USE_NEWSTOCKUNOFFSET is 1, the heading row and one row per list row. Cells of
// right-aligned columns that read as numbers are number cells. `caption` is not shown.
ORDERVIEW_API void g_DataExportXls(CListCtrl& list, const CString& title, const CString& caption,
                                   CBaseOrder_UserInfo* user);

// The same for the unoffset screen's two lists, without the grouping row: the first list, then,
// when `withSecondList` is set, a row labelled "IDS_QWORDERVIEW_GLOABLDATAPROC_SECURITY_LENDING"
// and the second list with its own headings.
ORDERVIEW_API void g_UnoffsetDataExportXls(CListCtrl& list, CListCtrl& secondList, const CString& title,
                                           const CString& caption, CBaseOrder_UserInfo* user,
                                           bool withSecondList);

// The list as a binary workbook (".xls"): the headings in row 0, one row per list row; cells the
// HTML export marks as numbers hold numbers (grouping commas dropped, a percent divided by 100)
// when they read as one, all others text. Plain ASCII texts are stored as 8-bit text; any other
// text is read in the narrow code page (platform/narrow_text.h) and stored as UTF-16, cut between
// characters to 32,767 code units. The first sheet is named `sheetName`; a list longer than a
// sheet's 65,535 data rows goes on over sheets named "`sheetName` (2)", "`sheetName` (3)", ...
// (the name cut to keep within 31 characters), each with the heading row. False, with nothing
// written, when the dialog is cancelled, the sheet name is not valid, the list has more than 256
// columns or the file cannot be written.
ORDERVIEW_API bool g_DataExportWorkbook(CListCtrl& list, const CString& sheetName);
