// The subcommands of the orderview program. Each takes the program's arguments from the
// subcommand's name on (argv[0] is the name) and returns the exit status: 0 done, 1 a check
// refused or a file could not be read or written, 2 usage.
#pragma once

namespace ovcli {

int ListCommand(int argc, char** argv);
int ExportCommand(int argc, char** argv);
int CheckCommand(int argc, char** argv);
int PrintCommand(int argc, char** argv);
int XlsCommand(int argc, char** argv);
int CfbCommand(int argc, char** argv);
int ColumnsCommand(int argc, char** argv);

}  // namespace ovcli
