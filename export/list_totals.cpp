#include "export/list_totals.h"

#include <string>

#include "export/list_cells.h"

namespace orderview {

namespace {

constexpr int kMaxDecimals = 9;

struct Decimal {
    long long units = 0;  // the value times 10^decimals
    int decimals = 0;
    bool commas = false;
    bool percent = false;
};

bool Push(long long& value, int digit)
{
    return !__builtin_mul_overflow(value, 10LL, &value) && !__builtin_add_overflow(value, digit, &value);
}

bool ReadDecimal(const std::string& text, Decimal& d)
{
    const std::size_t n = text.size();
    std::size_t i = 0;
    bool negative = false;
    if (i < n && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    int digits = 0;
    for (; i < n && ((text[i] >= '0' && text[i] <= '9') || text[i] == ','); ++i) {
        if (text[i] == ',') {
            d.commas = true;
        } else if (++digits, !Push(d.units, text[i] - '0')) {
            return false;
        }
    }
    if (i < n && text[i] == '.') {
        for (++i; i < n && text[i] >= '0' && text[i] <= '9'; ++i) {
            if (++d.decimals > kMaxDecimals || !Push(d.units, text[i] - '0')) return false;
            ++digits;
        }
    }
    if (i < n && text[i] == '%') {
        d.percent = true;
        ++i;
    }
    if (negative) d.units = -d.units;
    return i == n && digits > 0;
}

bool Rescale(long long& units, int from, int to)
{
    for (; from < to; ++from)
        if (__builtin_mul_overflow(units, 10LL, &units)) return false;
    return true;
}

struct Sum {
    Decimal total;
    bool numbers = false;  // a number was seen
    bool summable = true;

    void Add(Decimal d)
    {
        const int decimals = d.decimals > total.decimals ? d.decimals : total.decimals;
        summable = Rescale(total.units, total.decimals, decimals) && Rescale(d.units, d.decimals, decimals) &&
                   !__builtin_add_overflow(total.units, d.units, &total.units);
        total.decimals = decimals;
        total.commas = total.commas || d.commas;
        total.percent = total.percent || d.percent;
        numbers = true;
    }
};

CString Format(const Decimal& d)
{
    if (d.units == (-9223372036854775807LL - 1)) return CString();
    const unsigned long long magnitude = static_cast<unsigned long long>(d.units < 0 ? -d.units : d.units);
    std::string digits = std::to_string(magnitude);
    if (digits.size() <= static_cast<std::size_t>(d.decimals)) digits.insert(0, d.decimals + 1 - digits.size(), '0');
    const std::string whole = digits.substr(0, digits.size() - d.decimals);
    std::string text = d.units < 0 ? "-" : "";
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (d.commas && i > 0 && (whole.size() - i) % 3 == 0) text += ',';
        text += whole[i];
    }
    if (d.decimals > 0) text += "." + digits.substr(whole.size());
    if (d.percent) text += '%';
    return CString(text);
}

}  // namespace

std::vector<CString> ColumnTotals(const CListCtrl& list, const std::vector<int>& rows, const std::vector<int>& columns)
{
    const int count = list.GetColumnCount();
    std::vector<CString> totals(static_cast<std::size_t>(count > 0 ? count : 0));
    for (const int column : columns) {
        if (column < 0 || column >= count) continue;
        const int format = list.GetColumnFormat(column);
        if ((format & 3) != CListCtrl::kFormatRight) continue;
        Sum sum;
        for (const int row : rows) {
            const CString text = list.GetItemText(row, column);
            if (text.IsEmpty()) continue;
            Decimal d;
            if (!IsNumberCell(format, text) || !ReadDecimal(text.str(), d)) sum.summable = false;
            if (!sum.summable) break;
            sum.Add(d);
            if (!sum.summable) break;
        }
        if (sum.summable && sum.numbers) totals[static_cast<std::size_t>(column)] = Format(sum.total);
    }
    return totals;
}

}  // namespace orderview
