#include "xls/detail/stream_window.h"

#include <algorithm>
#include <cstring>

#include "xls/biff_record.h"

namespace xls {

StreamWindow::StreamWindow(orderview::FileReader& file, std::uint64_t offset, std::size_t size, std::size_t part)
    : size_(size), file_(&file), offset_(offset), buffer_(std::max<std::size_t>(part, 1))
{
    base_ = buffer_.data();
}

bool StreamWindow::Slide(std::size_t at, std::size_t n)
{
    if (!file_ || at > size_) return false;
    const bool inStream = n <= size_ - at;
    const std::size_t want = inStream ? n : size_ - at;
    // The held bytes from `at` on move to the front; the rest of the buffer is filled after them.
    std::size_t kept = 0;
    if (at >= begin_ && at < end_) {
        kept = end_ - at;
        std::memmove(buffer_.data(), buffer_.data() + (at - begin_), kept);
    }
    if (want > buffer_.size()) buffer_.resize(std::max(want, 2 * buffer_.size()));
    base_ = buffer_.data();
    begin_ = at;
    end_ = at + kept;
    const std::size_t fill = std::min(buffer_.size(), size_ - at) - kept;
    if (fill > 0) {
        if (!file_->ReadAt(offset_ + end_, buffer_.data() + kept, fill)) {
            end_ = begin_ = 0;  // nothing held: a later call reads again
            return false;
        }
        end_ += fill;
    }
    return inStream;
}

std::size_t StreamWindow::HoldRecordChain(std::size_t at)
{
    std::size_t end = at;  // the end of the record and the parts read so far
    for (bool first = true;; first = false) {
        if (!Hold(at, end - at + 4)) return first ? 0 : end;  // no header after them
        const std::uint8_t* header = At(end);
        if (!first && biff::U16(header) != kContinue) return end;
        const std::size_t length = biff::U16(header + 2);
        if (!Hold(at, end - at + 4 + length)) return 0;  // a part that runs past the stream
        end += 4 + length;
    }
}

}  // namespace xls
