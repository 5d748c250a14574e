#include "table_printer.h"

#include <algorithm>
#include <string>
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
void AppendCell(std::string& line, const CString& text, size_t width, bool right, bool last)
{
    std::string_view shown(text.GetString(), static_cast<size_t>(text.GetLength()));
    size_t columns = 0;
    if (last)
        columns = DisplayWidth(shown);
    else
        shown = shown.substr(0, CutToWidth(shown, kMaxColumnWidth, columns));
    const size_t pad = columns < width ? width - columns : 0;
    if (right) line.append(pad, ' ');
    line += shown;
    if (!right && !last) line.append(pad, ' ');
    if (!last) line += "  ";
}

size_t CellWidth(const CString& text)
{
    return std::min(DisplayWidth(std::string_view(text.GetString(), static_cast<size_t>(text.GetLength()))),
                    kMaxColumnWidth);
}

}  // namespace

bool PrintTable(const CListCtrl& list, std::FILE* out, Progress* progress)
{
    const int columns = list.GetColumnCount();
    const int rows = list.GetItemCount();
    std::vector<size_t> widths(static_cast<size_t>(columns));
    std::vector<bool> right(static_cast<size_t>(columns));
    for (int c = 0; c < columns; ++c) {
        widths[static_cast<size_t>(c)] = CellWidth(list.GetColumnText(c));
        right[static_cast<size_t>(c)] = (list.GetColumnFormat(c) & 3) == CListCtrl::kFormatRight;
    }
    // Row by row: a list fills a whole row to give one of its texts.
    for (int r = 0; r < std::min(rows, kMeasuredRows); ++r)
        for (int c = 0; c < columns; ++c)
            widths[static_cast<size_t>(c)] = std::max(widths[static_cast<size_t>(c)], CellWidth(list.GetItemText(r, c)));
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
