// cfbtool: the compound file subcommand of orderview as a program of its own, for the interop tests.
#include "commands.h"

int main(int argc, char** argv) { return ovcli::CfbCommand(argc, argv); }
