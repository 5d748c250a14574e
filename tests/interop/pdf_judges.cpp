// Prints sample lists to PDF files for the independent PDF programs to judge (pdf_judges.py).
// Each sample is printed twice: to a recording job, which gives what the layout drew on every
// page, and to a PDF file. The manifest lists per file the page count, the paper of every page
// and every text drawn, page by page in drawing order (hex-encoded bytes, as handed to the job).
//
// Usage: pdf_judges OUTPUT_FOLDER   (writes OUTPUT_FOLDER/*.pdf and OUTPUT_FOLDER/manifest.txt)
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "print/list_print.h"
#include "platform/list_control.h"
#include "support/fake_platform.h"
#include "support/print_recorder.h"

namespace {

using orderview::MemoryListCtrl;
using PrintFunction = bool (*)(const CListCtrl&, const CString&);

constexpr int kLeft = CListCtrl::kFormatLeft, kRight = CListCtrl::kFormatRight, kCenter = CListCtrl::kFormatCenter;

std::string Hex(const std::string& bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (const char ch : bytes) {
        const auto c = static_cast<unsigned char>(ch);
        hex += digits[c >> 4];
        hex += digits[c & 15];
    }
    return hex.empty() ? "-" : hex;
}

// An order list of `rows` rows over `columns` columns: symbol, side, quantities, prices, time.
MemoryListCtrl OrderList(int columns, int rows)
{
    static const char* const headings[] = {"Symbol", "Side", "Qty", "Price", "Filled", "Time", "Account", "Status"};
    static const int formats[] = {kLeft, kCenter, kRight, kRight, kRight, kCenter, kLeft, kLeft};
    static const int widths[] = {90, 40, 60, 70, 60, 70, 90, 120};
    MemoryListCtrl list;
    for (int c = 0; c < columns; ++c)
        list.InsertColumn(CString(headings[c % 8]) + (c >= 8 ? CString(std::to_string(c)) : CString()), formats[c % 8],
                          widths[c % 8]);
    for (int r = 0; r < rows; ++r) {
        std::vector<CString> cells;
        for (int c = 0; c < columns; ++c) {
            switch (c % 8) {
            case 0: cells.emplace_back("SYM" + std::to_string(1000 + r)); break;
            case 1: cells.emplace_back(r % 2 ? "Buy" : "Sell"); break;
            case 2: cells.emplace_back(std::to_string(r % 9 + 1) + "," + std::to_string(100 + r % 900)); break;
            case 3: cells.emplace_back(std::to_string(100 + r % 50) + "." + std::to_string(10 + r % 90)); break;
            case 4: cells.emplace_back(std::to_string(r % 7)); break;
            case 5: cells.emplace_back("09:" + std::to_string(10 + r % 50) + ":00"); break;
            case 6: cells.emplace_back("ACC-" + std::to_string(7000 + c) + "-" + std::to_string(r)); break;
            default: cells.emplace_back(r % 3 ? "Accepted, partly filled" : "Done"); break;
            }
        }
        list.InsertItem(cells);
    }
    return list;
}

MemoryListCtrl BadList()
{
    std::string high;
    for (int b = 0x80; b <= 0xFF; ++b) high += static_cast<char>(b);
    MemoryListCtrl list;
    list.InsertColumn("(paren", kLeft, 0);
    list.InsertColumn("back\\slash)", kRight, 100000);
    list.InsertColumn("ctrl\r\n", kCenter, 1);
    list.InsertColumn("latin \xC3\xA9\xE2\x82\xAC \xE5\xA7\x94", kLeft, 80);
    list.InsertItem({"hidden", "(1)", "\\", CString(std::string(100000, '('))});
    list.InsertItem({"x", "\r\n\t\x01\x1F", CString(std::string(100000, '\\')), CString(high)});
    list.InsertItem({"y", "caf\xC3\xA9 (ok)", "a\\b", "\xE5\xA7\x94\xE8\xA8\x97 order"});
    return list;
}

struct Sample {
    const char* name;
    PrintFunction print;
    std::function<MemoryListCtrl()> list;
    std::string title;
    orderview::PrintPaper paper;
};

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: pdf_judges OUTPUT_FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    orderview::PrintPaper letter;
    letter.dWidth = 612;
    letter.dHeight = 792;
    letter.dMarginLeft = letter.dMarginRight = letter.dMarginTop = letter.dMarginBottom = 54;
    const orderview::PrintPaper a4 = orderview::A4Paper();

    const std::vector<Sample> samples = {
        {"plain", g_vPrintListCtrl, [] { return OrderList(6, 20); }, "Today's orders", a4},
        {"grid", g_vPrintListCtrlExcelStyle, [] { return OrderList(6, 20); }, "Today's orders (grid)", a4},
        {"inventory", g_vPrintListCtrlInventory, [] { return OrderList(5, 30); }, "Positions", a4},
        {"partial", g_vPrintListCtrlPatial,
         [] {
             MemoryListCtrl list = OrderList(6, 40);
             for (int r = 3; r < 40; r += 7) list.SetItemSelected(r, true);
             return list;
         },
         "Selected orders", a4},
        {"pages", g_vPrintListCtrl, [] { return OrderList(8, 300); }, "All orders", a4},
        {"landscape", g_vPrintListCtrlExcelStyle, [] { return OrderList(14, 50); }, "Wide list", a4},
        {"split", g_vPrintListCtrl, [] { return OrderList(40, 60); }, "Very wide list", a4},
        {"letter", g_vPrintListCtrlInventory, [] { return OrderList(8, 70); }, "Letter paper", letter},
        {"no_rows", g_vPrintListCtrlExcelStyle, [] { return OrderList(6, 0); }, "No orders", a4},
        {"bad_input", g_vPrintListCtrlInventory, BadList, std::string(3000, 'T') + " (title) \\ end", a4},
    };

    ovtest::FakePlatform platform;
    platform.SetDate(2026, 11, 21, 14, 5, 9);
    FILE* manifest = std::fopen((folder + "/manifest.txt").c_str(), "w");
    if (!manifest) return 1;
    int failures = 0;
    for (const Sample& sample : samples) {
        const MemoryListCtrl list = sample.list();
        const CString title(sample.title);
        ovtest::PrintRecord record;
        platform.printDialog = ovtest::RecordInto(record, sample.paper);
        const std::string path = folder + "/" + sample.name + ".pdf";
        bool ok = sample.print(list, title);
        platform.printDialog = [&](const orderview::PrintRequest& request) {
            return orderview::StartPdfPrintJob(CString(path), request, sample.paper);
        };
        ok = ok && sample.print(list, title);
        if (!ok) {
            std::fprintf(stderr, "%s: not printed\n", sample.name);
            ++failures;
            continue;
        }
        std::fprintf(manifest, "pdf %s.pdf\npages %zu\npaper %g %g\n", sample.name, record.pages.size(),
                     record.paper.dWidth, record.paper.dHeight);
        for (std::size_t p = 0; p < record.pages.size(); ++p)
            for (const std::string& text : record.Texts(p)) std::fprintf(manifest, "text %zu %s\n", p + 1, Hex(text).c_str());
    }
    return (std::fclose(manifest) == 0 && failures == 0) ? 0 : 1;
}
