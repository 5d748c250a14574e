#include "day_check.h"

#include <utility>

namespace ovcli {

DayCheck::DayCheck(orderview::RecordFile file, bool deals)
    : file_(std::move(file)), deals_(deals), thread_([this] { Run(); })
{
}

DayCheck::~DayCheck()
{
    stop_.store(true, std::memory_order_relaxed);
    if (thread_.joinable()) thread_.join();
}

void DayCheck::Run()
{
    std::string list;
    while (!stop_.load(std::memory_order_relaxed) && (deals_ ? file_.SkipDeal() : file_.SkipOrder(list))) {
    }
    done_.store(true, std::memory_order_release);
}

const std::vector<CString>& DayCheck::Diagnostics()
{
    if (thread_.joinable()) thread_.join();
    return file_.Diagnostics();
}

HeldOutput::HeldOutput(std::FILE* stream, DayCheck& check, std::size_t limit)
    : LineOutput(stream), check_(check), limit_(limit)
{
    held_.reserve(limit_ + (64u << 10));  // room for the last row past the limit: no reallocation
}

bool HeldOutput::Put(const std::string& line)
{
    if (!holding_) return !refused_ && LineOutput::Put(line);
    held_ += line;
    return held_.size() < limit_ && !check_.Done() ? true : Release();
}

bool HeldOutput::Flush() { return (holding_ ? Release() : !refused_) && LineOutput::Flush(); }

bool HeldOutput::Release()
{
    holding_ = false;
    refused_ = !check_.Diagnostics().empty();
    std::string held;
    held.swap(held_);
    return !refused_ && std::fwrite(held.data(), 1, held.size(), stream_) == held.size();
}

std::unique_ptr<LineOutput> RowsTo(std::FILE* stream, DayCheck* check)
{
    if (check) return std::make_unique<HeldOutput>(stream, *check);
    return std::make_unique<LineOutput>(stream);
}

}  // namespace ovcli
