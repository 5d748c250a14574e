// Windows only: narrow texts in the process's ANSI code page go through the exports. The test
// runs in a Taiwanese locale (code page 950, Big5) where the build can make one for Wine; in
// whatever code page it gets, a workbook cell must read back as MultiByteToWideChar of that code
// page makes of the bytes, and CSV, text and HTML exports keep the bytes as they are.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "export/list_export.h"
#include "support/export_setup.h"
#include "xls/book.h"
#include "xls/utf16.h"

namespace {

using orderview::MemoryListCtrl;

const struct {
    const char* big5;
    const char16_t* text;  // what code page 950 reads
} kTexts[] = {
    {"\xA5\x78\xBF\x6E\xB9\x71", u"\u53F0\u7A4D\u96FB"},                                  // 台積電
    {"\xC2\x45\xAE\xFC", u"\u9D3B\u6D77"},                                                // 鴻海
    {"\xA4\xB8\xA4\x6A\xA5\x78\xC6\x57\x35\x30", u"\u5143\u5927\u53F0\u706350"},          // 元大台灣50
    {"\xB3\xAF\xA4\x6A\xA4\xE5\xB4\xC1\xB3\x66", u"\u9673\u5927\u6587\u671F\u8CA8"},      // 陳大文期貨
    {"\xA9\x65\xB0\x55\xA6\xA8\xA5\x5C", u"\u59D4\u8A17\u6210\u529F"},                    // 委託成功: a trail byte '\'
    {"\xB3\xA1\xA4\xC0\xA6\xA8\xA5\xE6", u"\u90E8\u5206\u6210\u4EA4"},                    // 部分成交
    {"\xB6\x52", u"\u8CB7"},                                                              // 買
};
const char kHeading[] = "\xB1\x62\xB8\xB9";  // 帳號

std::u16string SystemWide(const std::string& narrow)
{
    const int n = MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(n), L'\0');
    MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()), wide.data(), n);
    return std::u16string(wide.begin(), wide.end());
}

MemoryListCtrl Big5List()
{
    MemoryListCtrl list;
    list.InsertColumn(kHeading, 0);
    list.InsertColumn("Note", 0);
    for (const auto& t : kTexts) list.InsertItem({CString(t.big5), CString(std::string("2330 ") + t.big5)});
    return list;
}

TEST(NarrowTextWin32, WorkbookCellsReadAsTheCodePageReadsThem)
{
    const UINT acp = GetACP();
    std::printf("ANSI code page %u\n", acp);
    RecordProperty("acp", static_cast<int>(acp));
    ovtest::ExportSetup setup;
    MemoryListCtrl list = Big5List();
    setup.SaveAs("big5.xls");
    ASSERT_TRUE(g_DataExportWorkbook(list, kHeading));
    xls::Book book;
    ASSERT_TRUE(book.Load(setup.folder.File("big5.xls").c_str()));
    EXPECT_EQ(xls::ToUtf16(book.GetUnicodeSheetName(0)), SystemWide(kHeading));
    xls::Sheet* sheet = book.GetWorksheet(0);
    EXPECT_EQ(xls::ToUtf16(sheet->Cell(0, 0)->GetWString()), SystemWide(kHeading));
    for (std::size_t i = 0; i < std::size(kTexts); ++i) {
        const std::string narrow[] = {kTexts[i].big5, std::string("2330 ") + kTexts[i].big5};
        for (std::size_t col = 0; col < 2; ++col) {
            const xls::Cell* cell = sheet->Cell(i + 1, col);
            ASSERT_EQ(cell->Type(), xls::Cell::kWString) << i;
            const std::u16string got = xls::ToUtf16(cell->GetWString());
            EXPECT_EQ(got, SystemWide(narrow[col])) << "code page " << acp << ", text " << i;
            if (acp == 950) EXPECT_EQ(got, (col ? u"2330 " : u"") + std::u16string(kTexts[i].text)) << i;
        }
    }
}

TEST(NarrowTextWin32, TextAndHtmlExportsKeepTheBytes)
{
    ovtest::ExportSetup setup;
    MemoryListCtrl list = Big5List();
    std::string csv = std::string(kHeading) + ",Note \r\n";
    for (const auto& t : kTexts) csv += std::string(t.big5) + ",2330 " + t.big5 + " \r\n";
    setup.SaveAs("big5.csv");
    g_DataExport(list);
    EXPECT_EQ(setup.folder.Read("big5.csv"), csv);

    // A Big5 template and Big5 cells go into the HTML export byte for byte.
    const std::string head = "<head><meta http-equiv=Content-Type content=\"text/html; charset=big5\">"
                             "<title>\xA9\x65\xB0\x55</title></head>\n";
    setup.folder.Write("sys/xls_head.txt", head);
    setup.SaveAs("big5.html");
    g_DataExportXls(list, "", "", nullptr);
    const std::string html = setup.folder.Read("big5.html");
    EXPECT_NE(html.find(head), std::string::npos);
    for (const auto& t : kTexts) EXPECT_NE(html.find(std::string(" 2330 ") + t.big5 + "</td>"), std::string::npos);
}

}  // namespace
