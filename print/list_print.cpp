#include "print/list_print.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "print/list_print_layout.h"
#include "platform/narrow_text.h"
#include "platform/platform.h"

namespace orderview {

namespace {

constexpr double kCellPadding = 2;
constexpr double kTitleFontSize = 12;
constexpr double kSmallFontSize = 8;

// Control bytes print as blanks: a row is one line.
CString OneLine(const CString& text)
{
    const std::string& bytes = text.str();
    const auto control = [](char ch) { return static_cast<unsigned char>(ch) < 0x20 || ch == 0x7F; };
    if (std::none_of(bytes.begin(), bytes.end(), control)) return text;
    std::string line = bytes;
    std::replace_if(line.begin(), line.end(), control, ' ');
    return CString(std::move(line));
}

// The longest start of `text` that fits `width` with "..." after it, cut between characters;
// the text itself when it fits, nothing when not even "..." fits.
CString FitText(const IPrintJob& job, const CString& text, const PrintFont& font, double width)
{
    if (job.MeasureText(text, font) <= width) return text;
    const CString ellipsis("...");
    if (job.MeasureText(ellipsis, font) > width) return CString();
    // Where a cut may fall: after every byte of the text's leading ASCII (a byte below 0x80
    // before any other is a character of its own in every code page), then between characters.
    const std::string& bytes = text.str();
    std::size_t ascii = 0;
    while (ascii < bytes.size() && static_cast<unsigned char>(bytes[ascii]) < 0x80) ++ascii;
    std::vector<int> cuts;
    for (std::size_t at = ascii; at < bytes.size();) {
        cuts.push_back(static_cast<int>(at));
        at += NarrowCharLength(std::string_view(bytes).substr(at));
    }
    const auto cutAt = [&](int k) { return k <= static_cast<int>(ascii) ? k : cuts[static_cast<std::size_t>(k) - ascii]; };
    // Cut k (0 .. ascii + cuts.size() - 1) keeps the first cutAt(k) bytes.
    int fits = 0, over = static_cast<int>(ascii + cuts.size());
    while (over - fits > 1) {
        const int mid = fits + (over - fits) / 2;
        if (job.MeasureText(text.Left(cutAt(mid)) + ellipsis, font) <= width) fits = mid;
        else over = mid;
    }
    return text.Left(cutAt(fits)) + ellipsis;
}

class ListPrinter {
public:
    ListPrinter(IPrintJob& job, const CListCtrl& list, const ListPrintLayout& layout, ListPrintStyle style,
                const CString& title)
        : job_(job), list_(list), layout_(layout), style_(style)
    {
        const PrintPaper& paper = layout.paper;
        width_ = paper.dWidth - paper.dMarginLeft - paper.dMarginRight;
        heading_ = layout.body;
        heading_.bBold = true;
        titleFont_ = PrintFont{kTitleFontSize, true};
        smallFont_ = PrintFont{kSmallFontSize, false};
        title_ = FitText(job, OneLine(title), titleFont_, width_);
        const LocalTime now = GetPlatform().GetLocalTime();
        printedAt_.Format("%04d/%02d/%02d %02d:%02d:%02d", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                          now.wSecond);
    }

    bool Print()
    {
        const int pages = layout_.PageCount();
        int page = 0;
        for (int band = 0; band < layout_.iRowBands; ++band) {
            for (const auto& group : layout_.groups) {
                if (page > 0 && !job_.NextPage()) return false;
                ++page;
                DrawPage(group, band, page, pages);
            }
        }
        return job_.Finish();
    }

private:
    void DrawPage(const std::vector<ListPrintColumn>& group, int band, int page, int pages)
    {
        const PrintPaper& paper = layout_.paper;
        const double left = paper.dMarginLeft;
        job_.DrawText({left, paper.dMarginTop, width_, kTitleHeight}, title_, titleFont_, PrintAlign::kLeft);
        job_.DrawText({left, paper.dMarginTop + kTitleHeight, width_, kDateHeight}, printedAt_, smallFont_,
                      PrintAlign::kLeft);

        const double rowHeight = layout_.dRowHeight;
        double top = layout_.dTableTop;
        const double tableRight = group.back().dLeft + group.back().dWidth;
        for (const ListPrintColumn& column : group) {
            if (style_ == ListPrintStyle::kGrid) job_.DrawRect({column.dLeft, top, column.dWidth, rowHeight}, true);
            DrawCell(column, top, list_.GetColumnText(column.iColumn), heading_);
        }
        if (style_ != ListPrintStyle::kGrid) job_.DrawLine(left, top + rowHeight, tableRight, top + rowHeight);
        top += rowHeight;

        const std::size_t first = static_cast<std::size_t>(band) * static_cast<std::size_t>(layout_.iRowsPerPage);
        std::size_t end = first + static_cast<std::size_t>(layout_.iRowsPerPage);
        if (end > layout_.rows.size()) end = layout_.rows.size();
        const double bodyTop = top;
        for (std::size_t i = first; i < end; ++i) {
            for (const ListPrintColumn& column : group)
                DrawCell(column, top, list_.GetItemText(layout_.rows[i], column.iColumn), layout_.body);
            top += rowHeight;
            if (style_ == ListPrintStyle::kGrid) job_.DrawLine(left, top, tableRight, top);
        }
        if (style_ == ListPrintStyle::kGrid) {
            for (const ListPrintColumn& column : group) job_.DrawLine(column.dLeft, bodyTop, column.dLeft, top);
            job_.DrawLine(tableRight, bodyTop, tableRight, top);
        }
        if (layout_.bTotals && band == layout_.iRowBands - 1) {
            job_.DrawLine(left, top, tableRight, top);
            for (const auto& totals : layout_.totals) {
                for (const ListPrintColumn& column : group)
                    DrawCell(column, top, totals[static_cast<std::size_t>(column.iColumn)], heading_);
                top += rowHeight;
            }
        }

        CString number;
        number.Format("%d / %d", page, pages);
        job_.DrawText({left, paper.dHeight - paper.dMarginBottom - kFootHeight, width_, kFootHeight}, number,
                      smallFont_, PrintAlign::kCenter);
    }

    void DrawCell(const ListPrintColumn& column, double top, const CString& text, const PrintFont& font)
    {
        if (text.IsEmpty()) return;
        const double width = column.dWidth - 2 * kCellPadding;
        const CString fitted = FitText(job_, OneLine(text), font, width);
        if (!fitted.IsEmpty())
            job_.DrawText({column.dLeft + kCellPadding, top, width, layout_.dRowHeight}, fitted, font, column.align);
    }

    IPrintJob& job_;
    const CListCtrl& list_;
    const ListPrintLayout& layout_;
    ListPrintStyle style_;
    double width_ = 0;
    PrintFont heading_, titleFont_, smallFont_;
    CString title_, printedAt_;
};

bool PrintList(const CListCtrl& list, const CString& title, ListPrintStyle style, bool selectedOnly)
{
    std::vector<int> rows;
    const int count = list.GetItemCount();
    for (int row = 0; row < count; ++row)
        if (!selectedOnly || list.GetItemSelected(row)) rows.push_back(row);
    if (selectedOnly && rows.empty()) return false;
    bool visible = false;
    for (int c = 0; c < list.GetColumnCount() && !visible; ++c) visible = list.GetColumnWidth(c) > 0;
    if (!visible) return false;

    PrintRequest request;
    request.csDocName = title;
    const std::unique_ptr<IPrintJob> job = GetPlatform().StartPrintJob(request);
    if (!job) return false;
    ListPrintLayout layout;
    if (!LayOutListPrint(*job, list, std::move(rows), style, layout)) return false;
    return ListPrinter(*job, list, layout, style, title).Print();
}

}  // namespace

}  // namespace orderview

bool g_vPrintListCtrl(const CListCtrl& list, const CString& title)
{
    return orderview::PrintList(list, title, orderview::ListPrintStyle::kPlain, false);
}

bool g_vPrintListCtrlExcelStyle(const CListCtrl& list, const CString& title)
{
    return orderview::PrintList(list, title, orderview::ListPrintStyle::kGrid, false);
}

bool g_vPrintListCtrlInventory(const CListCtrl& list, const CString& title)
{
    return orderview::PrintList(list, title, orderview::ListPrintStyle::kInventory, false);
}

bool g_vPrintListCtrlPatial(const CListCtrl& list, const CString& title)
{
    return orderview::PrintList(list, title, orderview::ListPrintStyle::kPlain, true);
}
