// orderview print: a list printed to a PDF file with the library's list printing.
#include <cstdio>
#include <string>

#include "commands.h"
#include "console_platform.h"
#include "export/list_print.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview print [--main DIR] [--list simple|full|deal] [--mode N] [--style plain|grid|inventory]\n"
    "                       [--title TEXT] --output FILE.pdf\n"
    "\n"
    "Prints a list (as 'orderview list' shows it) to a PDF file on A4 paper: the title, the printing\n"
    "time, the headings on every page and page numbers. grid draws a spreadsheet's grid, inventory\n"
    "adds a totals row for the columns of numbers. The file is written beside FILE and renamed over\n"
    "it at the end.\n";

}  // namespace

int PrintCommand(int argc, char** argv)
{
    Options options;
    if (!options.Parse(argc, argv, 1, {"main", "list", "mode", "style", "title", "output"}, {"help"})) {
        std::fprintf(stderr, "orderview print: %s\n%s", options.Error().c_str(), kUsage);
        return 2;
    }
    if (options.Has("help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    ListKind kind = ListKind::Full;
    const std::string style = options.Get("style", "plain");
    const std::string output = options.Get("output");
    if (!ParseListKind(options.Get("list", "full"), kind) || output.empty() ||
        (style != "plain" && style != "grid" && style != "inventory")) {
        std::fprintf(stderr, "orderview print: give --list simple|full|deal, --style plain|grid|inventory and --output\n%s",
                     kUsage);
        return 2;
    }
    long long mode = DefaultMode(kind);
    if (options.Has("mode") && !options.GetInt("mode", 0, 0x7fffffff, mode)) {
        std::fprintf(stderr, "orderview print: %s\n", options.Error().c_str());
        return 2;
    }
    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return 1;
    ConsolePlatform platform;
    platform.AnswerPrintDialog(CString(output));
    OrderList list(folder.Host(), kind, static_cast<int>(mode), DefaultColumns(kind));
    if (!MainFolder::Report(list.Diagnostics())) return 1;
    const CString title = options.Has("title")
                              ? CString(options.Get("title"))
                              : CString(ListTitle(kind));
    const std::size_t logged = folder.Host().vecDebugLog.size();
    bool printed = false;
    if (style == "plain") printed = g_vPrintListCtrl(list, title);
    else if (style == "grid") printed = g_vPrintListCtrlExcelStyle(list, title);
    else printed = g_vPrintListCtrlInventory(list, title);
    // What the print job wrote on the debug log (no font for Chinese text, once) goes to stderr.
    const auto& log = folder.Host().vecDebugLog;
    for (std::size_t i = logged; i < log.size(); ++i)
        if (log[i].Left(7) == "print: ") std::fprintf(stderr, "orderview %s\n", log[i].GetString());
    if (!printed) {
        std::fprintf(stderr, "orderview print: %s: could not be written\n", output.c_str());
        return 1;
    }
    return 0;
}

}  // namespace ovcli
