#include "format/contract_month.h"

#include "order_data/host_api.h"
#include "platform/platform.h"

namespace {

// Month of a month letter; futures also use the lower-case block '`'..'t'. Other letters give 0.
int MonthOf(char letter, bool futures)
{
    static const char kUpper[] = "FGHJKMNQUVXZ";
    static const char kLower[] = "`abdeghkoprt";
    for (int i = 0; i < 12; ++i) {
        if (letter == kUpper[i]) return i + 1;
        if (futures && letter == kLower[i]) return i + 1;
    }
    return 0;
}

// The year of a year digit: this decade, or the next when the digit is below this year's.
int YearOf(char digit)
{
    const int current = orderview::GetPlatform().GetLocalTime().wYear;
    int year = current - current % 10 + (digit - '0');
    if (year < current) year += 10;
    return year;
}

// Formats the short or long form of a month code (at least two characters expected; missing
// characters read as NUL).
CString Format(bool longForm, const CString& code, bool futures)
{
    const int month = MonthOf(code[0], futures);
    const int year = YearOf(code[1]);
    CString out;
    if (longForm)
        out.Format("%02d%02d%s", year % 100, month, code.Right(2).GetString());
    else
        out.Format("%04d%02d", year, month);
    return out;
}

CString Translated(unsigned char serviceId, const CString& symbol)
{
    CString translated;
    BKOrderInterface::GetBKInterface().bGetTransferTableSymbolID(translated, serviceId, symbol);
    return translated;
}

}  // namespace

bool g_GetFutureYearMonth(bool longForm, const CString& symbol, CString& out)
{
    if (symbol.GetLength() <= 3) {
        out = "200001";
        return false;
    }
    CString code = symbol.Right(longForm ? 4 : 2);
    if (!longForm && (code == "00" || code.Right(1) == "&" || code.Right(1) == "@")) {
        const CString translated = Translated(1, symbol);
        if (!translated.IsEmpty()) code = translated.Right(2);
    }
    out = Format(longForm, code, true);
    return true;
}

bool g_GetOptionYearMonth(bool longForm, const CString& symbol, CString& out)
{
    const int p = symbol.Find(';');
    if (p < 2) return false;
    // A long code needs four characters before the ';'; with fewer it is what stands there.
    CString code = longForm ? symbol.Mid(p - 4 < 0 ? 0 : p - 4, p - 4 < 0 ? p : 4) : symbol.Mid(p - 2, 2);
    if (!longForm && (code == "00" || code == "&" || code == "@")) {
        // The translated id is cut at the position found in the untranslated symbol.
        const CString translated = Translated(106, symbol);
        if (!translated.IsEmpty()) code = translated.Mid(p - 2, 2);
    }
    out = Format(longForm, code, false);
    return true;
}
