#include "table_printer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "display_width.h"
#include "progress.h"

namespace ovcli {

namespace {

// Rows measured to size the columns.
constexpr int kMeasuredRows = 200;
// The widest a column but the last gets, in terminal columns: a longer text is cut between
// characters.
constexpr size_t kMaxColumnWidth = 60;

// Columns are measured and padded in terminal columns, not bytes: a Chinese character takes two.
void AppendCell(std::string& line, std::string_view shown, size_t width, bool right, bool last)
{
    size_t columns = 0;
    if (!last)
        shown = shown.substr(0, CutToWidth(shown, kMaxColumnWidth, columns));
    else if (right)
        columns = DisplayWidth(shown);  // a last column on the left needs no padding
    const size_t pad = columns < width ? width - columns : 0;
    if (right) line.append(pad, ' ');
    line.append(shown.data(), shown.size());
    if (!last) line.append(right ? 2 : pad + 2, ' ');
}

size_t CellWidth(std::string_view text) { return std::min(DisplayWidth(text), kMaxColumnWidth); }

std::string_view View(const CString& text) { return {text.GetString(), static_cast<size_t>(text.GetLength())}; }

}  // namespace

bool PrintTable(const OrderList& list, LineOutput& out, Progress* progress)
{
    const int columns = list.GetColumnCount();
    std::vector<size_t> widths(static_cast<size_t>(columns));
    std::vector<bool> right(static_cast<size_t>(columns));
    for (int c = 0; c < columns; ++c) {
        widths[static_cast<size_t>(c)] = CellWidth(View(list.GetColumnText(c)));
        right[static_cast<size_t>(c)] = (list.GetColumnFormat(c) & 3) == CListCtrl::kFormatRight;
    }
    // The first rows are measured and kept, row by row: a list fills a whole row to give one of
    // its texts, and goes through its rows once.
    std::vector<std::vector<std::string>> first;
    for (int r = 0; r < kMeasuredRows && list.ReachRow(r); ++r) {
        first.emplace_back();
        for (int c = 0; c < columns; ++c) {
            first.back().emplace_back(list.CellText(r, c));
            widths[static_cast<size_t>(c)] = std::max(widths[static_cast<size_t>(c)], CellWidth(first.back().back()));
        }
    }
    std::string line;
    const auto putRow = [&](int row, const auto& text) {
        line.clear();
        for (int c = 0; c < columns; ++c)
            AppendCell(line, text(c), widths[static_cast<size_t>(c)], right[static_cast<size_t>(c)], c + 1 == columns);
        line += '\n';
        if (!out.Put(line)) return false;
        if (progress && row >= 0) progress->Step(static_cast<size_t>(row) + 1);
        return true;
    };
    if (!putRow(-1, [&](int c) { return list.GetColumnText(c).str(); })) return false;
    line.clear();
    for (int c = 0; c < columns; ++c) {
        line.append(widths[static_cast<size_t>(c)], '-');
        line += c + 1 == columns ? "\n" : "  ";
    }
    if (!out.Put(line)) return false;
    for (std::size_t r = 0; r < first.size(); ++r) {
        const std::vector<std::string>& kept = first[r];
        if (!putRow(static_cast<int>(r), [&](int c) { return std::string_view(kept[static_cast<size_t>(c)]); }))
            return false;
    }
    for (int r = static_cast<int>(first.size()); list.ReachRow(r); ++r)
        if (!putRow(r, [&](int c) { return list.CellText(r, c); })) return false;
    return out.Flush();
}

}  // namespace ovcli
