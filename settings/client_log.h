// The client log: lines handed to the front end's debug log, and a daily log file of the
// library's own under "<main>\Log".
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"

// Hands a line feed, the text and a line feed to the front end's debug log; always true.
ORDERVIEW_API bool g_ClientbWriteLog(CString& text);
// Appends the text and a line feed to "<main>\Log\yyyymmdd.log" (today's local date). A missing
// "Log" folder is not created: the line is then dropped without a report.
ORDERVIEW_API void AppendDailyLog(const char* text);
