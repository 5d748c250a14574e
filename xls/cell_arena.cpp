#include "xls/cell_arena.h"

#include <algorithm>

#include "platform/detail/page_block.h"

// Under AddressSanitizer the arena tells it which bytes are handed out, keeps a poisoned gap after
// every run, and takes all its memory from the heap, so that a read or write past a row's cells
// is caught as it would be with rows of their own.
#if defined(__SANITIZE_ADDRESS__)
#define XLS_ARENA_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define XLS_ARENA_ASAN 1
#endif
#endif
#ifdef XLS_ARENA_ASAN
#include <sanitizer/asan_interface.h>
#define XLS_POISON(p, n) ASAN_POISON_MEMORY_REGION(p, n)
#define XLS_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION(p, n)
#else
#define XLS_POISON(p, n) ((void)(p), (void)(n))
#define XLS_UNPOISON(p, n) ((void)(p), (void)(n))
#endif

namespace xls {

namespace {

using orderview::kPageBlockSize;

#ifdef XLS_ARENA_ASAN
constexpr std::size_t kGap = 16;
constexpr bool kUsePageBlocks = false;
#else
constexpr std::size_t kGap = 0;
constexpr bool kUsePageBlocks = true;
#endif

std::size_t RoundUp(std::size_t bytes, std::size_t unit) { return (bytes + unit - 1) / unit * unit; }

// What a run of `bytes` takes in its chunk, or 0 when that is past any memory.
std::size_t Footprint(std::size_t bytes)
{
    if (bytes > static_cast<std::size_t>(-1) - 64) return 0;
    return RoundUp(bytes ? bytes : 1, 16) + kGap;
}

// Memory for a chunk or a big run: whole page blocks for anything of a block's size or more.
void* Obtain(std::size_t size, bool& pages)
{
    pages = kUsePageBlocks && size >= kPageBlockSize;
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
    for (const Chunk& chunk : chunks_) {
        XLS_UNPOISON(chunk.data, chunk.size);
        Give(chunk.data, chunk.size, chunk.pages);
    }
}

// A run past half a page block gets memory of its own; the 1 MiB table of a full sheet's rows
// shares a block with cells.
bool CellArena::Dedicated(std::size_t bytes) { return bytes > kPageBlockSize / 2; }

void* CellArena::Allocate(std::size_t asked)
{
    const std::size_t bytes = Footprint(asked);
    if (bytes == 0) throw std::bad_alloc();
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
    void* run = nullptr;
    if (bytes <= kMostReused && free_ && free_[bytes / kAlign]) {
        run = free_[bytes / kAlign];
        XLS_UNPOISON(run, sizeof(void*));
        free_[bytes / kAlign] = *static_cast<void**>(run);
    } else {
        if (bytes > left_) NewChunk(bytes);
        run = next_;
        next_ += bytes;
        left_ -= bytes;
    }
    XLS_UNPOISON(run, asked);
    return run;
}

void CellArena::Deallocate(void* run, std::size_t asked)
{
    if (!run) return;
    const std::size_t bytes = Footprint(asked);
    if (Dedicated(bytes)) {
        for (std::size_t i = chunks_.size(); i-- > 0;)
            if (chunks_[i].data == run) {
                Give(run, chunks_[i].size, chunks_[i].pages);
                chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(i));
                return;
            }
        return;
    }
    XLS_POISON(run, bytes);
    if (!closing_) Keep(run, bytes);
}

void CellArena::Keep(void* run, std::size_t bytes)
{
    if (bytes > kMostReused) return;  // stays in its chunk until the arena goes
    if (!free_) {
        free_.reset(new void*[kClasses]);
        for (std::size_t i = 0; i < kClasses; ++i) free_[i] = nullptr;
    }
    XLS_UNPOISON(run, sizeof(void*));
    *static_cast<void**>(run) = free_[bytes / kAlign];
    XLS_POISON(run, sizeof(void*));
    free_[bytes / kAlign] = run;
}

void CellArena::Expect(std::size_t bytes)
{
    if (bytes >= kPageBlockSize) chunkSize_ = kPageBlockSize;
}

void CellArena::NewChunk(std::size_t atLeast)
{
    if (left_ >= kAlign) Keep(next_, left_ - left_ % kAlign);  // the old chunk's tail
    const std::size_t size = std::max(chunkSize_, atLeast);
    chunks_.reserve(chunks_.size() + 1);
    bool pages = false;
    void* data = Obtain(size, pages);
    XLS_POISON(data, size);
    chunks_.push_back({data, size, pages});
    next_ = static_cast<char*>(data);
    left_ = size;
    // Each chunk eight times the last, up to a page block: a big sheet reaches large pages soon.
    chunkSize_ = std::min<std::size_t>(chunkSize_ * 8, kPageBlockSize);
}

}  // namespace xls
