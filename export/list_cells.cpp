#include "export/detail/list_cells.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

namespace orderview {

namespace {
constexpr int kHeadingBuffer = 80;
}

CString ColumnHeading(const CListCtrl& list, int column)
{
    const CString heading = list.GetColumnText(column);
    const std::size_t length = std::strlen(heading.GetString());
    return CString(heading.GetString(), static_cast<int>(std::min<std::size_t>(length, kHeadingBuffer - 1)));
}

std::vector<CString> ColumnStyles(const CListCtrl& list)
{
    std::vector<CString> styles;
    const int count = list.GetColumnCount();
    for (int column = 0; column < count; ++column) {
        switch (list.GetColumnFormat(column) & 3) {
        case CListCtrl::kFormatRight: styles.emplace_back("text-align:right"); break;
        case CListCtrl::kFormatCenter: styles.emplace_back("text-align:center"); break;
        default: styles.emplace_back("text-align:left"); break;
        }
    }
    return styles;
}

// The text half of the number rule: a digit or a comma, and no backslash, blank or colon.
static bool IsNumberText(const CString& text)
{
    return !text.IsEmpty() && text.FindOneOf("0123456789,") >= 0 && text.FindOneOf("\\ :") < 0;
}

bool IsNumberCell(const CString& style, const CString& text) { return style.Find("right") > 0 && IsNumberText(text); }

bool IsNumberCell(int columnFormat, const CString& text)
{
    return (columnFormat & 3) == CListCtrl::kFormatRight && IsNumberText(text);
}

int NumberKind(const CString& text, CString& decimals)
{
    const int percent = text.Find('%');
    const int point = text.Find('.');
    decimals.Empty();
    if (point >= 0) decimals = CString('#', static_cast<int>(std::strlen(text.GetString())) - point - 1);
    if (percent >= 0) return point >= 0 ? 4 : 3;
    return point >= 0 ? 2 : 1;
}

bool NumberValue(const CString& text, double& value)
{
    std::string digits;
    bool percent = false;
    for (const char* p = text.GetString(); *p; ++p) {
        if (*p == ',') continue;
        if (*p == '%' && !percent && p[1] == '\0') {
            percent = true;
            continue;
        }
        digits += *p;
    }
    // from_chars takes no leading '+'; a number may carry one.
    const char* first = digits.data();
    const char* last = first + digits.size();
    if (first != last && *first == '+') ++first;
    if (first == last || !(std::isdigit(static_cast<unsigned char>(*first)) || *first == '-' || *first == '.'))
        return false;
    double parsed = 0;
    const auto result = std::from_chars(first, last, parsed, std::chars_format::fixed);
    if (result.ec != std::errc() || result.ptr != last || !std::isfinite(parsed)) return false;
    value = percent ? parsed / 100 : parsed;
    return true;
}

SaveFileRequest ExportSaveRequest(const char* defaultExt, const char* filter)
{
    SaveFileRequest request;
    request.csDefaultExt = defaultExt;
    request.csFilter = filter;
    request.bOverwritePrompt = true;
    return request;
}

bool AskSavePath(const SaveFileRequest& request, CString& path)
{
    CString chosen;
    if (!GetPlatform().SaveFileDialog(request, chosen) || chosen.IsEmpty()) return false;
    path = chosen;
    return true;
}

}  // namespace orderview
