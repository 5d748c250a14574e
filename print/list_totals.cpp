#include "print/detail/list_totals.h"

#include <algorithm>
#include <string>

#include "export/detail/list_cells.h"
#include "order_data/host_api.h"

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

CString Format(const Decimal& d, bool commas)
{
    if (d.units == (-9223372036854775807LL - 1)) return CString();
    const unsigned long long magnitude = static_cast<unsigned long long>(d.units < 0 ? -d.units : d.units);
    std::string digits = std::to_string(magnitude);
    if (digits.size() <= static_cast<std::size_t>(d.decimals)) digits.insert(0, d.decimals + 1 - digits.size(), '0');
    const std::string whole = digits.substr(0, digits.size() - d.decimals);
    std::string text = d.units < 0 ? "-" : "";
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (commas && i > 0 && (whole.size() - i) % 3 == 0) text += ',';
        text += whole[i];
    }
    if (d.decimals > 0) text += "." + digits.substr(whole.size());
    if (d.percent) text += '%';
    return CString(text);
}

// An order number of a change or cancel request: "...-C<seq>" or "...-U<seq>".
bool IsRequestNumber(const std::string& text)
{
    std::size_t i = text.size();
    while (i > 0 && text[i - 1] >= '0' && text[i - 1] <= '9') --i;
    return i < text.size() && i >= 2 && (text[i - 1] == 'C' || text[i - 1] == 'U') && text[i - 2] == '-';
}

CString Lang(const char* id)
{
    std::string copy(id);
    return s_LangGetLangString(&copy[0]);
}

// The first of `columns` headed by the language text of `id`, or -1.
int ColumnHeaded(const CListCtrl& list, const std::vector<int>& columns, const char* id)
{
    const CString heading = Lang(id);
    if (heading.IsEmpty()) return -1;
    for (const int column : columns)
        if (list.GetColumnText(column) == heading) return column;
    return -1;
}

}  // namespace

std::vector<std::vector<CString>> TotalsRows(const CListCtrl& list, const std::vector<int>& rows,
                                             const std::vector<int>& columns)
{
    const int count = list.GetColumnCount();
    if (count <= 0) return {};
    std::vector<int> shown;
    for (const int column : columns)
        if (column >= 0 && column < count) shown.push_back(column);
    const int orderColumn = ColumnHeaded(list, shown, "IDS_ORDER-ITEM_ORDERNO");
    const int currencyColumn = ColumnHeaded(list, shown, "IDS_QWORDERVIEW_SQWORDERSTOCKDLG_DELIVERYCURRENCY");
    std::vector<int> summed;  // right-aligned columns, the ones that can hold numbers
    for (const int column : shown)
        if ((list.GetColumnFormat(column) & 3) == CListCtrl::kFormatRight && column != currencyColumn)
            summed.push_back(column);

    std::vector<CString> currencies;
    std::vector<std::vector<Sum>> sums;  // by currency, then by list column
    std::vector<bool> summable(static_cast<std::size_t>(count), true);
    bool commas = false;
    for (const int row : rows) {
        if (orderColumn >= 0 && IsRequestNumber(list.GetItemText(row, orderColumn).str())) continue;
        const CString currency = currencyColumn >= 0 ? list.GetItemText(row, currencyColumn) : CString();
        std::size_t group = 0;
        while (group < currencies.size() && currencies[group] != currency) ++group;
        if (group == currencies.size()) {
            currencies.push_back(currency);
            sums.emplace_back(static_cast<std::size_t>(count));
        }
        for (const int column : summed) {
            const std::size_t c = static_cast<std::size_t>(column);
            if (!summable[c] && commas) continue;
            const CString text = list.GetItemText(row, column);
            if (text.IsEmpty()) continue;
            const bool number = IsNumberCell(list.GetColumnFormat(column), text);
            commas = commas || (number && text.Find(',') >= 0);
            Decimal d;
            if (!summable[c]) continue;
            if (!number || !ReadDecimal(text.str(), d)) {
                summable[c] = false;
                continue;
            }
            sums[group][c].Add(d);
            if (!sums[group][c].summable) summable[c] = false;
        }
    }

    std::vector<bool> totalled(static_cast<std::size_t>(count), false);
    for (const auto& byColumn : sums)
        for (const int column : summed)
            if (summable[static_cast<std::size_t>(column)] && byColumn[static_cast<std::size_t>(column)].numbers)
                totalled[static_cast<std::size_t>(column)] = true;
    if (std::find(totalled.begin(), totalled.end(), true) == totalled.end()) return {};
    int labelColumn = -1;
    for (const int column : shown)
        if (!totalled[static_cast<std::size_t>(column)] && column != currencyColumn) {
            labelColumn = column;
            break;
        }
    CString label = Lang("IDS_ORDER-COMMON_TOTAL");
    if (label.IsEmpty() || label == "IDS_ORDER-COMMON_TOTAL") label = "Total";

    // Every row of a column shows the decimals of the column's most precise cell.
    std::vector<int> decimals(static_cast<std::size_t>(count), 0);
    for (auto& byColumn : sums)
        for (const int column : summed) {
            const std::size_t c = static_cast<std::size_t>(column);
            if (byColumn[c].numbers) decimals[c] = std::max(decimals[c], byColumn[c].total.decimals);
        }
    std::vector<std::vector<CString>> out;
    for (std::size_t group = 0; group < sums.size(); ++group) {
        std::vector<CString> cells(static_cast<std::size_t>(count));
        if (labelColumn >= 0) cells[static_cast<std::size_t>(labelColumn)] = label;
        if (currencyColumn >= 0) cells[static_cast<std::size_t>(currencyColumn)] = currencies[group];
        for (const int column : summed) {
            const std::size_t c = static_cast<std::size_t>(column);
            if (totalled[c]) {
                Decimal total = sums[group][c].total;
                if (sums[group][c].numbers && Rescale(total.units, total.decimals, decimals[c])) {
                    total.decimals = decimals[c];
                    cells[c] = Format(total, commas);
                }
            }
        }
        out.push_back(std::move(cells));
    }
    return out;
}

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
        if (sum.summable && sum.numbers) totals[static_cast<std::size_t>(column)] = Format(sum.total, sum.total.commas);
    }
    return totals;
}

}  // namespace orderview
