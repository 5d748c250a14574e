// orderview export: a list written to a file (or standard output): the program's own CSV, JSON
// Lines and text table, or the library's exports, the save dialog answered by --output.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "cli_support.h"
#include "commands.h"
#include "console_platform.h"
#include "day_check.h"
#include "export/list_export.h"
#include "list_output.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"
#include "table_printer.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview export [--main DIR] [--list simple|full|deal] [--mode N] [--columns KEY,...]\n"
    "                        --format FORMAT --output FILE|- [--bom] [--quiet]\n"
    "\n"
    "Writes a list (as 'orderview list' shows it) to FILE, or to standard output for '-'.\n"
    "\n"
    "  --format csv         RFC 4180 CSV: the headings first, fields quoted where needed, CRLF\n"
    "                       line ends, numbers as the list shows them (\"22,886\")\n"
    "  --format json        JSON Lines: a first line {\"columns\":[{\"key\":K,\"heading\":H},...]},\n"
    "                       then one object per row from item key to the shown text\n"
    "  --format txt         the aligned text table of 'orderview list'\n"
    "  --format screen-csv  the order screen's own CSV export (padded fields, no quoting)\n"
    "  --format screen-txt  the order screen's own text table export\n"
    "  --format html        the HTML table spreadsheet programs open; it needs the main folder's\n"
    "                       template sys/xls_head.txt\n"
    "  --format xls         a binary workbook\n"
    "  --bom                start CSV with a UTF-8 byte-order mark\n"
    "  --quiet              no progress bar and no closing line\n"
    "  -h, --help           this text\n"
    "\n"
    "--main, --list, --mode and --columns are those of 'orderview list'. A file is written beside\n"
    "FILE under a temporary name and renamed over it at the end: an interrupted or failed export\n"
    "(SIGINT, SIGTERM, a full disk) keeps the old FILE. A closing line on standard error says what\n"
    "was written. Exit status: 0 done, 1 a file could not be read or written, 2 usage.\n";

// The file's identity before and after an export; the library's exports fail silently.
struct Stamp {
    bool exists = false;
    long long size = 0, seconds = 0, nanoseconds = 0;
    bool operator==(const Stamp& o) const
    {
        return exists == o.exists && size == o.size && seconds == o.seconds && nanoseconds == o.nanoseconds;
    }
};

Stamp StampOf(const std::string& path)
{
    Stamp stamp;
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return stamp;
    stamp.exists = true;
    stamp.size = static_cast<long long>(st.st_size);
    stamp.seconds = static_cast<long long>(st.st_mtim.tv_sec);
    stamp.nanoseconds = static_cast<long long>(st.st_mtim.tv_nsec);
    return stamp;
}

bool IsLibraryFormat(const std::string& format)
{
    return format == "screen-csv" || format == "screen-txt" || format == "html" || format == "xls";
}

// Copies a file to standard output; false with errno set when a read or write failed.
bool CopyToStandardOutput(const std::string& path)
{
    std::FILE* in = std::fopen(path.c_str(), "rb");
    if (!in) return false;
    char buffer[1 << 16];
    bool ok = true;
    for (std::size_t got; ok && (got = std::fread(buffer, 1, sizeof buffer, in)) > 0;)
        ok = std::fwrite(buffer, 1, got, stdout) == got;
    ok = ok && !std::ferror(in) && std::fflush(stdout) == 0;
    std::fclose(in);
    return ok;
}

// The library's exports write to a named file: standard output gets a staged copy.
class Staging {
public:
    ~Staging()
    {
        if (!path_.empty()) ::unlink(path_.c_str());
    }
    bool Make(std::string& error)
    {
        const char* folder = std::getenv("TMPDIR");
        std::string name = std::string(folder && *folder ? folder : "/tmp") + "/orderview-export-XXXXXX";
        const int fd = ::mkstemp(&name[0]);
        if (fd < 0) {
            error = name + ": " + SystemReason(errno);
            return false;
        }
        ::close(fd);
        path_ = name;
        return true;
    }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

}  // namespace

int ExportCommand(int argc, char** argv)
{
    Options options;
    const int parsed = ParseOptions(options, argc, argv, "export", kUsage,
                                    {"main", "list", "mode", "columns", "format", "output"}, {"bom", "quiet"});
    if (parsed >= 0) return parsed;
    ListChoice choice;
    const int chosen = ReadListChoice(options, "export", kUsage, choice);
    if (chosen >= 0) return chosen;
    const std::string format = options.Get("format");
    const std::string output = options.Get("output");
    if (format != "csv" && format != "json" && format != "txt" && !IsLibraryFormat(format))
        return UsageError("export",
                          format.empty() ? "--format is required"
                                         : "--format is csv, json, txt, screen-csv, screen-txt, html or xls, not '" +
                                               format + "'",
                          kUsage);
    if (output.empty()) return UsageError("export", "--output FILE (or - for standard output) is required", kUsage);
    if (options.Has("bom") && format != "csv") return UsageError("export", "--bom goes with --format csv", kUsage);
    const bool quiet = options.Has("quiet");
    const std::string problem = OrderList::DayProblem(options.Get("main"), choice.kind);
    if (!problem.empty()) return Failure("export", problem);
    const std::string outputProblem = OutputProblem(output);
    if (!outputProblem.empty()) return Failure("export", outputProblem);

    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return kExitFailed;
    if (format == "html") {
        // The library writes a page without a style sheet when the template is missing.
        const std::string templ = MainFolderPath(options.Get("main")) + "/sys/xls_head.txt";
        std::FILE* file = std::fopen(templ.c_str(), "rb");
        if (!file) return Failure("export", templ + ": " + SystemReason(errno) + " (the HTML export's template)");
        std::fclose(file);
    }
    const bool toStandardOutput = output == "-";
    // What the program writes itself is written in the same pass that reads the day, and nothing
    // of it is seen before the day is known to be well formed: a file takes the target's place
    // only then, and rows for standard output wait for a check of the whole day on a thread of its
    // own. The library's formats have the day read through first.
    const bool oneReading = !IsLibraryFormat(format);
    std::unique_ptr<DayCheck> check;
    if (oneReading && toStandardOutput)
        check = std::make_unique<DayCheck>(OrderList::OpenDay(folder.Host(), choice.kind), choice.kind == ListKind::Deal);
    const bool rowsToTerminal = toStandardOutput && Progress::OutputIsTerminal();
    Progress reading("reading", OrderList::FileSize(MainFolderPath(options.Get("main")), choice.kind),
                     quiet || (oneReading && rowsToTerminal));  // no bar among the rows
    OrderList list(folder.Host(), choice.kind, choice.mode, choice.columns, &reading, oneReading);
    if (!oneReading && !MainFolder::Report(list.Diagnostics())) return kExitFailed;
    Progress progress("export", oneReading ? 0 : static_cast<std::size_t>(list.GetItemCount()), quiet || oneReading);
    progress.SetRowsToTerminal(rowsToTerminal);
    const std::string where = toStandardOutput ? std::string("standard output") : output;

    if (!IsLibraryFormat(format)) {
        OutputFile file;
        std::string error;
        if (!file.Open(output, error)) return Failure("export", error);
        std::vector<std::string> keys;
        for (const CString& key : list.Keys()) keys.push_back(key.str());
        const std::unique_ptr<LineOutput> out = RowsTo(file.Stream(), check.get());
        bool written;
        if (format == "csv") written = WriteCsv(list, *out, options.Has("bom"), &progress);
        else if (format == "json") written = WriteJsonLines(list, keys, *out, &progress);
        else written = PrintTable(list, *out, &progress);
        const int writeError = errno;
        reading.Clear();
        if (check && !MainFolder::Report(check->Diagnostics())) return kExitFailed;  // nothing was written
        if (!written) return Failure("export", where + ": " + SystemReason(writeError ? writeError : EIO));
        if (!MainFolder::Report(list.Diagnostics())) return kExitFailed;  // the file is not put in place
        if (!file.Commit(error)) return Failure("export", error);
    } else {
        Staging staging;
        std::string error;
        if (toStandardOutput && !staging.Make(error)) return Failure("export", error);
        const std::string target = toStandardOutput ? staging.Path() : output;
        ConsolePlatform platform;
        platform.AnswerSaveDialog(CString(target), format == "screen-txt" ? 2 : 1);
        list.SetProgress(&progress);
        const Stamp before = StampOf(target);
        bool ok = true;
        {
            LibraryWriteGuard guard(target, toStandardOutput ? staging.Path() : std::string());
            if (format == "screen-csv" || format == "screen-txt") {
                g_DataExport(list);
            } else if (format == "html") {
                const CString title(ListTitle(choice.kind));
                g_DataExportXls(list, title, title, nullptr);
            } else {
                ok = g_DataExportWorkbook(list, choice.kind == ListKind::Deal ? "Deals" : "Orders");
            }
        }
        const Stamp after = StampOf(target);
        if (!ok || !after.exists || after == before) {
            if (format == "xls" && list.GetColumnCount() > 256)
                return Failure("export", where + ": a workbook sheet holds at most 256 columns; the list has " +
                                             std::to_string(list.GetColumnCount()));
            const std::string later = OutputProblem(target);
            return Failure("export", later.empty() ? where + ": could not be written" : later);
        }
        if (toStandardOutput && !CopyToStandardOutput(staging.Path()))
            return Failure("export", "standard output: " + SystemReason(errno));
    }
    progress.Clear();
    if (!quiet)
        std::fprintf(stderr, "wrote %s rows to %s\n", Grouped(static_cast<std::size_t>(list.GetItemCount())).c_str(),
                     where.c_str());
    return kExitDone;
}

}  // namespace ovcli
