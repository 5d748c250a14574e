// orderview list: one row per order or deal, as the order screens fill them, in a text table.
#include <cstdio>
#include <string>
#include <vector>

#include "commands.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"
#include "table_printer.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview list [--main DIR] [--list simple|full|deal] [--mode N] [--columns KEY,...]\n"
    "\n"
    "Fills one row per order (or deal) of the main folder with the library's row functions and\n"
    "prints them as a table headed by the language texts.\n"
    "\n"
    "  --main DIR      the main folder (default: $ORDERVIEW_HOME, else the current folder)\n"
    "  --list KIND     simple, full (default) or deal\n"
    "  --mode N        the list mode (default: every record; 255 simple, 0x4ffff full);\n"
    "                  decimal or 0x hexadecimal\n"
    "  --columns KEYS  item keys to show, comma separated (default: the screen's columns)\n";

std::vector<CString> SplitColumns(const std::string& text)
{
    std::vector<CString> keys;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t comma = std::min(text.find(',', start), text.size());
        if (comma > start) keys.emplace_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    return keys;
}

}  // namespace

int ListCommand(int argc, char** argv)
{
    Options options;
    if (!options.Parse(argc, argv, 1, {"main", "list", "mode", "columns"}, {"help"})) {
        std::fprintf(stderr, "orderview list: %s\n%s", options.Error().c_str(), kUsage);
        return 2;
    }
    if (options.Has("help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    ListKind kind = ListKind::Full;
    if (!ParseListKind(options.Get("list", "full"), kind)) {
        std::fprintf(stderr, "orderview list: --list is simple, full or deal, not '%s'\n", options.Get("list").c_str());
        return 2;
    }
    long long mode = DefaultMode(kind);
    if (options.Has("mode") && !options.GetInt("mode", 0, 0x7fffffff, mode)) {
        std::fprintf(stderr, "orderview list: %s\n", options.Error().c_str());
        return 2;
    }
    std::vector<CString> columns = SplitColumns(options.Get("columns"));
    if (columns.empty()) columns = DefaultColumns(kind);

    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return 1;
    OrderList list(folder.Host(), kind, static_cast<int>(mode), columns);
    if (!MainFolder::Report(list.Diagnostics())) return 1;
    Progress progress("list", static_cast<size_t>(list.GetItemCount()));
    if (!PrintTable(list, stdout, &progress)) {
        std::fprintf(stderr, "orderview list: cannot write the table\n");
        return 1;
    }
    return 0;
}

}  // namespace ovcli
