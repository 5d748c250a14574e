#include <gtest/gtest.h>

#include "export/list_export.h"
#include "platform/narrow_text.h"
#include "support/export_setup.h"
#include "xls/book.h"
#include "xls/utf16.h"

namespace {

using orderview::MemoryListCtrl;

MemoryListCtrl MakeList(const std::vector<std::pair<const char*, int>>& columns,
                        const std::vector<std::vector<CString>>& rows)
{
    MemoryListCtrl list;
    for (const auto& column : columns) list.InsertColumn(column.first, column.second);
    for (const auto& row : rows) list.InsertItem(row);
    return list;
}

class ListExport : public ::testing::Test {
protected:
    void SetUp() override
    {
        setup.host.texts["IDS_ORDER-ITEM_COMMODITY"] = "Commodity";
        setup.host.texts["IDS_ORDER-ITEM_AVEPRICE"] = "AvgPx";
    }
    std::string Read(const char* name) const { return setup.folder.Read(name); }
    // What the CSV or text export (the file's extension picks the filter) writes into `file`.
    std::string Exported(MemoryListCtrl list, const char* file)
    {
        setup.SaveAs(file);
        g_DataExport(list);
        return Read(file);
    }
    ovtest::ExportSetup setup;
};

// ---- CSV and text -------------------------------------------------------------------------

TEST_F(ListExport, TextDialogAndCancel)
{
    MemoryListCtrl list = MakeList({{"A", 0}}, {{"1"}});
    setup.platform.saveAccepted = false;
    g_DataExport(list);
    ASSERT_EQ(setup.platform.saveRequests.size(), 1u);
    const orderview::SaveFileRequest& request = setup.platform.saveRequests[0];
    EXPECT_EQ(request.csFilter, "(*.csv)|*.csv|(*.txt)|*.txt||");
    EXPECT_EQ(request.csDefaultExt, ".csv");
    EXPECT_EQ(request.csFileName, "");
    EXPECT_TRUE(request.bOverwritePrompt);
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "sys"}));
}

TEST_F(ListExport, CsvAndTextBytes)
{
    struct Case {
        const char* name;
        std::vector<std::pair<const char*, int>> columns;
        std::vector<std::vector<CString>> rows;
        const char* file;   // .csv or .txt picks the filter
        std::string expected;
    };
    const Case cases[] = {
        {"zero columns", {}, {{}, {}}, "z.csv", "\r\n\r\n\r\n"},
        {"zero rows", {{"A", 0}, {"B", 0}}, {}, "r.csv", "A,B \r\n"},
        {"csv: no quoting, trailing blank, line break joined in the commodity column",
         {{"Sym", 0}, {"Commodity", 0}, {"Qty", 1}},
         {{"2330", "TX\r\nMX", "1,000"}, {"\"q\"", "\nAB", "x"}},
         "c.csv", "Sym,Commodity,Qty \r\n2330,TX;MX,1,000 \r\n\"q\",\nAB,x \r\n"},
        {"no heading matches: the last column is both special columns",
         {{"A", 0}, {"B", 0}}, {{"AB\nCDE", "AB\nCDE"}}, "d.csv", "A,B \r\nAB\nCDE,AB;DE \r\n"},
        {"text widths: heading 50/30/20, rows 50/50/20, never cut",
         {{"Commodity", 0}, {"AvgPx", 1}, {"Qty", 1}},
         {{"TX", "101.5", std::string(25, 'q')}},
         "t.txt",
         std::string("Commodity") + std::string(41, ' ') + " " + "AvgPx" + std::string(25, ' ') + " " + "Qty" +
             std::string(17, ' ') + " \r\n" + "TX" + std::string(48, ' ') + " " + "101.5" + std::string(45, ' ') +
             " " + std::string(25, 'q') + " \r\n"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Exported(MakeList(c.columns, c.rows), c.file), c.expected) << c.name;
}

TEST_F(ListExport, LineBreakRuleInTheSpecialColumns)
{
    struct Case { std::string cell; std::string csv; };
    const Case cases[] = {
        {"ABC\r\nDEF", "ABC;DEF"}, {"AB\r\nCD", "AB;CD"}, {"AB\nCDE", "AB;DE"}, {"\nAB", "\nAB"},
        {"A\n", ";"}, {"A\nB", ";"}, {"plain", "plain"}, {"", ""}, {"AB\rCD", "AB\rCD"},
    };
    for (const Case& c : cases) {
        MemoryListCtrl list = MakeList({{"Commodity", 0}, {"AvgPx", 0}, {"Other", 0}}, {{c.cell, c.cell, c.cell}});
        EXPECT_EQ(Exported(list, "l.csv"),
                  "Commodity,AvgPx,Other \r\n" + c.csv + "," + c.csv + "," + c.cell + " \r\n") << c.cell;
    }
}

TEST_F(ListExport, TextPassesAnyBytesAndCutsLongHeadings)
{
    const std::string bytes = "\x80\xff<&>\"'\r";
    const std::string huge(100000, 'h');
    const std::string heading(100, 'H');
    MemoryListCtrl list = MakeList({{heading.c_str(), 0}, {"B", 0}}, {{bytes, huge}});
    setup.platform.saveFilterIndex = 1;  // the selected filter decides, not the file's name
    EXPECT_EQ(Exported(list, "b.txt"), std::string(79, 'H') + ",B \r\n" + bytes + "," + huge + " \r\n");
}

TEST_F(ListExport, ExportsThatCannotWriteKeepWhatWasThere)
{
    MemoryListCtrl list = MakeList({{"A", 0}}, {{"new"}});
    setup.folder.Write("old.csv", "old content");
    const char* targets[] = {"missing/x.csv", "sys"};
    for (const char* target : targets) {
        setup.SaveAs(target);
        g_DataExport(list);
        g_DataExportXls(list, "", "", nullptr);
        EXPECT_FALSE(g_DataExportWorkbook(list, "S"));
    }
    setup.platform.savePath = "/proc/orderview-export.csv";
    g_DataExport(list);
    EXPECT_EQ(Read("old.csv"), "old content");
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "old.csv", "sys"}));
    EXPECT_EQ(setup.Names("sys"), (std::vector<std::string>{"xls_head.txt"}));
    // A successful export replaces a longer file completely.
    EXPECT_EQ(Exported(list, "old.csv"), "A \r\nnew \r\n");
}

// ---- HTML spreadsheet ---------------------------------------------------------------------

const char kRow[] = " <tr style='mso-height-source:userset;height:16.5pt'>\n";

std::string TextCell(const char* style, const std::string& text)
{
    return std::string("<td class=align_border  style=' ") + style + "'>\n " + text + "</td>\n";
}

std::string NumberCell(const char* format, const std::string& text)
{
    return std::string("<td class=align_border x:num style='text-align:right ; mso-number-format:\"") + format +
           "\"'>" + text + "</td>\n";
}

// The rows after the account block and the heading row.
std::string Body(const std::string& html)
{
    size_t at = html.find("<table");
    for (int rows = 0; rows < 2 && at != std::string::npos; ++rows) at = html.find(" </tr>\n", at + 1);
    const size_t end = html.rfind("</table>\n");
    return at == std::string::npos || end == std::string::npos ? "" : html.substr(at + 7, end - at - 7);
}

// The page is the table writer's: the style sheet, then the account block (the user given, else
// the host's; a label holding printf directives shown as it is), the headings and the rows.
TEST_F(ListExport, HtmlWholeFile)
{
    MemoryListCtrl list = MakeList({{"Sym", CListCtrl::kFormatLeft}, {"Qty", CListCtrl::kFormatRight}},
                                   {{"2330", "1,234"}});
    CBaseOrder_UserInfo user;
    user.csName = "Wang";
    user.csBranchNo = "9A95";
    user.csAccount = "1234567";
    setup.host.texts["IDS_QWORDERVIEW_GLOABLDATAPROC_NAME"] = "Name";
    setup.SaveAs("w.xls");
    g_DataExportXls(list, "Orders", "caption", &user);
    ASSERT_EQ(setup.platform.saveRequests.size(), 1u);
    EXPECT_EQ(setup.platform.saveRequests[0].csFilter, "(*.xls)|*.xls||");
    EXPECT_EQ(setup.platform.saveRequests[0].csDefaultExt, ".xls");
    EXPECT_TRUE(setup.platform.saveRequests[0].bOverwritePrompt);
    const std::string open = "<td class=default  style=' '>\n ";
    const std::string html = Read("w.xls");
    const std::size_t head = html.find(ovtest::ExportSetup::SampleHead());
    ASSERT_NE(head, std::string::npos);
    const std::size_t table = html.find("<table", head);
    ASSERT_NE(table, std::string::npos);
    EXPECT_EQ(html.substr(html.find('\n', table) + 1),
              kRow + open + "Name:Wang</td>\n" + open + "IDS_QWORDERVIEW_GLOABLDATAPROC_BHNO:9A95</td>\n" + open +
                  "IDS_QWORDERVIEW_GLOABLDATAPROC_CSEQ:9A951234567</td>\n </tr>\n" + kRow +
                  TextCell("text-align:left", "Sym") + TextCell("text-align:right", "Qty") + " </tr>\n" + kRow +
                  TextCell("text-align:left", "2330") + NumberCell("\\#,\\#\\#0", "1,234") + " </tr>\n" +
                  "</table>\n</body>\n</html>\n");
    setup.host.baseOrder.userInfo.csName = "Host";
    setup.host.baseOrder.userInfo.csBranchNo = "B1";
    setup.host.baseOrder.userInfo.csMainBranchNo = "M1";
    setup.host.baseOrder.userInfo.csAccount = "77";
    setup.host.texts["IDS_QWORDERVIEW_GLOABLDATAPROC_NAME"] = "%s%n%d";
    g_DataExportXls(list, "", "", nullptr);
    EXPECT_NE(Read("w.xls").find(std::string(kRow) + open + "%s%n%d:Host</td>\n" + open +
                                 "IDS_QWORDERVIEW_GLOABLDATAPROC_BHNO:B1</td>\n" + open +
                                 "IDS_QWORDERVIEW_GLOABLDATAPROC_MAINBHNO:M1</td>\n" + open +
                                 "IDS_QWORDERVIEW_GLOABLDATAPROC_CSEQ:B177</td>\n </tr>\n"),
              std::string::npos);
}

TEST_F(ListExport, HtmlNumberCells)
{
    struct Case { int format; std::string text; std::string cell; };
    const char* right = "text-align:right";
    const Case cases[] = {
        {1, "1,234", NumberCell("\\#,\\#\\#0", "1,234")},
        {1, "12.50", NumberCell("\\#,\\#\\#0.##", "12.50")},
        {1, "3.5%", NumberCell("\\#,\\#\\#0.##%", "3.5%")},
        {1, "25%", NumberCell("\\#,\\#\\#0%", "25%")},
        {1, "-7", NumberCell("\\#,\\#\\#0", "-7")},
        {1, "abc,", NumberCell("\\#,\\#\\#0", "abc,")},   // a comma is enough
        {1, ".", TextCell(right, ".")},
        {1, "12:30", TextCell(right, "12:30")},
        {1, "A 1", TextCell(right, "A 1")},
        {1, "1\\2", TextCell(right, "1\\2")},
        {1, "", TextCell(right, "")},
        {1, "--", TextCell(right, "--")},
        {1, "1\r\n2", NumberCell("\\#,\\#\\#0", "1\r\n2")},  // line breaks do not make a text
        {0, "1,234", TextCell("text-align:left", "1,234")},
        {2, "12.50", TextCell("text-align:center", "12.50")},
        {3, "12.50", TextCell("text-align:left", "12.50")},
        {5, "12.50", NumberCell("\\#,\\#\\#0.##", "12.50")},   // only the low two bits count
        {1, "<&\"\x80\xff", TextCell(right, "<&\"\x80\xff")},  // written as it is, unescaped
    };
    for (const Case& c : cases) {
        MemoryListCtrl list = MakeList({{"C", c.format}}, {{c.text}});
        setup.SaveAs("n.xls");
        g_DataExportXls(list, "", "", nullptr);
        EXPECT_EQ(Body(Read("n.xls")), kRow + c.cell + " </tr>\n") << c.format << " " << c.text;
    }
}

TEST_F(ListExport, HtmlUnoffsetGroupingRow)
{
    setup.host.texts["IDS_ORDER-EXT-TAB_STOCK_UNOFFSET"] = "Unoffset";
    const std::string grouping =
        std::string(kRow) + "<td class=align_border  style=' '>\n </td>\n" +
        "<td colspan=6 class=align_border  style=' text-align:center'>\n IDS_ORDER-TAB-FINANCE_STATIC_TYPE2</td>\n" +
        "<td colspan=7 class=align_border  style=' text-align:center'>\n IDS_ORDER-TAB-FINANCE_STATIC_RZ</td>\n" +
        "<td colspan=7 class=align_border  style=' text-align:center'>\n IDS_ORDER-TAB-FINANCE_STATIC_RG</td>\n" +
        "<td colspan=6 class=align_border  style=' text-align:center'>\n IDS_QWORDERVIEW_GLOABLDATAPROC_ODD_STKNUM</td>\n" +
        " </tr>\n";
    struct Case { const char* ini; const char* title; bool shown; };
    const Case cases[] = {
        {"[ORDER_SETTING]\r\nUSE_NEWSTOCKUNOFFSET=1\r\n", "Stock Unoffset list", true},
        {"[ORDER_SETTING]\r\nUSE_NEWSTOCKUNOFFSET=1\r\n", "Stock list", false},
        {"[ORDER_SETTING]\r\nUSE_NEWSTOCKUNOFFSET=2\r\n", "Unoffset", false},
        {"", "Unoffset", false},
    };
    MemoryListCtrl list = MakeList({{"A", 0}}, {});
    for (const Case& c : cases) {
        setup.folder.Write("sys/OrderCfg.ini", c.ini);
        setup.SaveAs("u.xls");
        g_DataExportXls(list, c.title, "", nullptr);
        EXPECT_EQ(Read("u.xls").find(grouping) != std::string::npos, c.shown) << c.ini << c.title;
    }
    // The two-list export never shows it.
    setup.folder.Write("sys/OrderCfg.ini", cases[0].ini);
    g_UnoffsetDataExportXls(list, list, cases[0].title, "", nullptr, false);
    EXPECT_EQ(Read("u.xls").find(grouping), std::string::npos);
}

TEST_F(ListExport, HtmlTwoLists)
{
    MemoryListCtrl first = MakeList({{"A", 1}}, {{"1"}});
    MemoryListCtrl second = MakeList({{"B", 0}, {"C", 2}}, {{"x", "y"}});
    const std::string firstRows = std::string(kRow) + TextCell("text-align:right", "A") + " </tr>\n" + kRow +
                                  NumberCell("\\#,\\#\\#0", "1") + " </tr>\n";
    setup.SaveAs("two.xls");
    g_UnoffsetDataExportXls(first, second, "", "", nullptr, true);
    EXPECT_EQ(Body(Read("two.xls")),
              std::string(kRow) + NumberCell("\\#,\\#\\#0", "1") + " </tr>\n" + kRow +
                  "<td class=default  style=' '>\n IDS_QWORDERVIEW_GLOABLDATAPROC_SECURITY_LENDING</td>\n </tr>\n" +
                  kRow + TextCell("text-align:left", "B") + TextCell("text-align:center", "C") + " </tr>\n" + kRow +
                  TextCell("text-align:left", "x") + TextCell("text-align:center", "y") + " </tr>\n");
    g_UnoffsetDataExportXls(first, second, "", "", nullptr, false);
    EXPECT_EQ(Body(Read("two.xls")), std::string(kRow) + NumberCell("\\#,\\#\\#0", "1") + " </tr>\n");
    EXPECT_NE(Read("two.xls").find(firstRows), std::string::npos);
}

TEST_F(ListExport, HtmlCancelledOrWithoutTemplate)
{
    MemoryListCtrl list = MakeList({{"A", 0}}, {{"1"}});
    setup.folder.Write("keep.xls", "keep");
    setup.SaveAs("keep.xls");
    setup.platform.saveAccepted = false;
    g_DataExportXls(list, "", "", nullptr);
    g_UnoffsetDataExportXls(list, list, "", "", nullptr, true);
    EXPECT_EQ(Read("keep.xls"), "keep");
    setup.platform.saveAccepted = true;
    // Without the style sheet the page stops before the table.
    std::remove(setup.folder.File("sys/xls_head.txt").c_str());
    g_DataExportXls(list, "", "", nullptr);
    EXPECT_EQ(Read("keep.xls").compare(0, 5, "<html"), 0);
    EXPECT_EQ(Read("keep.xls").find("<table"), std::string::npos);
}

// ---- Binary workbook ----------------------------------------------------------------------

TEST_F(ListExport, WorkbookCells)
{
    MemoryListCtrl list = MakeList({{"Sym", 0}, {"Qty", 1}, {"Rate", 1}, {"Note", 1}},
                                   {{"2330", "1,234,567", "3.5%", "12:30"},
                                    {"A", "-12.50", "25%", "abc,"},
                                    {"A", "", "1e5", std::string(40000, 'n')}});
    setup.SaveAs("book.xls");
    ASSERT_TRUE(g_DataExportWorkbook(list, "Orders"));
    ASSERT_EQ(setup.platform.saveRequests.back().csFilter, "(*.xls)|*.xls||");
    xls::Book book;
    ASSERT_TRUE(book.Load(setup.folder.File("book.xls").c_str()));
    ASSERT_EQ(book.GetTotalWorkSheets(), 1u);
    EXPECT_STREQ(book.GetAnsiSheetName(0), "Orders");
    xls::Sheet* sheet = book.GetWorksheet(0);
    struct Expect { int row, col; double number; const char* text; };
    const Expect cells[] = {
        {0, 0, 0, "Sym"}, {0, 3, 0, "Note"}, {1, 0, 0, "2330"}, {1, 1, 1234567, nullptr}, {1, 2, 0.035, nullptr},
        {1, 3, 0, "12:30"}, {2, 0, 0, "A"}, {2, 1, -12.5, nullptr}, {2, 2, 0.25, nullptr},
        {2, 3, 0, "abc,"},   // marked as a number in HTML, but not one
        {3, 0, 0, "A"}, {3, 1, 0, ""}, {3, 2, 0, "1e5"},
    };
    for (const Expect& e : cells) {
        const xls::Cell* cell = sheet->Cell(e.row, e.col);
        if (e.text) {
            EXPECT_EQ(cell->Type(), xls::Cell::kString) << e.row << "," << e.col;
            EXPECT_STREQ(cell->GetString(), e.text) << e.row << "," << e.col;
        } else {
            EXPECT_EQ(cell->Type(), xls::Cell::kDouble) << e.row << "," << e.col;
            EXPECT_DOUBLE_EQ(cell->GetDouble(), e.number) << e.row << "," << e.col;
        }
    }
    EXPECT_EQ(sheet->Cell(3, 3)->GetStringLength(), 32767u);
}

TEST_F(ListExport, WorkbookFailuresWriteNothing)
{
    setup.folder.Write("keep.xls", "keep");
    setup.SaveAs("keep.xls");
    MemoryListCtrl small = MakeList({{"A", 0}}, {{"1"}});
    EXPECT_FALSE(g_DataExportWorkbook(small, "bad/name"));
    EXPECT_FALSE(g_DataExportWorkbook(small, ""));
    EXPECT_FALSE(g_DataExportWorkbook(small, std::string(32, 's')));
    MemoryListCtrl wide;
    for (int i = 0; i < 257; ++i) wide.InsertColumn("c");
    EXPECT_FALSE(g_DataExportWorkbook(wide, "S"));
    setup.platform.saveAccepted = false;
    EXPECT_FALSE(g_DataExportWorkbook(small, "S"));
    EXPECT_EQ(Read("keep.xls"), "keep");
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "keep.xls", "sys"}));
    // The largest list that fits, and no list at all.
    setup.platform.saveAccepted = true;
    MemoryListCtrl tall = MakeList({{"A", 1}}, {});
    for (int i = 0; i < 65535; ++i) tall.InsertItem({"1"});
    EXPECT_TRUE(g_DataExportWorkbook(tall, "S"));
    xls::Book book;
    ASSERT_TRUE(book.Load(setup.folder.File("keep.xls").c_str()));
    EXPECT_EQ(book.GetTotalWorkSheets(), 1u);
    MemoryListCtrl none;
    EXPECT_TRUE(g_DataExportWorkbook(none, "S"));
    EXPECT_TRUE(book.Load(setup.folder.File("keep.xls").c_str()));
}

// Texts that are not plain ASCII are read in the narrow code page and stored as UTF-16, cut
// between characters; ASCII stays 8-bit.
TEST_F(ListExport, WorkbookWideTexts)
{
    const std::string a32766(32766, 'a');
    const struct {
        std::string narrow;
        std::u16string utf8;  // what UTF-8 narrow text reads as (the code page but on Windows)
    } cases[] = {
        {"\xE5\x8F\xB0\xE7\xA9\x8D\xE9\x9B\xBB", u"\u53F0\u7A4D\u96FB"},  // a stock name
        {"\xE9\x99\xB3\xE5\xA4\xA7\xE6\x96\x87 F000123", u"\u9673\u5927\u6587 F000123"},
        {"caf\xC3\xA9 A", u"caf\u00E9 A"},
        {"\x80\xFF", u"\uFFFD\uFFFD"},                                // not UTF-8: one mark per byte
        {a32766 + "\xE5\x8F\xB0\xE7\xA9\x8D", std::u16string(32766, u'a') + u"\u53F0"},
        {a32766 + "\xF0\x9F\x98\x80", std::u16string(32766, u'a')},    // a pair is not split
    };
    std::vector<std::vector<CString>> rows;
    for (const auto& c : cases) rows.push_back({CString(c.narrow), CString(c.narrow)});
    MemoryListCtrl list = MakeList({{"\xE5\xB8\xB3\xE8\x99\x9F", 0}, {"Qty", 1}}, rows);
    setup.SaveAs("wide.xls");
    ASSERT_TRUE(g_DataExportWorkbook(list, "\xE5\xA7\x94\xE8\xA8\x97"));
    xls::Book book;
    ASSERT_TRUE(book.Load(setup.folder.File("wide.xls").c_str()));
    EXPECT_EQ(xls::ToUtf16(book.GetUnicodeSheetName(0)), orderview::NarrowToUtf16("\xE5\xA7\x94\xE8\xA8\x97"));
    xls::Sheet* sheet = book.GetWorksheet(0);
    EXPECT_EQ(xls::ToUtf16(sheet->Cell(0, 0)->GetWString()), orderview::NarrowToUtf16("\xE5\xB8\xB3\xE8\x99\x9F"));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        for (int col = 0; col < 2; ++col) {
            const xls::Cell* cell = sheet->Cell(i + 1, col);
            ASSERT_EQ(cell->Type(), xls::Cell::kWString) << i;
            const std::u16string got = xls::ToUtf16(cell->GetWString());
            std::u16string want = orderview::NarrowToUtf16(cases[i].narrow);
            want.resize(std::min<std::size_t>(want.size(), 32767));
            if (want.size() == 32767 && want.back() >= 0xD800 && want.back() <= 0xDBFF) want.pop_back();
            EXPECT_EQ(got, want) << i;
#ifndef _WIN32
            EXPECT_EQ(got, cases[i].utf8) << i;
#endif
        }
    }
}

// A list longer than a sheet goes on over further sheets, each with the heading row; a name
// at the 31-character limit is cut to make room for the number.
TEST_F(ListExport, WorkbookContinuesOnFurtherSheets)
{
    const struct {
        std::string name;
        int rows;
        std::vector<std::string> sheets;
        std::vector<std::size_t> sheetRows;  // data rows per sheet
    } cases[] = {
        {"Orders", 2 * 65535 + 2, {"Orders", "Orders (2)", "Orders (3)"}, {65535, 65535, 2}},
        {std::string(31, 's'), 65536, {std::string(31, 's'), std::string(27, 's') + " (2)"}, {65535, 1}},
    };
    for (const auto& c : cases) {
        MemoryListCtrl list = MakeList({{"No", 0}, {"Qty", 1}}, {});
        for (int i = 0; i < c.rows; ++i) list.InsertItem({CString(std::to_string(i)), "7"});
        setup.SaveAs("tall.xls");
        ASSERT_TRUE(g_DataExportWorkbook(list, CString(c.name))) << c.name;
        xls::Book book;
        ASSERT_TRUE(book.Load(setup.folder.File("tall.xls").c_str()));
        ASSERT_EQ(book.GetTotalWorkSheets(), c.sheets.size()) << c.name;
        int next = 0;
        for (std::size_t s = 0; s < c.sheets.size(); ++s) {
            EXPECT_EQ(book.GetAnsiSheetName(s), c.sheets[s]);
            xls::Sheet* sheet = book.GetWorksheet(s);
            ASSERT_EQ(sheet->GetTotalRows(), c.sheetRows[s] + 1) << c.sheets[s];
            EXPECT_STREQ(sheet->Cell(0, 0)->GetString(), "No");
            EXPECT_STREQ(sheet->Cell(0, 1)->GetString(), "Qty");
            EXPECT_EQ(sheet->Cell(1, 0)->GetString(), std::to_string(next)) << c.sheets[s];
            EXPECT_EQ(sheet->Cell(c.sheetRows[s], 0)->GetString(), std::to_string(next + static_cast<int>(c.sheetRows[s]) - 1));
            EXPECT_DOUBLE_EQ(sheet->Cell(c.sheetRows[s], 1)->GetDouble(), 7.0);
            next += static_cast<int>(c.sheetRows[s]);
        }
        EXPECT_EQ(next, c.rows);
    }
}

}  // namespace
