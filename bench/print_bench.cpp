// Printing a list of 100,000 rows x 20 columns (about 2,200 landscape pages) to a PDF file,
// against the HTML spreadsheet export of the same list in the same run (target: within 2x of
// it), and against the floor of that export: the same cells written as an HTML table with one
// fprintf a cell. The same list with Chinese names and statuses (four of its columns) prints
// with the system's Chinese font embedded (target: within 2x of the Latin printout).
//
// Peak resident memory is reported before and after, in MiB: printing streams its pages to the
// file, so it adds no more than a page's worth to what the list itself takes.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "export/list_export.h"
#include "print/list_print.h"
#include "host/default_host.h"
#include "print/list_print_layout.h"
#include "platform/file_system.h"
#include "platform/list_control.h"

namespace {

constexpr int kRows = 100000;
constexpr int kColumns = 20;

// Chinese texts for the symbol, account and status columns of the Chinese list.
const char* const kChineseSymbols[] = {"台積電", "鴻海", "元大台灣50", "長榮", "聯發科", "富邦金", "國泰金", "中華電"};
const char* const kChineseAccounts[] = {"陳大文期貨", "林小美", "王建國證券", "黃志明", "張家豪", "李淑芬"};
const char* const kChineseStatuses[] = {"委託成功", "部分成交", "全部成交", "刪單成功"};

orderview::MemoryListCtrl MakeList(bool chinese)
{
    static const char* const headings[] = {"Order No", "Symbol", "Side", "Qty", "Price", "Filled", "Avg Price",
                                           "Time", "Account", "Status"};
    static const int formats[] = {0, 0, 2, 1, 1, 1, 1, 2, 0, 0};
    static const int widths[] = {70, 80, 40, 60, 70, 60, 70, 70, 90, 110};
    orderview::MemoryListCtrl l;
    for (int c = 0; c < kColumns; ++c)
        l.InsertColumn(CString(headings[c % 10]) + (c >= 10 ? " 2" : ""), formats[c % 10], widths[c % 10]);
    std::vector<CString> cells(kColumns);
    char text[64];
    for (int r = 0; r < kRows; ++r) {
        for (int c = 0; c < kColumns; ++c) {
            switch (c % 10) {
            case 0: std::snprintf(text, sizeof text, "B%07d", r); break;
            case 1:
                if (chinese) std::snprintf(text, sizeof text, "%s", kChineseSymbols[r % 8]);
                else std::snprintf(text, sizeof text, "TXF%c%d", 'A' + r % 12, 2026 + r % 3);
                break;
            case 2: std::snprintf(text, sizeof text, "%s", r % 2 ? "Buy" : "Sell"); break;
            case 3: std::snprintf(text, sizeof text, "%d,%03d", 1 + r % 9, r % 1000); break;
            case 4: std::snprintf(text, sizeof text, "%d.%02d", 16000 + r % 900, r % 100); break;
            case 5: std::snprintf(text, sizeof text, "%d", r % 50); break;
            case 6: std::snprintf(text, sizeof text, "%d.%03d", 16000 + r % 700, r % 1000); break;
            case 7: std::snprintf(text, sizeof text, "%02d:%02d:%02d", 9 + r % 5, r % 60, (r * 7) % 60); break;
            case 8:
                if (chinese) std::snprintf(text, sizeof text, "%s", kChineseAccounts[r % 6]);
                else std::snprintf(text, sizeof text, "F0210-%07d", 9000000 + r % 300);
                break;
            default:
                if (chinese) std::snprintf(text, sizeof text, "%s", kChineseStatuses[r % 4]);
                else std::snprintf(text, sizeof text, "%s", r % 3 ? "Accepted, partly filled" : "Done");
                break;
            }
            cells[static_cast<std::size_t>(c)] = text;
        }
        l.InsertItem(cells);
    }
    return l;
}

const orderview::MemoryListCtrl& List()
{
    static const orderview::MemoryListCtrl list = MakeList(false);
    return list;
}

const orderview::MemoryListCtrl& ChineseList()
{
    static const orderview::MemoryListCtrl list = MakeList(true);
    return list;
}

std::string OutputPath(const char* name)
{
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder && *folder ? folder : "/tmp") + "/orderview-bench-" + std::to_string(::getpid()) + name;
}

double PeakMiB()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void BM_PrintListToPdf(benchmark::State& state)
{
    const auto& list = List();
    const std::string path = OutputPath(".pdf");
    ::setenv("ORDERVIEW_PRINT_TO", path.c_str(), 1);
    const double before = PeakMiB();
    for (auto _ : state) {
        if (!g_vPrintListCtrl(list, "Orders")) state.SkipWithError("not printed");
    }
    state.counters["peak_MiB_before"] = before;
    state.counters["peak_MiB_after"] = PeakMiB();
    struct stat st{};
    if (::stat(path.c_str(), &st) == 0) state.counters["file_MiB"] = static_cast<double>(st.st_size) / 1048576.0;
    // The page count as the layout computes it, on a job that is abandoned unprinted.
    const auto job = orderview::StartPdfPrintJob(CString(path + ".layout"), orderview::PrintRequest());
    orderview::ListPrintLayout layout;
    std::vector<int> rows(kRows);
    for (int r = 0; r < kRows; ++r) rows[static_cast<std::size_t>(r)] = r;
    if (job && orderview::LayOutListPrint(*job, list, rows, orderview::ListPrintStyle::kPlain, layout))
        state.counters["pages"] = layout.PageCount();
    ::unsetenv("ORDERVIEW_PRINT_TO");
    std::remove(path.c_str());
}

// The Chinese list printed with the system's Chinese font (or ORDERVIEW_PRINT_FONT's).
void BM_PrintChineseListToPdf(benchmark::State& state)
{
    const auto& list = ChineseList();
    const std::string path = OutputPath("-zh.pdf");
    ::setenv("ORDERVIEW_PRINT_TO", path.c_str(), 1);
    for (auto _ : state) {
        if (!g_vPrintListCtrl(list, "委託回報")) state.SkipWithError("not printed");
    }
    ::unsetenv("ORDERVIEW_PRINT_TO");
    struct stat st{};
    if (::stat(path.c_str(), &st) == 0) state.counters["file_MiB"] = static_cast<double>(st.st_size) / 1048576.0;
    std::string pdf;
    if (!orderview::ReadWholeFile(path, pdf) || pdf.find("/FontFile2") == std::string::npos)
        state.SkipWithError("no Chinese font embedded: install fonts-arphic-uming or set ORDERVIEW_PRINT_FONT");
    std::remove(path.c_str());
}

// The library's HTML spreadsheet export of the same list, with the sample folder's style sheet.
void BM_HtmlExport(benchmark::State& state)
{
    const auto& list = List();
    const std::string path = OutputPath(".xls");
    orderview::DefaultHost host(ORDERVIEW_SAMPLE_DIR);
    orderview::SetHostServices(&host);
    ::setenv("ORDERVIEW_SAVE_AS", path.c_str(), 1);
    for (auto _ : state) g_DataExportXls(const_cast<orderview::MemoryListCtrl&>(list), "Orders", "Orders", nullptr);
    ::unsetenv("ORDERVIEW_SAVE_AS");
    orderview::SetHostServices(nullptr);
    struct stat st{};
    if (::stat(path.c_str(), &st) != 0) state.SkipWithError("not exported");
    std::remove(path.c_str());
}

// The same cells as an HTML table, one fprintf a cell, as the HTML export writes them.
void BM_HtmlTableBaseline(benchmark::State& state)
{
    const auto& list = List();
    const std::string path = OutputPath(".xls");
    static const char* const styles[] = {"text-align:left", "text-align:right", "text-align:center", "text-align:left"};
    for (auto _ : state) {
        FILE* file = std::fopen(path.c_str(), "w+");
        if (!file) {
            state.SkipWithError("cannot write");
            break;
        }
        std::fprintf(file, "<html>\n<body>\n<table x:str border=0 cellpadding=0 cellspacing=0>\n");
        std::fprintf(file, " <tr style='mso-height-source:userset;height:16.5pt'>\n");
        for (int c = 0; c < list.GetColumnCount(); ++c)
            std::fprintf(file, "<td class=align_border  style=' %s'>\n %s</td>\n", styles[list.GetColumnFormat(c) & 3],
                         list.GetColumnText(c).GetString());
        std::fprintf(file, " </tr>\n");
        for (int r = 0; r < list.GetItemCount(); ++r) {
            std::fprintf(file, " <tr style='mso-height-source:userset;height:16.5pt'>\n");
            for (int c = 0; c < list.GetColumnCount(); ++c)
                std::fprintf(file, "<td class=align_border  style=' %s'>\n %s</td>\n", styles[list.GetColumnFormat(c) & 3],
                             list.GetItemText(r, c).GetString());
            std::fprintf(file, " </tr>\n");
        }
        std::fprintf(file, "</table>\n</body>\n</html>\n");
        std::fclose(file);
    }
    std::remove(path.c_str());
}

}  // namespace

BENCHMARK(BM_HtmlTableBaseline)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
BENCHMARK(BM_HtmlExport)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
BENCHMARK(BM_PrintListToPdf)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
BENCHMARK(BM_PrintChineseListToPdf)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

BENCHMARK_MAIN();
