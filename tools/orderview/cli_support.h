// What every subcommand of the orderview program shares: usage and failure messages, the checks
// of the main folder and of an output path, output files written beside their target and renamed
// over it (or standard output for "-"), and the clean-up of temporary files on SIGINT and SIGTERM.
#pragma once

#include <cstdio>
#include <set>
#include <string>

#include "options.h"

namespace ovcli {

enum : int { kExitDone = 0, kExitFailed = 1, kExitUsage = 2 };

// "orderview COMMAND: message" and a pointer to --help on standard error; returns kExitUsage.
int UsageError(const char* command, const std::string& message, const char* usage);
// "orderview COMMAND: message" on standard error; returns kExitFailed.
int Failure(const char* command, const std::string& message);

// Parses the options, prints the usage text for -h/--help (with "help" added to `flags`) and
// refuses stray arguments. Returns -1 to go on, else the exit status.
int ParseOptions(Options& options, int argc, char** argv, const char* command, const char* usage,
                 const std::set<std::string>& valued, std::set<std::string> flags);

// The system's text for an errno value.
std::string SystemReason(int error);

// The main folder a command reads: the option's value, else $ORDERVIEW_HOME, else ".". Empty
// when it is a folder with a "sys" folder; else one line naming the folder and what is wrong.
std::string MainFolderProblem(const std::string& option);
std::string MainFolderPath(const std::string& option);

// Why `path` cannot be written as a new or replaced file ("PATH: reason"), found before anything
// is written: its folder missing or not writable, the path a folder, an existing read-only file.
// Empty when nothing stands in the way.
std::string OutputProblem(const std::string& path);

// Why `path` cannot be read ("PATH: reason"), or empty.
std::string ReadableProblem(const std::string& path);
// Reads a whole file of at most `limit` bytes; false with `error` ("PATH: reason" or "PATH:
// larger than N MiB").
bool ReadWhole(const std::string& path, std::size_t limit, std::string& text, std::string& error);

// Removes the temporary files an interrupted write of `target` left beside it: the files named
// as the library and this program name theirs ("TARGET.tmp" and six letters or digits).
void RemoveStaleTemporaries(const std::string& target);

// A file written under a temporary name beside its target (named as RemoveStaleTemporaries
// expects) and renamed over it by Commit; "-" is standard output, written directly. SIGINT or
// SIGTERM while it is open removes the temporary file and ends the program by that signal.
class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile();  // removes an uncommitted temporary file
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // False with `error` ("PATH: reason") when the file cannot be created.
    bool Open(const std::string& path, std::string& error);
    std::FILE* Stream() const { return stream_; }
    bool IsStandardOutput() const { return path_ == "-"; }
    // Flushes the file to disk and puts it in place; false with `error` when a write failed
    // (the old target stays).
    bool Commit(std::string& error);

private:
    void Discard();

    std::string path_, temp_;
    std::FILE* stream_ = nullptr;
};

// Where standard output stands when it is a regular file written at its end (`>` or `>>`): what
// is written after can be cut off again, so that a list found malformed halfway leaves the file
// as it was. A pipe, a terminal or a device cannot be taken back.
class OutputMark {
public:
    OutputMark();
    bool CanTakeBack() const { return start_ >= 0; }
    // Cuts standard output back to the mark; false when it cannot.
    bool TakeBack() const;

private:
    long long start_ = -1;
};

// While one lives, SIGINT and SIGTERM during a write the library makes to `target` are held until
// the next call of Poll (the program calls it for every row it hands the library); Poll then
// removes the write's temporary file, keeping the old target, and ends the program by the signal.
// Stale temporary files of the target are removed when it starts.
class LibraryWriteGuard {
public:
    // `scratch` (when not empty) is a file of the program's own that goes with the temporary ones.
    explicit LibraryWriteGuard(const std::string& target, const std::string& scratch = std::string());
    ~LibraryWriteGuard();
    LibraryWriteGuard(const LibraryWriteGuard&) = delete;
    LibraryWriteGuard& operator=(const LibraryWriteGuard&) = delete;

    // Called often from the main thread; does not return when a signal came.
    static void Poll();
};

// While one lives, SIGINT and SIGTERM are held: Pending() tells the work to stop and clean up,
// and the destructor then ends the program by the signal.
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    static bool Pending();
};

// Installs the SIGINT and SIGTERM handlers the two classes above rely on.
void InstallSignalHandlers();

// A count with thousands separators: 1090855 -> "1,090,855".
std::string Grouped(unsigned long long count);

}  // namespace ovcli
