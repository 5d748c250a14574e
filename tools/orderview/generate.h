// The "generate" subcommand: writes a coherent synthetic main folder of any size.
#pragma once

// argv[0] is "generate". Options: --orders N (1..10,000,000), --output DIR, --seed S, --help.
// Returns 0 when done, 1 when a file could not be written, 2 on a usage error.
int GenerateCommand(int argc, char** argv);
