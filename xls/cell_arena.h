// Where a sheet keeps its rows of cells. Memory comes in chunks that grow from a few KiB to
// whole blocks of large pages, so a small sheet stays small and a full one costs a handful of
// page faults instead of one per 4 KiB. A freed run is kept for the next run of its size; all
// memory goes back when the arena goes.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "order_data/visibility.h"

namespace xls {

class ORDERVIEW_API CellArena {
public:
    CellArena() = default;
    ~CellArena();
    CellArena(const CellArena&) = delete;
    CellArena& operator=(const CellArena&) = delete;

    // A run of `bytes`, aligned to 16; throws std::bad_alloc when there is no memory.
    void* Allocate(std::size_t bytes);
    // `bytes` as it was asked for.
    void Deallocate(void* run, std::size_t bytes);
    // The arena is about to go: runs freed from now on are not kept for reuse.
    void Close() { closing_ = true; }
    // The owner expects to take about `bytes` in all: at a page block or more, the arena skips
    // its small first chunks and takes page blocks from the start.
    void Expect(std::size_t bytes);

private:
    enum : std::size_t {
        kAlign = 16,
        kMostReused = 4096,                       // a full row of 256 cells
        kClasses = kMostReused / kAlign + 1,      // free lists by size
        kFirstChunk = 4096,
    };
    struct Chunk {
        void* data;
        std::size_t size;
        bool pages;  // a block of the system's pages, not the heap's
    };
    static bool Dedicated(std::size_t bytes);
    void Keep(void* run, std::size_t bytes);
    void NewChunk(std::size_t atLeast);

    std::vector<Chunk> chunks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
    std::size_t chunkSize_ = kFirstChunk;
    std::unique_ptr<void*[]> free_;  // each freed run holds the next one of its size
    bool closing_ = false;
};

// The allocator of a sheet's table of rows, which lives in the sheet's arena with the cells.
template <class T>
class GridAllocator {
public:
    using value_type = T;

    explicit GridAllocator(CellArena* arena) noexcept : arena_(arena) {}
    template <class U>
    GridAllocator(const GridAllocator<U>& other) noexcept : arena_(other.arena())
    {
    }

    T* allocate(std::size_t n)
    {
        if (n > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        return static_cast<T*>(arena_->Allocate(n * sizeof(T)));
    }
    void deallocate(T* p, std::size_t n) noexcept { arena_->Deallocate(p, n * sizeof(T)); }

    CellArena* arena() const noexcept { return arena_; }
    template <class U>
    bool operator==(const GridAllocator<U>& other) const noexcept
    {
        return arena_ == other.arena();
    }
    template <class U>
    bool operator!=(const GridAllocator<U>& other) const noexcept
    {
        return arena_ != other.arena();
    }

private:
    CellArena* arena_;
};

}  // namespace xls
