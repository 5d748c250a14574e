#include "table_printer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "progress.h"

namespace ovcli {

namespace {

// Rows measured to size the columns.
constexpr int kMeasuredRows = 200;

void AppendCell(std::string& line, const CString& text, size_t width, bool right, bool last)
{
    const size_t length = static_cast<size_t>(text.GetLength());
    const size_t pad = length < width ? width - length : 0;
    if (right) line.append(pad, ' ');
    line += text.str();
    if (!right && !last) line.append(pad, ' ');
    if (!last) line += "  ";
}

}  // namespace

bool PrintTable(const CListCtrl& list, std::FILE* out, Progress* progress)
{
    const int columns = list.GetColumnCount();
    const int rows = list.GetItemCount();
    std::vector<size_t> widths(static_cast<size_t>(columns));
    std::vector<bool> right(static_cast<size_t>(columns));
    for (int c = 0; c < columns; ++c) {
        widths[static_cast<size_t>(c)] = static_cast<size_t>(list.GetColumnText(c).GetLength());
        right[static_cast<size_t>(c)] = (list.GetColumnFormat(c) & 3) == CListCtrl::kFormatRight;
        for (int r = 0; r < std::min(rows, kMeasuredRows); ++r)
            widths[static_cast<size_t>(c)] =
                std::max(widths[static_cast<size_t>(c)], static_cast<size_t>(list.GetItemText(r, c).GetLength()));
    }
    std::string line;
    for (int c = 0; c < columns; ++c)
        AppendCell(line, list.GetColumnText(c), widths[static_cast<size_t>(c)], right[static_cast<size_t>(c)],
                   c + 1 == columns);
    line += '\n';
    for (int c = 0; c < columns; ++c) {
        line.append(widths[static_cast<size_t>(c)], '-');
        line += c + 1 == columns ? "\n" : "  ";
    }
    if (std::fputs(line.c_str(), out) == EOF) return false;
    for (int r = 0; r < rows; ++r) {
        line.clear();
        for (int c = 0; c < columns; ++c)
            AppendCell(line, list.GetItemText(r, c), widths[static_cast<size_t>(c)], right[static_cast<size_t>(c)],
                       c + 1 == columns);
        line += '\n';
        if (std::fputs(line.c_str(), out) == EOF) return false;
        if (progress) progress->Step(static_cast<size_t>(r) + 1);
    }
    return std::fflush(out) == 0;
}

}  // namespace ovcli
