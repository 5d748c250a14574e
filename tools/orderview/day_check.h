// A list into a pipe or a terminal writes nothing before the whole day is known to be well formed,
// since nothing written there can be taken back. DayCheck reads the day's file through on a
// thread of its own, checking every value and keeping none, while the program's thread fills the
// list's rows; HeldOutput keeps the rows written meanwhile (up to a limit, after which the writer
// waits for the check) and lets them out once the day has passed it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "host/record_file.h"
#include "line_output.h"

namespace ovcli {

class DayCheck {
public:
    // Starts checking `file` (a day of deals with `deals`), which only the check's thread reads
    // from now on.
    DayCheck(orderview::RecordFile file, bool deals);
    ~DayCheck();  // stops the check where it is and waits for its thread
    DayCheck(const DayCheck&) = delete;
    DayCheck& operator=(const DayCheck&) = delete;

    bool Done() const { return done_.load(std::memory_order_acquire); }
    // Waits for the end of the check; the day's malformed lines, as `file:line: message`.
    const std::vector<CString>& Diagnostics();

private:
    void Run();

    orderview::RecordFile file_;
    bool deals_;
    std::atomic<bool> done_{false};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

class HeldOutput : public LineOutput {
public:
    // What the rows held may take before the writer waits for the check.
    static constexpr std::size_t kDefaultLimit = 32u << 20;

    HeldOutput(std::FILE* stream, DayCheck& check, std::size_t limit = kDefaultLimit);
    // Holds the line while the check goes on; false when the day was refused or a write failed.
    bool Put(const std::string& line) override;
    // Waits for the check and writes what is held; false as Put.
    bool Flush() override;
    // Whether the check found the day malformed: nothing was written, the rows held are dropped.
    bool Refused() const { return refused_; }

private:
    // Waits for the check, then writes what is held when the day passed.
    bool Release();

    DayCheck& check_;
    std::size_t limit_;
    std::string held_;
    bool holding_ = true;
    bool refused_ = false;
};

// The rows' way to `stream`: held back by `check` when there is one, else straight.
std::unique_ptr<LineOutput> RowsTo(std::FILE* stream, DayCheck* check);

}  // namespace ovcli
