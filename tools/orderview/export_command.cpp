// orderview export: a list written by the library's exports, the save dialog answered by --output.
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "commands.h"
#include "console_platform.h"
#include "export/list_export.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview export [--main DIR] [--list simple|full|deal] [--mode N] --format csv|txt|html|xls\n"
    "                        --output FILE\n"
    "\n"
    "Writes a list (as 'orderview list' shows it) with the library's exports: CSV or a text table,\n"
    "the HTML table that spreadsheet programs open (with the main folder's sys/xls_head.txt), or a\n"
    "binary workbook. The file is written beside FILE and renamed over it at the end.\n";

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

}  // namespace

int ExportCommand(int argc, char** argv)
{
    Options options;
    if (!options.Parse(argc, argv, 1, {"main", "list", "mode", "format", "output"}, {"help"})) {
        std::fprintf(stderr, "orderview export: %s\n%s", options.Error().c_str(), kUsage);
        return 2;
    }
    if (options.Has("help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    ListKind kind = ListKind::Full;
    const std::string format = options.Get("format");
    const std::string output = options.Get("output");
    if (!ParseListKind(options.Get("list", "full"), kind) || output.empty() ||
        (format != "csv" && format != "txt" && format != "html" && format != "xls")) {
        std::fprintf(stderr, "orderview export: give --list simple|full|deal, --format csv|txt|html|xls and --output\n%s",
                     kUsage);
        return 2;
    }
    long long mode = DefaultMode(kind);
    if (options.Has("mode") && !options.GetInt("mode", 0, 0x7fffffff, mode)) {
        std::fprintf(stderr, "orderview export: %s\n", options.Error().c_str());
        return 2;
    }

    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return 1;
    ConsolePlatform platform;
    platform.AnswerSaveDialog(CString(output), format == "txt" ? 2 : 1);
    OrderList list(folder.Host(), kind, static_cast<int>(mode), DefaultColumns(kind));
    if (!MainFolder::Report(list.Diagnostics())) return 1;
    Progress progress("export", static_cast<size_t>(list.GetItemCount()));
    list.SetProgress(&progress);

    const Stamp before = StampOf(output);
    bool ok = true;
    if (format == "csv" || format == "txt") {
        g_DataExport(list);
    } else if (format == "html") {
        const CString title(ListTitle(kind));
        g_DataExportXls(list, title, title, nullptr);
    } else {
        ok = g_DataExportWorkbook(list, kind == ListKind::Deal ? "Deals" : "Orders");
    }
    const Stamp after = StampOf(output);
    if (!ok || !after.exists || after == before) {
        std::fprintf(stderr, "orderview export: %s: could not be written\n", output.c_str());
        return 1;
    }
    return 0;
}

}  // namespace ovcli
