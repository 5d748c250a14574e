// xlstool: the workbook subcommand of orderview as a program of its own, for the interop tests.
#include "commands.h"

int main(int argc, char** argv) { return ovcli::XlsCommand(argc, argv); }
