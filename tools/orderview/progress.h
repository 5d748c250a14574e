// A progress bar on standard error for work that takes longer than about a second, drawn only
// when standard error is a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace ovcli {

class Progress {
public:
    Progress(std::string label, std::size_t total);
    ~Progress();  // clears the bar
    void Step(std::size_t done);

private:
    std::string label_;
    std::size_t total_;
    bool terminal_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_, last_;
};

}  // namespace ovcli
