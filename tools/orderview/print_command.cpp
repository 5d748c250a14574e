// orderview print: a list printed to a PDF file with the library's list printing.
#include <cstdio>
#include <string>

#include "cli_support.h"
#include "commands.h"
#include "console_platform.h"
#include "print/list_print.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview print [--main DIR] [--list simple|full|deal] [--mode N] [--columns KEY,...]\n"
    "                       [--style plain|grid|inventory] [--title TEXT] [--quiet] --output FILE.pdf\n"
    "\n"
    "Prints a list (as 'orderview list' shows it) to a PDF file on A4 paper: the title, the printing\n"
    "time, the headings on every page and page numbers. grid draws a spreadsheet's grid, inventory\n"
    "adds a totals row for the columns of numbers. The file is written beside FILE and renamed over\n"
    "it at the end: an interrupted print (SIGINT, SIGTERM) keeps the old FILE.\n"
    "\n"
    "  --main, --list, --mode, --columns  as for 'orderview list'\n"
    "  --style S     plain (default), grid or inventory\n"
    "  --title TEXT  the title (default: the list's name)\n"
    "  --quiet       no progress bar and no closing line\n"
    "  -h, --help    this text\n";

}  // namespace

int PrintCommand(int argc, char** argv)
{
    Options options;
    const int parsed = ParseOptions(options, argc, argv, "print", kUsage,
                                    {"main", "list", "mode", "columns", "style", "title", "output"}, {"quiet"});
    if (parsed >= 0) return parsed;
    ListChoice choice;
    const int chosen = ReadListChoice(options, "print", kUsage, choice);
    if (chosen >= 0) return chosen;
    const std::string style = options.Get("style", "plain");
    const std::string output = options.Get("output");
    if (style != "plain" && style != "grid" && style != "inventory")
        return UsageError("print", "--style is plain, grid or inventory, not '" + style + "'", kUsage);
    if (output.empty() || output == "-") return UsageError("print", "--output FILE.pdf is required", kUsage);
    const bool quiet = options.Has("quiet");
    const std::string problem = OrderList::DayProblem(options.Get("main"), choice.kind);
    if (!problem.empty()) return Failure("print", problem);
    const std::string outputProblem = OutputProblem(output);
    if (!outputProblem.empty()) return Failure("print", outputProblem);

    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return kExitFailed;
    ConsolePlatform platform;
    platform.AnswerPrintDialog(CString(output));
    Progress reading("reading", OrderList::FileSize(MainFolderPath(options.Get("main")), choice.kind), quiet);
    OrderList list(folder.Host(), choice.kind, choice.mode, choice.columns, &reading);
    if (!MainFolder::Report(list.Diagnostics())) return kExitFailed;
    const std::size_t rows = static_cast<std::size_t>(list.GetItemCount());
    Progress progress("print", rows, quiet);
    list.SetProgress(&progress);
    const CString title = options.Has("title") ? CString(options.Get("title")) : CString(ListTitle(choice.kind));
    const std::size_t logged = folder.Host().vecDebugLog.size();
    bool printed = false;
    {
        LibraryWriteGuard guard(output);
        if (style == "plain") printed = g_vPrintListCtrl(list, title);
        else if (style == "grid") printed = g_vPrintListCtrlExcelStyle(list, title);
        else printed = g_vPrintListCtrlInventory(list, title);
    }
    progress.Clear();
    // What the print job wrote on the debug log (no font for Chinese text, once) goes to stderr.
    const auto& log = folder.Host().vecDebugLog;
    for (std::size_t i = logged; i < log.size(); ++i)
        if (log[i].Left(7) == "print: ") std::fprintf(stderr, "orderview %s\n", log[i].GetString());
    if (!printed) {
        const std::string later = OutputProblem(output);
        return Failure("print", later.empty() ? output + ": could not be written" : later);
    }
    if (!quiet) std::fprintf(stderr, "wrote %s rows to %s\n", Grouped(rows).c_str(), output.c_str());
    return kExitDone;
}

}  // namespace ovcli
