#include "export/list_print_layout.h"

#include <algorithm>
#include <cmath>

#include "export/list_totals.h"

namespace orderview {

namespace {

// A list's pixels print as 0.75 point each at the largest font: a screen at 96 dots per inch.
// The font follows the scale: kMaxFontSize * scale / kNaturalScale.
constexpr double kNaturalScale = 0.75;
constexpr double kMinScale = kNaturalScale * kMinFontSize / kMaxFontSize;
constexpr double kRowHeightPerPoint = 1.6;

struct Visible {
    int column;
    double pixels;
};

PrintAlign AlignOf(int format)
{
    switch (format & 3) {
    case CListCtrl::kFormatRight: return PrintAlign::kRight;
    case CListCtrl::kFormatCenter: return PrintAlign::kCenter;
    default: return PrintAlign::kLeft;
    }
}

double PrintableWidth(const PrintPaper& paper)
{
    return std::max(1.0, paper.dWidth - paper.dMarginLeft - paper.dMarginRight);
}

double FontForScale(double scale) { return std::min(kMaxFontSize, kMaxFontSize * scale / kNaturalScale); }

// Splits the columns into groups that fit `width` at the smallest font; every group after the
// first starts with the first column again. Columns are capped so that the first column and
// any other one share a page.
std::vector<std::vector<Visible>> SplitColumns(std::vector<Visible> columns, double width, bool split)
{
    const double cap = width / kMinScale / 2;
    for (Visible& v : columns) v.pixels = std::min(v.pixels, cap);
    if (!split) return {columns};
    std::vector<std::vector<Visible>> groups(1);
    double used = 0;
    for (const Visible& v : columns) {
        if (!groups.back().empty() && used + v.pixels > width / kMinScale) {
            groups.push_back({columns.front()});
            used = columns.front().pixels;
        }
        groups.back().push_back(v);
        used += v.pixels;
    }
    return groups;
}

// The font of a single group filling the printable width.
double SingleGroupFont(const std::vector<Visible>& columns, double width)
{
    double pixels = 0;
    for (const Visible& v : columns) pixels += std::min(v.pixels, width / kMinScale / 2);
    return FontForScale(width / pixels);
}

}  // namespace

bool LayOutListPrint(IPrintJob& job, const CListCtrl& list, std::vector<int> rows, ListPrintStyle style,
                     ListPrintLayout& layout)
{
    std::vector<Visible> columns;
    const int count = list.GetColumnCount();
    for (int c = 0; c < count; ++c) {
        const int pixels = list.GetColumnWidth(c);
        if (pixels > 0) columns.push_back({c, static_cast<double>(pixels)});
    }
    if (columns.empty()) return false;

    PrintPaper paper = job.GetPaper();
    double font = SingleGroupFont(columns, PrintableWidth(paper));
    if (font < kMinFontSize && !paper.bLandscape && job.SetLandscape(true)) {
        paper = job.GetPaper();
        font = SingleGroupFont(columns, PrintableWidth(paper));
    }
    const double width = PrintableWidth(paper);
    const auto groups = SplitColumns(columns, width, font < kMinFontSize);

    layout = ListPrintLayout();
    layout.paper = paper;
    double smallest = kMaxFontSize;
    for (const auto& group : groups) {
        double pixels = 0;
        for (const Visible& v : group) pixels += v.pixels;
        const double scale = width / pixels;
        smallest = std::min(smallest, FontForScale(scale));
        std::vector<ListPrintColumn> placed;
        double left = paper.dMarginLeft;
        for (const Visible& v : group) {
            ListPrintColumn column;
            column.iColumn = v.column;
            column.dLeft = left;
            column.dWidth = v.pixels * scale;
            column.align = AlignOf(list.GetColumnFormat(v.column));
            left += column.dWidth;
            placed.push_back(column);
        }
        layout.groups.push_back(std::move(placed));
    }
    layout.body.dSize = std::max(kMinFontSize, smallest);
    layout.dRowHeight = layout.body.dSize * kRowHeightPerPoint;
    layout.dTableTop = paper.dMarginTop + kTitleHeight + kDateHeight;

    if (style == ListPrintStyle::kInventory) {
        std::vector<int> visible;
        for (const Visible& v : columns) visible.push_back(v.column);
        layout.totals = ColumnTotals(list, rows, visible);
        layout.bTotals = std::any_of(layout.totals.begin(), layout.totals.end(),
                                     [](const CString& t) { return !t.IsEmpty(); });
    }

    // Rows below the heading row, above the foot; at least one a page so that printing ends.
    const double bottom = paper.dHeight - paper.dMarginBottom - kFootHeight;
    const double room = bottom - layout.dTableTop - layout.dRowHeight;
    const double fit = room / layout.dRowHeight;
    layout.iRowsPerPage = fit >= 2 ? static_cast<int>(std::min(std::floor(fit), 1e6)) : 1;
    const long lines = static_cast<long>(rows.size()) + (layout.bTotals ? 1 : 0);
    layout.iRowBands = static_cast<int>(std::max(1L, (lines + layout.iRowsPerPage - 1) / layout.iRowsPerPage));
    layout.rows = std::move(rows);
    return true;
}

}  // namespace orderview
