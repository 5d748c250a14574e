// Error order files: the failed foreign orders of an account, kept as a profile file
// "<main>\sys\<account>.ord".
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"

// Writes the account's error order file. Kind 50 (foreign futures) writes the failed foreign
// orders as sections "FF1", "FF2", ...; any other kind writes only the date and a zero count.
// An account text that is empty, is "..", or holds '/', '\' or ':' would leave the "sys" folder:
// then nothing is written anywhere and the client log says why.
ORDERVIEW_API void g_vWriteErrorOrder(AccountType account, unsigned long kind);
// True when "<main>\sys" holds a ".ord" file whose name without extension is `name` (exact case).
ORDERVIEW_API bool g_bGetIni(CString name);
