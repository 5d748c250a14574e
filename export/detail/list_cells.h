// What the exports read from a list control and how they judge a cell (internal to export/).
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "platform/list_control.h"
#include "platform/platform.h"

namespace orderview {

// A column heading as read into the host's 80-character buffer: at most 79 bytes.
CString ColumnHeading(const CListCtrl& list, int column);

// The alignment style of each column from its format bits: "text-align:left", ":right" or
// ":center".
std::vector<CString> ColumnStyles(const CListCtrl& list);

// Whether a cell of a column with `style` is exported as a number: the column is right-aligned,
// the text holds a digit or a comma and no backslash, blank or colon.
bool IsNumberCell(const CString& style, const CString& text);
// The same judged by the column's format bits instead of its style.
bool IsNumberCell(int columnFormat, const CString& text);

// The number cell kind of a number text (see ExportFile) and its decimals pattern: one '#' per
// character after the decimal point.
int NumberKind(const CString& text, CString& decimals);

// The value of a number text: grouping commas dropped, a percent divided by 100. False when
// what remains is not a whole, finite decimal number.
bool NumberValue(const CString& text, double& value);

// What an export asks the save-as dialog: the default extension and the filter, and a prompt
// before overwriting.
SaveFileRequest ExportSaveRequest(const char* defaultExt, const char* filter);
// Shows the save-as dialog with `request`; true with the chosen path on OK.
bool AskSavePath(const SaveFileRequest& request, CString& path);

}  // namespace orderview
