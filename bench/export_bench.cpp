// List exports of 100,000 rows x 20 columns against a baseline in the same run that writes the
// same bytes with one fprintf per field from cells already split and classified (so the
// baseline does none of the export's reading or deciding). The workbook holds 65,535 rows, as
// many as a sheet takes. Each export writes a new file (the output is removed between
// iterations, outside the timing); replacing an existing file adds one flush to disk.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "orderview.h"

// The workbook export before texts went to UTF-16 (workbook_export_previous.cpp).
bool PreviousDataExportWorkbook(CListCtrl& list, const CString& sheetName);

namespace {

constexpr int kRows = 100000;
constexpr int kColumns = 20;
constexpr int kCommodityColumn = 3;
constexpr int kAvePriceColumn = 7;

// Records what the export asks for and answers the save dialog with a fixed path.
class BenchPlatform : public orderview::SystemPlatform {
public:
    bool SaveFileDialog(const orderview::SaveFileRequest&, CString& chosen) override
    {
        chosen = path.c_str();
        return true;
    }
    std::string path;
};

CString CellText(int row, int column)
{
    char text[32];
    switch (column % 5) {
    case 0: std::snprintf(text, sizeof text, "%d,%03d", row % 1000, column * 37 % 1000); break;
    case 1: std::snprintf(text, sizeof text, "%d.%02d", row % 5000, (row + column) % 100); break;
    case 2: std::snprintf(text, sizeof text, "%d.%d%%", row % 100, column % 10); break;
    case 3: std::snprintf(text, sizeof text, "TXF%05d", row); break;
    default: std::snprintf(text, sizeof text, "09:%02d:%02d", row % 60, column % 60); break;
    }
    return text;
}

struct Fixture {
    Fixture()
    {
        host.csMainPath = CString(Folder().c_str());
        std::filesystem::create_directories(Folder() + "/sys");
        std::filesystem::copy_file(std::string(ORDERVIEW_SAMPLE_DIR) + "/sys/xls_head.txt",
                                   Folder() + "/sys/xls_head.txt",
                                   std::filesystem::copy_options::overwrite_existing);
        orderview::SetHostServices(&host);
        orderview::SetPlatform(&platform);
        for (int c = 0; c < kColumns; ++c) {
            char heading[32];
            std::snprintf(heading, sizeof heading, "Column %d", c);
            const CString name = c == kCommodityColumn   ? CString("IDS_ORDER-ITEM_COMMODITY")
                                 : c == kAvePriceColumn ? CString("IDS_ORDER-ITEM_AVEPRICE")
                                                        : CString(heading);
            list.InsertColumn(name, c % 5 == 3 ? CListCtrl::kFormatLeft : CListCtrl::kFormatRight);
        }
        std::vector<CString> cells(kColumns);
        for (int r = 0; r < kRows; ++r) {
            for (int c = 0; c < kColumns; ++c) cells[c] = CellText(r, c);
            list.InsertItem(cells);
        }
    }
    ~Fixture()
    {
        orderview::SetPlatform(nullptr);
        orderview::SetHostServices(nullptr);
        std::filesystem::remove_all(Folder());
    }
    static const std::string& Folder()
    {
        static const std::string folder = [] {
            char pattern[] = "/tmp/orderview-export-bench-XXXXXX";
            return std::string(mkdtemp(pattern));
        }();
        return folder;
    }
    std::string Path(const char* name) const { return Folder() + "/" + name; }

    orderview::TableHost host;
    BenchPlatform platform;
    orderview::MemoryListCtrl list;
};

Fixture& Setup()
{
    static Fixture fixture;
    return fixture;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// One field of the baseline: a format and up to two arguments.
struct Field {
    const char* format;
    std::string first, second;
};

// The bytes of an export as fields, read from the list once, before timing.
std::vector<Field> TextFields(bool csv)
{
    Fixture& f = Setup();
    std::vector<Field> fields;
    auto add = [&](const char* csvFormat, const char* textFormat, const CString& text, bool last) {
        fields.push_back({csv ? csvFormat : textFormat, text.GetString(), last ? " " : csv ? "," : " "});
    };
    for (int c = 0; c < kColumns; ++c) {
        const char* width = c == kCommodityColumn ? "%-50s%s" : c == kAvePriceColumn ? "%-30s%s" : "%-20s%s";
        add("%s%s", width, f.list.GetColumnText(c), c == kColumns - 1);
    }
    fields.push_back({"\r\n", "", ""});
    for (int r = 0; r < kRows; ++r) {
        for (int c = 0; c < kColumns; ++c) {
            const bool wide = c == kCommodityColumn || c == kAvePriceColumn;
            add("%s%s", wide ? "%-50s%s" : "%-20s%s", f.list.GetItemText(r, c), c == kColumns - 1);
        }
        fields.push_back({"\r\n", "", ""});
    }
    return fields;
}

std::vector<Field> HtmlFields(const std::string& head)
{
    Fixture& f = Setup();
    std::vector<Field> fields;
    const char* row = " <tr style='mso-height-source:userset;height:16.5pt'>\n";
    fields.push_back({"%s%s", head, ""});
    fields.push_back({row, "", ""});
    for (const char* label : {"IDS_QWORDERVIEW_GLOABLDATAPROC_NAME:", "IDS_QWORDERVIEW_GLOABLDATAPROC_BHNO:",
                              "IDS_QWORDERVIEW_GLOABLDATAPROC_CSEQ:"})
        fields.push_back({"<td class=default  style=' '>\n %s%s</td>\n", label, ""});
    fields.push_back({" </tr>\n", "", ""});
    const std::vector<CString> styles = [&] {
        std::vector<CString> s;
        for (int c = 0; c < kColumns; ++c)
            s.push_back(f.list.GetColumnFormat(c) == CListCtrl::kFormatRight ? "text-align:right" : "text-align:left");
        return s;
    }();
    const char* text = "<td class=align_border  style=' %s'>\n %s</td>\n";
    fields.push_back({row, "", ""});
    for (int c = 0; c < kColumns; ++c) fields.push_back({text, styles[c].GetString(), f.list.GetColumnText(c).GetString()});
    fields.push_back({" </tr>\n", "", ""});
    for (int r = 0; r < kRows; ++r) {
        fields.push_back({row, "", ""});
        for (int c = 0; c < kColumns; ++c) {
            const std::string cell = f.list.GetItemText(r, c).GetString();
            const bool number = styles[c] == "text-align:right" && cell.find_first_of("0123456789,") != std::string::npos &&
                                cell.find_first_of("\\ :") == std::string::npos;
            const size_t point = cell.find('.');
            const std::string decimals = point == std::string::npos ? "" : std::string(cell.size() - point - 1, '#');
            if (!number)
                fields.push_back({text, styles[c].GetString(), cell});
            else if (cell.find('%') != std::string::npos)
                fields.push_back({point == std::string::npos
                                      ? "<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0%%\"'>%s%s</td>\n"
                                      : "<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0.%s%%\"'>%s</td>\n",
                                  point == std::string::npos ? cell : decimals, point == std::string::npos ? "" : cell});
            else if (point != std::string::npos)
                fields.push_back({"<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0.%s\"'>%s</td>\n",
                                  decimals, cell});
            else
                fields.push_back({"<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0\"'>%s%s</td>\n",
                                  cell, ""});
        }
        fields.push_back({" </tr>\n", "", ""});
    }
    fields.push_back({"</table>\n</body>\n</html>\n", "", ""});
    return fields;
}

void WriteFields(const std::string& path, const std::vector<Field>& fields)
{
    FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) return;
    for (const Field& field : fields) std::fprintf(out, field.format, field.first.c_str(), field.second.c_str());
    std::fclose(out);
}

template <class Export>
void RunExport(benchmark::State& state, const char* name, Export exportList)
{
    Fixture& f = Setup();
    f.platform.path = f.Path(name);
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(f.platform.path);
        state.ResumeTiming();
        exportList(f.list);
    }
    state.counters["MB"] = static_cast<double>(std::filesystem::file_size(f.platform.path)) / 1e6;
}

void RunBaseline(benchmark::State& state, const char* name, const char* exportName, const std::vector<Field>& fields)
{
    Fixture& f = Setup();
    const std::string path = f.Path(name);
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(path);
        state.ResumeTiming();
        WriteFields(path, fields);
    }
    if (ReadFile(path) != ReadFile(f.Path(exportName))) state.SkipWithError("the baseline wrote other bytes");
}

void BM_Csv(benchmark::State& state) { RunExport(state, "list.csv", [](CListCtrl& list) { g_DataExport(list); }); }
void BM_CsvBaseline(benchmark::State& state)
{
    static const std::vector<Field> fields = TextFields(true);
    RunBaseline(state, "baseline.csv", "list.csv", fields);
}
void BM_Text(benchmark::State& state) { RunExport(state, "list.txt", [](CListCtrl& list) { g_DataExport(list); }); }
void BM_TextBaseline(benchmark::State& state)
{
    static const std::vector<Field> fields = TextFields(false);
    RunBaseline(state, "baseline.txt", "list.txt", fields);
}
CBaseOrder_UserInfo g_user;
void BM_Html(benchmark::State& state)
{
    RunExport(state, "list.xls", [](CListCtrl& list) { g_DataExportXls(list, "Orders", "", &g_user); });
}
void BM_HtmlBaseline(benchmark::State& state)
{
    const std::string prologue =
        "<html xmlns:v=\"urn:schemas-microsoft-com:vml\"\nxmlns:o=\"urn:schemas-microsoft-com:office:office\"\n"
        "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"\nxmlns=\"http://www.w3.org/TR/REC-html40\">\n" +
        ReadFile(Fixture::Folder() + "/sys/xls_head.txt") +
        "\n\n<body>\n<table x:str border=0 cellpadding=0 cellspacing=0 "
        "style='border-collapse:collapse;table-layout:fixed;'>\n";
    static const std::vector<Field> fields = HtmlFields(prologue);
    RunBaseline(state, "baseline.xls", "list.xls", fields);
}
// The sheet-sized list of the workbook benchmarks: the first 65,535 rows.
orderview::MemoryListCtrl& SheetSized()
{
    Fixture& f = Setup();
    static orderview::MemoryListCtrl sheetSized = [&] {
        orderview::MemoryListCtrl list;
        for (int c = 0; c < kColumns; ++c) list.InsertColumn(f.list.GetColumnText(c), f.list.GetColumnFormat(c));
        std::vector<CString> cells(kColumns);
        for (int r = 0; r < 65535; ++r) {
            for (int c = 0; c < kColumns; ++c) cells[c] = f.list.GetItemText(r, c);
            list.InsertItem(cells);
        }
        return list;
    }();
    return sheetSized;
}

void RunWorkbook(benchmark::State& state, bool (*exportList)(CListCtrl&, const CString&), const char* name,
                 orderview::MemoryListCtrl& list)
{
    Fixture& f = Setup();
    f.platform.path = f.Path(name);
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(f.platform.path);
        state.ResumeTiming();
        if (!exportList(list, "Orders")) state.SkipWithError("the workbook was not written");
    }
}

// One export outside any timing.
void RunWorkbookOnce(bool (*exportList)(CListCtrl&, const CString&), const char* name)
{
    Fixture& f = Setup();
    f.platform.path = f.Path(name);
    std::filesystem::remove(f.platform.path);
    exportList(SheetSized(), "Orders");
}

void BM_Workbook(benchmark::State& state) { RunWorkbook(state, g_DataExportWorkbook, "book.xls", SheetSized()); }
// The export as it was before wide texts and further sheets, on the same list: the Latin path may
// not be slower than this by more than 10%. Both write the same file (checked after the timed
// runs). Run with --benchmark_enable_random_interleaving=true so that neither pays for going first.
void BM_WorkbookPrevious(benchmark::State& state)
{
    RunWorkbook(state, PreviousDataExportWorkbook, "previous.xls", SheetSized());
    RunWorkbookOnce(g_DataExportWorkbook, "current.xls");
    if (ReadFile(Setup().Path("current.xls")) != ReadFile(Setup().Path("previous.xls")))
        state.SkipWithError("the two workbooks differ");
}
// The same list with a Chinese account name in every row's commodity column (UTF-8, stored as
// UTF-16), for the cost of the wide path.
void BM_WorkbookChinese(benchmark::State& state)
{
    static orderview::MemoryListCtrl chinese = [] {
        orderview::MemoryListCtrl& latin = SheetSized();
        orderview::MemoryListCtrl list;
        for (int c = 0; c < kColumns; ++c) list.InsertColumn(latin.GetColumnText(c), latin.GetColumnFormat(c));
        std::vector<CString> cells(kColumns);
        for (int r = 0; r < latin.GetItemCount(); ++r) {
            for (int c = 0; c < kColumns; ++c) cells[c] = latin.GetItemText(r, c);
            cells[kCommodityColumn] = "\xE9\x99\xB3\xE5\xA4\xA7\xE6\x96\x87\xE6\x9C\x9F\xE8\xB2\xA8" + cells[kCommodityColumn];
            list.InsertItem(cells);
        }
        return list;
    }();
    RunWorkbook(state, g_DataExportWorkbook, "chinese.xls", chinese);
}

}  // namespace

// Each baseline runs after its export and compares the files they wrote.
BENCHMARK(BM_Csv)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_CsvBaseline)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_Text)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_TextBaseline)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_Html)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_HtmlBaseline)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_Workbook)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_WorkbookPrevious)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_WorkbookChinese)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);

BENCHMARK_MAIN();
