#include "xls/cell_arena.h"

#include <algorithm>

#include "platform/page_block.h"

namespace xls {

namespace {

using orderview::kPageBlockSize;

std::size_t RoundUp(std::size_t bytes, std::size_t unit) { return (bytes + unit - 1) / unit * unit; }

// Memory for a chunk or a big run: whole page blocks for anything of a block's size or more.
void* Obtain(std::size_t size, bool& pages)
{
    pages = size >= kPageBlockSize;
    if (pages) {
        if (void* block = orderview::AllocatePageBlock(size)) return block;
        pages = false;
    }
    return ::operator new(size);
}

void Give(void* data, std::size_t size, bool pages)
{
    if (pages)
        orderview::FreePageBlock(data, size);
    else
        ::operator delete(data);
}

}  // namespace

CellArena::~CellArena()
{
    for (const Chunk& chunk : chunks_) Give(chunk.data, chunk.size, chunk.pages);
}

// A run past a quarter of a page block (the row table of a full sheet) gets memory of its own.
bool CellArena::Dedicated(std::size_t bytes) { return bytes > kPageBlockSize / 4; }

void* CellArena::Allocate(std::size_t bytes)
{
    bytes = RoundUp(bytes ? bytes : 1, kAlign);
    if (bytes < kAlign) throw std::bad_alloc();  // wrapped
    if (Dedicated(bytes)) {
        // Remembered as a chunk, so that it goes back with the arena even when freed after Close.
        bool pages = false;
        const std::size_t size = bytes >= kPageBlockSize ? RoundUp(bytes, kPageBlockSize) : bytes;
        if (size < bytes) throw std::bad_alloc();
        chunks_.reserve(chunks_.size() + 1);
        void* run = Obtain(size, pages);
        chunks_.push_back({run, size, pages});
        return run;
    }
    if (bytes <= kMostReused && free_ && free_[bytes / kAlign]) {
        void* run = free_[bytes / kAlign];
        free_[bytes / kAlign] = *static_cast<void**>(run);
        return run;
    }
    if (bytes > left_) NewChunk(bytes);
    void* run = next_;
    next_ += bytes;
    left_ -= bytes;
    return run;
}

void CellArena::Deallocate(void* run, std::size_t bytes)
{
    if (!run) return;
    bytes = RoundUp(bytes ? bytes : 1, kAlign);
    if (Dedicated(bytes)) {
        for (std::size_t i = chunks_.size(); i-- > 0;)
            if (chunks_[i].data == run) {
                Give(run, chunks_[i].size, chunks_[i].pages);
                chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(i));
                return;
            }
        return;
    }
    if (!closing_) Keep(run, bytes);
}

void CellArena::Keep(void* run, std::size_t bytes)
{
    if (bytes > kMostReused) return;  // stays in its chunk until the arena goes
    if (!free_) {
        free_.reset(new void*[kClasses]);
        for (std::size_t i = 0; i < kClasses; ++i) free_[i] = nullptr;
    }
    *static_cast<void**>(run) = free_[bytes / kAlign];
    free_[bytes / kAlign] = run;
}

void CellArena::NewChunk(std::size_t atLeast)
{
    if (left_ >= kAlign) Keep(next_, left_ - left_ % kAlign);  // the old chunk's tail
    const std::size_t size = std::max(chunkSize_, atLeast);
    chunks_.reserve(chunks_.size() + 1);
    bool pages = false;
    void* data = Obtain(size, pages);
    chunks_.push_back({data, size, pages});
    next_ = static_cast<char*>(data);
    left_ = size;
    // Each chunk eight times the last, up to a page block: a big sheet reaches large pages soon.
    chunkSize_ = std::min<std::size_t>(chunkSize_ * 8, kPageBlockSize);
}

}  // namespace xls
