// A window on a workbook stream that the record readers walk (internal). The stream is either
// whole in memory, or read from its file in parts as the readers move on: reading a large file
// in parts into one small buffer costs less than the first touch of every page of a mapping.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "order_data/visibility.h"
#include "platform/file_system.h"

namespace xls {

class ORDERVIEW_API StreamWindow {
public:
    // The whole stream, in memory.
    StreamWindow(const std::uint8_t* data, std::size_t size) : base_(data), end_(size), size_(size) {}
    // `size` bytes from `offset` of an open file (which stays open and unchanged meanwhile),
    // read `part` bytes at a time (more when one record chain needs more).
    StreamWindow(orderview::FileReader& file, std::uint64_t offset, std::size_t size, std::size_t part = kPart);
    StreamWindow(const StreamWindow&) = delete;
    StreamWindow& operator=(const StreamWindow&) = delete;

    static constexpr std::size_t kPart = 64 * 1024;

    std::size_t size() const { return size_; }
    // Makes bytes [at, at + n) readable; false, with the bytes from `at` to the end of the
    // stream readable, when they run past it (or the file cannot be read). Earlier pointers
    // from At() are then void.
    bool Hold(std::size_t at, std::size_t n)
    {
        return (at >= begin_ && at <= end_ && n <= end_ - at) || Slide(at, n);
    }
    // The bytes at stream position `at`, which must be held.
    const std::uint8_t* At(std::size_t at) const { return base_ + (at - begin_); }
    // How many bytes from `at` are readable.
    std::size_t HeldFrom(std::size_t at) const { return at >= begin_ && at <= end_ ? end_ - at : 0; }
    // Holds the record at `at` with its CONTINUE parts and the header after them (as far as the
    // stream goes): what a record reader that joins CONTINUE parts looks at. Returns where the
    // last part ends, 0 when the record or a part runs past the stream.
    std::size_t HoldRecordChain(std::size_t at);

private:
    bool Slide(std::size_t at, std::size_t n);

    const std::uint8_t* base_ = nullptr;  // the bytes of stream position begin_
    std::size_t begin_ = 0, end_ = 0;     // the held bytes [begin_, end_)
    std::size_t size_ = 0;
    orderview::FileReader* file_ = nullptr;
    std::uint64_t offset_ = 0;  // of the stream in the file
    std::vector<std::uint8_t> buffer_;
};

}  // namespace xls
