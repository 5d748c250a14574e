#include "print/list_print_layout.h"

#include <algorithm>
#include <cmath>

#include "print/detail/list_totals.h"

namespace orderview {

namespace {

// A list's pixels print as 0.75 point each at the largest font: a screen at 96 dots per inch.
// The font follows the scale: kMaxFontSize * scale / kNaturalScale.
constexpr double kNaturalScale = 0.75;
constexpr double kMinScale = kNaturalScale * kMinFontSize / kMaxFontSize;
constexpr double kRowHeightPerPoint = 1.6;
// The blank each side of a cell's text, in points (as the list printer draws it).
constexpr double kTextPadding = 2;

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

// Greedy groups of at most `capacity` pixels, every group after the first starting with the
// first column again.
std::vector<std::vector<Visible>> Pack(const std::vector<Visible>& columns, double capacity)
{
    std::vector<std::vector<Visible>> groups(1);
    double used = 0;
    for (const Visible& v : columns) {
        if (!groups.back().empty() && used + v.pixels > capacity) {
            groups.push_back({columns.front()});
            used = columns.front().pixels;
        }
        groups.back().push_back(v);
        used += v.pixels;
    }
    return groups;
}

// Splits the columns into groups that fit `width` at the smallest font; every group after the
// first starts with the first column again. Columns are capped so that the first column and
// any other one share a page. The groups are as few as the page allows and as even as they can
// be: the smallest capacity that still packs into that many groups.
std::vector<std::vector<Visible>> SplitColumns(std::vector<Visible> columns, double width, bool split)
{
    const double cap = width / kMinScale / 2;
    for (Visible& v : columns) v.pixels = std::min(v.pixels, cap);
    if (!split) return {columns};
    const double capacity = width / kMinScale;
    const std::size_t fewest = Pack(columns, capacity).size();
    double low = 0, high = capacity;
    for (const Visible& v : columns) low = std::max(low, v.pixels + (&v == &columns.front() ? 0 : columns.front().pixels));
    low = std::min(low, high);
    for (int step = 0; step < 40 && high - low > 0.5; ++step) {
        const double mid = (low + high) / 2;
        if (Pack(columns, mid).size() <= fewest) high = mid;
        else low = mid;
    }
    return Pack(columns, high);
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

    // The totals rows print in bold: a column is at least as wide as its totals at the largest
    // font, with the cell padding at the smallest.
    std::vector<std::vector<CString>> totals;
    if (style == ListPrintStyle::kInventory) {
        std::vector<int> visible;
        for (const Visible& v : columns) visible.push_back(v.column);
        totals = TotalsRows(list, rows, visible);
        const PrintFont bold{kMaxFontSize, true};
        for (Visible& v : columns)
            for (const auto& row : totals) {
                const CString& text = row[static_cast<std::size_t>(v.column)];
                if (!text.IsEmpty())
                    v.pixels = std::max(v.pixels, job.MeasureText(text, bold) / kNaturalScale + 2 * kTextPadding / kMinScale);
            }
    }

    PrintPaper paper = job.GetPaper();
    // Fitting at exactly the smallest font is fitting: allow for rounding in the scale.
    constexpr double kSlack = 1e-9;
    double font = SingleGroupFont(columns, PrintableWidth(paper));
    if (font + kSlack < kMinFontSize && !paper.bLandscape && job.SetLandscape(true)) {
        paper = job.GetPaper();
        font = SingleGroupFont(columns, PrintableWidth(paper));
    }
    const double width = PrintableWidth(paper);
    const auto groups = SplitColumns(columns, width, font + kSlack < kMinFontSize);

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
    layout.totals = std::move(totals);
    layout.bTotals = !layout.totals.empty();


    // Rows below the heading row, above the foot; at least one a page so that printing ends.
    const double bottom = paper.dHeight - paper.dMarginBottom - kFootHeight;
    const double room = bottom - layout.dTableTop - layout.dRowHeight;
    const double fit = room / layout.dRowHeight;
    layout.iRowsPerPage = fit >= 2 ? static_cast<int>(std::min(std::floor(fit), 1e6)) : 1;
    // The totals rows share the last page of rows; a page holds at least all of them.
    const long totalRows = static_cast<long>(layout.totals.size());
    if (layout.iRowsPerPage < totalRows) layout.iRowsPerPage = static_cast<int>(totalRows);
    const long lines = static_cast<long>(rows.size()) + totalRows;
    layout.iRowBands = static_cast<int>(std::max(1L, (lines + layout.iRowsPerPage - 1) / layout.iRowsPerPage));
    layout.rows = std::move(rows);
    return true;
}

}  // namespace orderview
