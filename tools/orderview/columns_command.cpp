// orderview columns: the item keys a list's rows carry, with their headings.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

#include "cli_support.h"
#include "commands.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview columns [--main DIR] [--list simple|full|deal]\n"
    "\n"
    "Prints one line per item key the list's rows carry: the key, a tab, the heading (the main\n"
    "folder's language text), and a tab and '*' for the columns the screen shows by default.\n"
    "The keys are what 'orderview list --columns' takes and what its JSON output is keyed by.\n"
    "\n"
    "  --main DIR   the main folder (default: $ORDERVIEW_HOME, else the current folder)\n"
    "  --list KIND  simple, full (default) or deal\n"
    "  -h, --help   this text\n";

}  // namespace

int ColumnsCommand(int argc, char** argv)
{
    Options options;
    const int parsed = ParseOptions(options, argc, argv, "columns", kUsage, {"main", "list"}, {});
    if (parsed >= 0) return parsed;
    ListKind kind = ListKind::Full;
    if (!ParseListKind(options.Get("list", "full"), kind))
        return UsageError("columns", "--list is simple, full or deal, not '" + options.Get("list") + "'", kUsage);
    const std::string problem = MainFolderProblem(options.Get("main"));
    if (!problem.empty()) return Failure("columns", problem);
    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return kExitFailed;
    const std::vector<CString> shown = DefaultColumns(kind);
    for (const CString& key : KnownColumns(kind)) {
        const bool byDefault = std::find(shown.begin(), shown.end(), key) != shown.end();
        std::printf("%s\t%s%s\n", key.GetString(), folder.Text(key).GetString(), byDefault ? "\t*" : "");
    }
    if (std::fflush(stdout) != 0) return Failure("columns", "standard output: " + SystemReason(errno));
    return kExitDone;
}

}  // namespace ovcli
