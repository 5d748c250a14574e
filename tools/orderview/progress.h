// A progress bar on standard error for work that takes longer than about a second, drawn only
// when standard error is a terminal and the program is not asked to be quiet.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace ovcli {

class Progress {
public:
    // `quiet` draws nothing.
    Progress(std::string label, std::size_t total, bool quiet = false);
    ~Progress();  // clears the bar
    void Step(std::size_t done);
    // Rows written to standard output reach the terminal the bar is on: BeforeOutput clears it.
    void SetRowsToTerminal(bool sameTerminal) { rowsToTerminal_ = sameTerminal; }
    // Call before writing a row to standard output.
    void BeforeOutput()
    {
        if (drawn_ && rowsToTerminal_) Clear();
    }
    void Clear();
    // True when standard output and standard error are both terminals.
    static bool OutputIsTerminal();

private:
    std::string label_;
    std::size_t total_;
    bool terminal_;
    bool drawn_ = false;
    bool rowsToTerminal_ = false;
    std::size_t calls_ = 0;
    std::chrono::steady_clock::time_point start_, last_;
};

}  // namespace ovcli
