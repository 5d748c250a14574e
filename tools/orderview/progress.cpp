#include "progress.h"

#include <cstdio>
#include <unistd.h>

namespace ovcli {

Progress::Progress(std::string label, std::size_t total, bool quiet)
    : label_(std::move(label)), total_(total), terminal_(!quiet && ::isatty(STDERR_FILENO) != 0),
      start_(std::chrono::steady_clock::now()), last_(start_)
{
}

Progress::~Progress() { Clear(); }

void Progress::Clear()
{
    if (!drawn_) return;
    std::fprintf(stderr, "\r%*s\r", 70, "");
    std::fflush(stderr);
    drawn_ = false;
}

bool Progress::OutputIsTerminal() { return ::isatty(STDOUT_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0; }

void Progress::Step(std::size_t done)
{
    if (!terminal_ || total_ == 0 || (++calls_ & 1023) != 0) return;  // look at the clock now and then
    const auto now = std::chrono::steady_clock::now();
    if (now - start_ < std::chrono::seconds(1) || now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    if (done > total_) done = total_;
    constexpr int kWidth = 40;
    const int filled = static_cast<int>(kWidth * done / total_);
    std::fprintf(stderr, "\r%-12.12s [%.*s%*s] %3d%%", label_.c_str(), filled,
                 "########################################", kWidth - filled, "",
                 static_cast<int>(100 * done / total_));
    std::fflush(stderr);
    drawn_ = true;
}

}  // namespace ovcli
