// Where the list writers' lines go: a stream as it is, or (HeldOutput, day_check.h) standard
// output held back while the day is still being checked.
#pragma once

#include <cstdio>
#include <string>

namespace ovcli {

class LineOutput {
public:
    explicit LineOutput(std::FILE* stream) : stream_(stream) {}
    virtual ~LineOutput() = default;
    LineOutput(const LineOutput&) = delete;
    LineOutput& operator=(const LineOutput&) = delete;

    // False when the line could not be written.
    virtual bool Put(const std::string& line)
    {
        return std::fwrite(line.data(), 1, line.size(), stream_) == line.size();
    }
    // Writes out what was put; false when that failed.
    virtual bool Flush() { return std::fflush(stream_) == 0; }

protected:
    std::FILE* stream_;
};

}  // namespace ovcli
