#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "platform/list_control.h"
#include "platform/narrow_text.h"
#include "print/list_print.h"
#include "print/list_print_layout.h"
#include "support/export_setup.h"
#include "support/fake_platform.h"
#include "support/print_recorder.h"
#include "support/temp_folder.h"

namespace {

using orderview::MemoryListCtrl;
using orderview::PrintAlign;

constexpr int kLeft = CListCtrl::kFormatLeft, kRight = CListCtrl::kFormatRight, kCenter = CListCtrl::kFormatCenter;

struct Column {
    const char* heading;
    int format;
    int width;
};

MemoryListCtrl MakeList(const std::vector<Column>& columns, const std::vector<std::vector<CString>>& rows)
{
    MemoryListCtrl list;
    for (const Column& c : columns) list.InsertColumn(c.heading, c.format, c.width);
    for (const auto& row : rows) list.InsertItem(row);
    return list;
}

// `count` columns "C0".."Cn" of one width, and `rows` rows of "r<row>c<column>".
MemoryListCtrl WideList(int count, int width, int rows)
{
    MemoryListCtrl list;
    for (int c = 0; c < count; ++c) list.InsertColumn(CString("C") + CString(std::to_string(c)), kLeft, width);
    for (int r = 0; r < rows; ++r) {
        std::vector<CString> cells;
        for (int c = 0; c < count; ++c) cells.emplace_back("r" + std::to_string(r) + "c" + std::to_string(c));
        list.InsertItem(cells);
    }
    return list;
}

class ListPrint : public ::testing::Test {
protected:
    ListPrint()
    {
        fake.SetDate(2026, 11, 21, 9, 30, 5);
        fake.printDialog = ovtest::RecordInto(record, orderview::A4Paper());
    }

    // The page count the layout computes for all of the list's rows on A4.
    int LaidOutPages(const CListCtrl& list, orderview::ListPrintStyle style)
    {
        std::vector<int> rows(static_cast<std::size_t>(list.GetItemCount()));
        std::iota(rows.begin(), rows.end(), 0);
        ovtest::PrintRecord scratch;
        ovtest::PrintRecorder job(scratch, orderview::A4Paper());
        orderview::ListPrintLayout layout;
        EXPECT_TRUE(orderview::LayOutListPrint(job, list, std::move(rows), style, layout));
        return layout.PageCount();
    }

    const ovtest::RecordedText* Find(std::size_t page, const std::string& text) const
    {
        for (const auto& t : record.pages.at(page).texts)
            if (t.text == text) return &t;
        return nullptr;
    }

    ovtest::FakePlatform fake;
    ovtest::PrintRecord record;
};

// Landscape A4 holds 770 points: 1,540 pixels at 6 points. Columns that fit at the smallest font
// share a page; others split evenly, the first column starting every page.
TEST_F(ListPrint, NarrowColumnsTurnThePaperThenSplitEvenlyAcrossPages)
{
    struct Case { int columns; int width; bool canTurn; bool landscape; std::size_t pages; };
    const Case cases[] = {
        {6, 100, true, false, 1},     // 600 px: font stays at 9 on portrait
        {12, 100, true, true, 1},     // 1,200 px: under 6 points on portrait, 7.7 on landscape
        {30, 100, true, true, 3},     // 3,000 px: split on landscape
        {12, 100, false, false, 2},   // a printer that cannot turn: split on portrait
        {3, 100000, true, true, 2},   // absurd widths: capped, one column a page after the first
        {2, 1, true, false, 1},
        {14, 110, true, true, 1}, {15, 100, true, true, 1}, {16, 100, true, true, 2}, {17, 100, true, true, 2},
        {29, 100, true, true, 2}, {31, 100, true, true, 3}, {40, 100, true, true, 3}, {7, 220, true, true, 1},
        {8, 220, true, true, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.columns) + " columns of " + std::to_string(c.width));
        fake.printDialog = ovtest::RecordInto(record, orderview::A4Paper(), c.canTurn);
        ASSERT_TRUE(g_vPrintListCtrl(WideList(c.columns, c.width, 3), "Wide"));
        EXPECT_EQ(record.paper.bLandscape, c.landscape);
        EXPECT_FALSE(record.outsidePaper);
        ASSERT_EQ(record.pages.size(), c.pages);
        std::multiset<std::string> headings;
        std::size_t fewest = 1000, most = 0;
        for (std::size_t p = 0; p < record.pages.size(); ++p) {
            EXPECT_EQ(record.Texts(p).at(2), "C0") << "the first column starts every page";
            std::size_t onPage = 0;
            for (const auto& t : record.pages[p].texts) {
                if (t.text[0] == 'C') headings.insert(t.text), ++onPage;
                if (t.text[0] == 'r') EXPECT_GE(t.font.dSize, orderview::kMinFontSize);
            }
            fewest = std::min(fewest, onPage);
            most = std::max(most, onPage);
        }
        EXPECT_LE(most - fewest, 1u) << "no page of a lone column beside the first";
        EXPECT_EQ(headings.count("C0"), record.pages.size());
        for (int col = 1; col < c.columns; ++col) EXPECT_EQ(headings.count("C" + std::to_string(col)), 1u) << col;
    }
}

TEST_F(ListPrint, InventoryTotalsTheNumericColumns)
{
    struct Case { int format; std::vector<const char*> cells; const char* total; };
    const Case cases[] = {
        {kRight, {"1,234", "10", ""}, "1,244"},
        {kRight, {"12.50", "0.5"}, "13.00"},
        {kRight, {"0.1", "0.2"}, "0.3"},
        {kRight, {"3.5%", "25%"}, "28.5%"},
        {kRight, {"-5", "+2"}, "-3"},
        {kRight, {"999,999", "1"}, "1,000,000"},
        {kRight, {"-0.25", "0.05"}, "-0.20"},
        {kLeft, {"1", "2"}, ""},       // only right-aligned columns hold numbers
        {kCenter, {"1", "2"}, ""},
        {kRight, {"1", "12:30"}, ""},  // a colon makes a text
        {kRight, {"1", "A 1"}, ""},    // so does a blank
        {kRight, {"1", "--"}, ""},     // no digit
        {kRight, {"1", "1.2.3"}, ""},  // a number by the rule that does not read as one
        {kRight, {"", ""}, ""},
        {kRight, {"9223372036854775807", "1"}, ""},  // a sum past the 64-bit range
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cells[0] + std::string(" / ") + c.cells[1]);
        MemoryListCtrl list = MakeList({{"Symbol", kLeft, 80}, {"Value", c.format, 80}}, {});
        int r = 0;
        for (const char* cell : c.cells) list.InsertItem({CString("S") + CString(std::to_string(r++)), cell});
        ASSERT_TRUE(g_vPrintListCtrlInventory(list, "Positions"));
        // The totals row follows the last row, in bold, before the page number; the title and
        // the two headings are the other bold texts.
        const std::string total = c.total;
        const auto& last = record.pages.back().texts;
        const auto bold = std::count_if(last.begin(), last.end(), [](const auto& t) { return t.font.bBold; });
        EXPECT_EQ(bold, total.empty() ? 3 : 5) << "the label and the total";
        if (!total.empty()) {
            ASSERT_GE(last.size(), 2u);
            EXPECT_EQ(last[last.size() - 2].text, total);
            EXPECT_TRUE(last[last.size() - 2].font.bBold);
        }
    }
}

TEST_F(ListPrint, TotalsRowTakesAPageOfItsOwnWhenTheLastIsFull)
{
    // Find how many rows fill a page, then print exactly that many with a total. The rows flow
    // over the pages each once and in order, every page numbered.
    ASSERT_TRUE(g_vPrintListCtrl(WideList(2, 100, 300), "Count"));
    ASSERT_GT(record.pages.size(), 2u);
    int perPage = 0;
    std::vector<std::string> firstColumn;
    for (std::size_t p = 0; p < record.pages.size(); ++p) {
        for (const std::string& t : record.Texts(p))
            if (t.size() > 2 && t[0] == 'r' && t.substr(t.size() - 2) == "c0") firstColumn.push_back(t);
        if (p == 0) perPage = static_cast<int>(firstColumn.size());
        EXPECT_EQ(record.Texts(p).back(), std::to_string(p + 1) + " / " + std::to_string(record.pages.size()));
    }
    ASSERT_EQ(firstColumn.size(), 300u);
    for (int r = 0; r < 300; ++r) EXPECT_EQ(firstColumn[static_cast<std::size_t>(r)], "r" + std::to_string(r) + "c0");
    MemoryListCtrl list = MakeList({{"Symbol", kLeft, 80}, {"Qty", kRight, 80}}, {});
    for (int r = 0; r < perPage; ++r) list.InsertItem({"S", "2"});
    EXPECT_EQ(LaidOutPages(list, orderview::ListPrintStyle::kPlain), 1);
    EXPECT_EQ(LaidOutPages(list, orderview::ListPrintStyle::kInventory), 2);
    ASSERT_TRUE(g_vPrintListCtrlInventory(list, "Full"));
    ASSERT_EQ(record.pages.size(), 2u);
    EXPECT_EQ(record.Texts(1), (std::vector<std::string>{"Full", "2026/11/21 09:30:05", "Symbol", "Qty", "Total",
                                                         std::to_string(2 * perPage), "2 / 2"}));
}

TEST_F(ListPrint, InventoryTotalsPerCurrencyWithoutRequestsInTheListsFormat)
{
    ovtest::TranslatingHost host;
    host.texts = {{"IDS_ORDER-ITEM_ORDERNO", "Order no."},
                  {"IDS_QWORDERVIEW_SQWORDERSTOCKDLG_DELIVERYCURRENCY", "Currency"},
                  {"IDS_ORDER-COMMON_TOTAL", "Sum"}};
    const ovtest::InstalledHost guard(host);
    const std::vector<std::vector<CString>> rows = {
        {"A1-21", "TWD", "1", "1,000.5"}, {"A2-21", "USD", "2", "10.25"}, {"A1-U2", "TWD", "5", "999"},
        {"A3-C3", "USD", "7", "1"},       {"A4-22", "TWD", "999", "2"},   {"A5-C", "JPY", "3", "4"}};
    struct Case { std::vector<Column> columns; std::vector<int> cells; std::vector<std::string> totals; };
    const Case cases[] = {
        // One row per currency; change (-U) and cancel (-C) requests left out; the list groups
        // thousands, so every total does; a column's totals share its decimals.
        {{{"Order no.", kLeft, 80}, {"Currency", kLeft, 60}, {"Qty", kRight, 60}, {"Amount", kRight, 80}},
         {0, 1, 2, 3},
         {"Sum", "TWD", "1,000", "1,002.50", "Sum", "USD", "2", "10.25", "Sum", "JPY", "3", "4.00"}},
        // No currency column: one row over every currency.
        {{{"Order no.", kLeft, 80}, {"Qty", kRight, 60}, {"Amount", kRight, 80}}, {0, 2, 3},
         {"Sum", "1,005", "1,016.75"}},
        // No order number column: requests cannot be told apart and count; no cell groups
        // thousands, so no total does.
        {{{"Currency", kLeft, 60}, {"Symbol", kLeft, 60}, {"Qty", kRight, 60}}, {1, 0, 2},
         {"TWD", "Sum", "1005", "USD", "Sum", "9", "JPY", "Sum", "3"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.columns.size());
        std::vector<std::vector<CString>> picked;
        for (const auto& row : rows) {
            picked.emplace_back();
            for (const int cell : c.cells) picked.back().push_back(row[static_cast<std::size_t>(cell)]);
        }
        ASSERT_TRUE(g_vPrintListCtrlInventory(MakeList(c.columns, picked), "Positions"));
        ASSERT_EQ(record.pages.size(), 1u);
        const auto texts = record.Texts(0);
        ASSERT_GT(texts.size(), c.totals.size() + 1);
        EXPECT_EQ(std::vector<std::string>(texts.end() - 1 - static_cast<long>(c.totals.size()), texts.end() - 1),
                  c.totals);
    }
}

TEST_F(ListPrint, PartialPrintsOnlyTheSelectedRows)
{
    MemoryListCtrl list = WideList(2, 100, 5);
    EXPECT_FALSE(g_vPrintListCtrlPatial(list, "None"));
    EXPECT_TRUE(fake.printRequests.empty()) << "no dialog without a selected row";
    list.SetItemSelected(1, true);
    list.SetItemSelected(3, true);
    ASSERT_TRUE(g_vPrintListCtrlPatial(list, "Some"));
    EXPECT_EQ(record.Texts(0), (std::vector<std::string>{"Some", "2026/11/21 09:30:05", "C0", "C1", "r1c0", "r1c1",
                                                         "r3c0", "r3c1", "1 / 1"}));
    EXPECT_EQ(fake.printRequests.back().csDocName, "Some");
    // The plain style draws only the line under the headings.
    EXPECT_TRUE(record.pages[0].rects.empty());
    EXPECT_EQ(record.pages[0].lines.size(), 1u);
}

TEST_F(ListPrint, NothingIsPrintedWithoutColumnsOrWhenCancelled)
{
    EXPECT_FALSE(g_vPrintListCtrl(MemoryListCtrl(), "Empty"));
    EXPECT_FALSE(g_vPrintListCtrl(MakeList({{"A", kLeft, 0}, {"B", kLeft, -5}}, {{"1", "2"}}), "Hidden"));
    EXPECT_TRUE(fake.printRequests.empty());

    // A hidden column among visible ones is left out, and one too narrow even for "..." shows
    // nothing. The others share the printable width of 523 points (50:150), each keeps its
    // alignment, cells print regular at the largest size, control bytes as blanks.
    ASSERT_TRUE(g_vPrintListCtrl(MakeList({{"A", kRight, 50}, {"B", kLeft, 0}, {"C", kCenter, 150}, {"T", kLeft, 1}},
                                          {{"1", "2", "a\r\nb\tc\x01", "abc"}}),
                                 "One"));
    ASSERT_EQ(record.Texts(0),
              (std::vector<std::string>{"One", "2026/11/21 09:30:05", "A", "C", "1", "a  b c ", "1 / 1"}));
    const ovtest::RecordedText& right = *Find(0, "1");
    const ovtest::RecordedText& center = *Find(0, "a  b c ");
    EXPECT_EQ(right.align, PrintAlign::kRight);
    EXPECT_EQ(center.align, PrintAlign::kCenter);
    EXPECT_NEAR(right.box.dWidth + 4, 523.0 * 50 / 201, 1e-6);
    EXPECT_NEAR(center.box.dLeft + center.box.dWidth + 2, 36 + 523 - 523.0 / 201, 1e-6);
    EXPECT_FALSE(right.font.bBold);
    EXPECT_EQ(right.font.dSize, orderview::kMaxFontSize);

    // No rows: one page with the headings, in the grid style a shaded cell for each heading and
    // a line at each column edge.
    ASSERT_TRUE(g_vPrintListCtrlExcelStyle(MakeList({{"A", kLeft, 50}}, {}), "No rows"));
    EXPECT_EQ(record.Texts(0), (std::vector<std::string>{"No rows", "2026/11/21 09:30:05", "A", "1 / 1"}));
    EXPECT_EQ(record.pages[0].shadedRects, 1);
    EXPECT_EQ(record.pages[0].rects.size(), 1u);
    EXPECT_EQ(record.pages[0].lines.size(), 2u);

    fake.printDialog = nullptr;
    record = ovtest::PrintRecord();
    EXPECT_FALSE(g_vPrintListCtrlInventory(WideList(2, 50, 2), "Cancelled"));
    EXPECT_FALSE(record.finished);
}

TEST_F(ListPrint, CutsChineseBetweenCharacters)
{
    // 陳 and 台 in the narrow code page (three bytes each in UTF-8, two in Big5): a cut lands only
    // between them, at every width.
    std::string chinese;
    for (int i = 0; i < 30; ++i) chinese += orderview::Utf16ToNarrow(i % 2 ? u"\u9673" : u"\u53F0");
    for (const int width : {30, 31, 32, 45, 60, 61, 90}) {
        SCOPED_TRACE(width);
        record = ovtest::PrintRecord();
        ASSERT_TRUE(g_vPrintListCtrl(MakeList({{"Name", kLeft, width}, {"Wide", kLeft, 400}}, {{CString(chinese), "x"}}),
                                     "Cut"));
        const ovtest::RecordedText& printed = record.pages[0].texts.at(4);
        const std::string& t = printed.text;
        ASSERT_GT(t.size(), 3u);
        EXPECT_EQ(t.substr(t.size() - 3), "...");
        EXPECT_EQ(orderview::NarrowCutPoint(chinese, t.size() - 3), t.size() - 3) << t;
        EXPECT_EQ(chinese.compare(0, t.size() - 3, t, 0, t.size() - 3), 0);
        // It fits, and one more character would not have.
        EXPECT_LE(orderview::MeasureHelvetica(CString(t), printed.font), printed.box.dWidth);
        const std::size_t next = orderview::NarrowCharLength(std::string_view(chinese).substr(t.size() - 3));
        const std::string longer = chinese.substr(0, t.size() - 3 + next) + "...";
        EXPECT_GT(orderview::MeasureHelvetica(CString(longer), printed.font), printed.box.dWidth);
    }
}

TEST_F(ListPrint, BadInputPrintsToAValidFile)
{
    ovtest::TempFolder folder;
    const std::string path = folder.File("bad.pdf");
    fake.printDialog = [&path](const orderview::PrintRequest& request) {
        return orderview::StartPdfPrintJob(CString(path), request);
    };
    std::string high;
    for (int b = 0x80; b <= 0xFF; ++b) high += static_cast<char>(b);
    const MemoryListCtrl list =
        MakeList({{"(paren", kLeft, 0}, {"back\\slash)", kRight, 100000}, {"\r\n", kCenter, 1}, {"", kLeft, 80}},
                 {{"a", "(1)", "\\", CString(std::string(100000, '('))},
                  {CString(high), "\r\n\t\x01\x1F", CString(std::string(100000, '\\')), CString(high)}});
    const CString title(std::string(3000, 'T') + "(\\)");
    EXPECT_TRUE(g_vPrintListCtrl(list, title));
    EXPECT_TRUE(g_vPrintListCtrlExcelStyle(list, title));
    EXPECT_TRUE(g_vPrintListCtrlInventory(list, title));
    const std::string pdf = folder.Read("bad.pdf");
    EXPECT_EQ(pdf.compare(0, 8, "%PDF-1.4"), 0);
    EXPECT_EQ(pdf.substr(pdf.size() - 6), "%%EOF\n");
    EXPECT_LT(pdf.size(), 100000u) << "cut texts, not whole cells";
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) files += entry.is_regular_file();
    EXPECT_EQ(files, 1u) << "no temporary file left";
}

}  // namespace
