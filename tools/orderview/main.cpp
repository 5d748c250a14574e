// orderview: the order screens of the library in a terminal, on a main folder's data.
#include <cstdio>
#include <cstring>

#include <string>

#include "cli_support.h"
#include "commands.h"
#include "generate.h"
#include "main_folder.h"

namespace {

const char kUsage[] =
    "usage: orderview COMMAND [OPTIONS]\n"
    "\n"
    "Commands:\n"
    "  list      print an order or deal list as the order screens fill it (table, CSV, JSON)\n"
    "  columns   the item keys a list can show, with their headings\n"
    "  check     run the stock order check and the insurance check on every order\n"
    "  export    write a list as CSV, JSON Lines, a text table, an HTML spreadsheet or a workbook\n"
    "  generate  write a coherent synthetic main folder of any size\n"
    "  print     print a list to a PDF file\n"
    "  xls       dump, make and resave binary workbooks\n"
    "  cfb       list and read the streams of compound files\n"
    "\n"
    "Global options (before or after the command):\n"
    "  --lang NAME  the language of the texts: sys/language.NAME.txt of the main folder\n"
    "               (zh-TW: Traditional Chinese; en: sys/language.txt, the default unless\n"
    "               sys/host.ini [Host] Language names another)\n"
    "\n"
    "'orderview COMMAND --help' tells more; 'orderview --version' the library's version.\n"
    "Exit status: 0 done, 1 a check refused or a file could not be read or written, 2 usage.\n";

struct Command {
    const char* name;
    int (*run)(int, char**);
};

const Command kCommands[] = {
    {"list", ovcli::ListCommand},
    {"columns", ovcli::ColumnsCommand},
    {"check", ovcli::CheckCommand},
    {"export", ovcli::ExportCommand},
    {"generate", GenerateCommand},
    {"print", ovcli::PrintCommand},
    {"xls", ovcli::XlsCommand},
    {"cfb", ovcli::CfbCommand},
};

// Takes the global option "--lang NAME" (or "--lang=NAME") out of the arguments, wherever it
// stands; false when it has no value.
bool TakeLanguage(int& argc, char** argv)
{
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--lang" || arg.compare(0, 7, "--lang=") == 0) {
            std::string value = arg.size() > 6 ? arg.substr(7) : "";
            if (arg == "--lang") {
                if (i + 1 >= argc) return false;
                value = argv[++i];
            }
            if (value.empty()) return false;
            ovcli::MainFolder::SetLanguage(value);
            continue;
        }
        argv[kept++] = argv[i];
    }
    argc = kept;
    argv[argc] = nullptr;
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    if (!TakeLanguage(argc, argv)) {
        std::fprintf(stderr, "orderview: option --lang needs a language name\n%s", kUsage);
        return 2;
    }
    if (argc < 2) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h") || !std::strcmp(argv[1], "help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!std::strcmp(argv[1], "--version")) {
        std::printf("orderview %s\n", ORDERVIEW_VERSION);
        return 0;
    }
    ovcli::InstallSignalHandlers();
    for (const Command& command : kCommands)
        if (!std::strcmp(argv[1], command.name)) return command.run(argc - 1, argv + 1);
    std::fprintf(stderr, "orderview: unknown %s '%s'\n%s", argv[1][0] == '-' ? "option" : "command", argv[1], kUsage);
    return 2;
}
