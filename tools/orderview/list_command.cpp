// orderview list: one row per order or deal, as the order screens fill them, as a text table,
// CSV or JSON Lines on standard output.
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cli_support.h"
#include "commands.h"
#include "day_check.h"
#include "list_output.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"
#include "table_printer.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview list [--main DIR] [--list simple|full|deal] [--mode N] [--columns KEY,...]\n"
    "                      [--format table|csv|json] [--bom] [--quiet]\n"
    "\n"
    "Fills one row per order (or deal) of the main folder with the library's row functions and\n"
    "prints them on standard output, headed by the language texts.\n"
    "\n"
    "  --main DIR      the main folder (default: $ORDERVIEW_HOME, else the current folder); it\n"
    "                  must hold a sys folder\n"
    "  --list KIND     simple, full (default) or deal\n"
    "  --mode N        the list mode (default: every record; 255 simple, 0x4ffff full);\n"
    "                  decimal (a leading 0 is still decimal) or 0x hexadecimal\n"
    "  --columns KEYS  item keys to show, comma separated (default: the screen's columns);\n"
    "                  'orderview columns --list KIND' lists the keys with their headings\n"
    "  --format F      table (default): aligned columns under a rule;\n"
    "                  csv: RFC 4180, the headings first, fields quoted where needed, CRLF;\n"
    "                  json: JSON Lines; the first line names the columns,\n"
    "                    {\"columns\":[{\"key\":\"IDS_ORDER-ITEM_ORDERNO\",\"heading\":\"...\"},...]}\n"
    "                  then one object per row from item key to the shown text,\n"
    "                    {\"IDS_ORDER-ITEM_ORDERNO\":\"K3199\",...}\n"
    "  --bom           start CSV with a UTF-8 byte-order mark\n"
    "  --quiet         no progress bar\n"
    "  -h, --help      this text\n"
    "\n"
    "Cells are the texts the list shows (numbers with their thousands separators). Exit status:\n"
    "0 done, 1 the main folder or a record could not be read or the output not written, 2 usage.\n";

}  // namespace

int ListCommand(int argc, char** argv)
{
    Options options;
    const int parsed = ParseOptions(options, argc, argv, "list", kUsage, {"main", "list", "mode", "columns", "format"},
                                    {"bom", "quiet"});
    if (parsed >= 0) return parsed;
    ListChoice choice;
    const int chosen = ReadListChoice(options, "list", kUsage, choice);
    if (chosen >= 0) return chosen;
    const std::string format = options.Get("format", "table");
    if (format != "table" && format != "csv" && format != "json")
        return UsageError("list", "--format is table, csv or json, not '" + format + "'", kUsage);
    if (options.Has("bom") && format != "csv") return UsageError("list", "--bom goes with --format csv", kUsage);
    const std::string problem = OrderList::DayProblem(options.Get("main"), choice.kind);
    if (!problem.empty()) return Failure("list", problem);

    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return kExitFailed;
    // The day is read once, each row written as it is filled. Standard output that is a file is
    // cut back to where it stood if a line of the day turns out malformed; anything else cannot
    // take a row back, so the rows wait until a check of the whole day, on a thread of its own,
    // has passed.
    const OutputMark mark;
    std::unique_ptr<DayCheck> check;
    if (!mark.CanTakeBack()) check = std::make_unique<DayCheck>(OrderList::OpenDay(folder.Host(), choice.kind),
                                                                choice.kind == ListKind::Deal);
    // Rows on the terminal show their own progress: no bar among them.
    Progress reading("reading", OrderList::FileSize(MainFolderPath(options.Get("main")), choice.kind),
                     options.Has("quiet") || Progress::OutputIsTerminal());
    OrderList list(folder.Host(), choice.kind, choice.mode, choice.columns, &reading, true);
    std::vector<std::string> keys;
    for (const CString& key : list.Keys()) keys.push_back(key.str());
    const std::unique_ptr<LineOutput> out = RowsTo(stdout, check.get());
    bool written;
    if (format == "csv") written = WriteCsv(list, *out, options.Has("bom"), nullptr);
    else if (format == "json") written = WriteJsonLines(list, keys, *out, nullptr);
    else written = PrintTable(list, *out, nullptr);
    const int error = errno;
    reading.Clear();
    if (check && !MainFolder::Report(check->Diagnostics())) return kExitFailed;  // nothing was written
    if (!written || !MainFolder::Report(list.Diagnostics())) {
        if (!check) mark.TakeBack();
        if (!written) return Failure("list", "standard output: " + SystemReason(error));
        return kExitFailed;
    }
    return kExitDone;
}

}  // namespace ovcli
