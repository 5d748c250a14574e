#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "xls/cell_arena.h"

namespace {

using xls::CellArena;

struct Block {
    unsigned char* data;
    std::size_t size;
    unsigned char mark;
};

bool Holds(const Block& run)
{
    for (std::size_t i = 0; i < run.size; ++i)
        if (run.data[i] != run.mark) return false;
    return true;
}

// Runs of every kind (reused small ones, big ones left in their chunk, dedicated ones from the
// heap and from page blocks) are handed out aligned and never overlap a live run, however they
// are freed and handed out again.
TEST(CellArena, LiveRunsNeverOverlap)
{
    const std::size_t sizes[] = {1, 16, 24, 160, 4096, 4097, 40000, 600000, 2u << 20, (2u << 20) + 1};
    std::mt19937 random(7);
    CellArena arena;
    std::vector<Block> live;
    unsigned char mark = 0;
    for (int step = 0; step < 3000; ++step) {
        if (!live.empty() && random() % 3 == 0) {
            const std::size_t at = random() % live.size();
            ASSERT_TRUE(Holds(live[at])) << "step " << step;
            arena.Deallocate(live[at].data, live[at].size);
            live.erase(live.begin() + static_cast<std::ptrdiff_t>(at));
            continue;
        }
        // Mostly small runs, as a sheet's rows are; now and then a big one.
        const std::size_t size = random() % 50 == 0 ? sizes[random() % 10] : sizes[random() % 5];
        Block run{static_cast<unsigned char*>(arena.Allocate(size)), size, ++mark};
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(run.data) % 16, 0u);
        std::memset(run.data, run.mark, size);
        live.push_back(run);
    }
    for (const Block& run : live) EXPECT_TRUE(Holds(run));
    for (const Block& run : live) arena.Deallocate(run.data, run.size);
}

// Under AddressSanitizer a step past a run, or into a freed one, is caught as on the heap.
TEST(CellArena, SanitizerSeesPastARun)
{
#if defined(__SANITIZE_ADDRESS__)
    CellArena arena;
    auto* run = static_cast<volatile char*>(arena.Allocate(160));
    arena.Allocate(160);
    run[159] = 1;
    EXPECT_DEATH(run[160] = 1, "AddressSanitizer");
    arena.Deallocate(const_cast<char*>(run), 160);
    EXPECT_DEATH(run[0] = 1, "AddressSanitizer");
#else
    GTEST_SKIP() << "an AddressSanitizer build checks this";
#endif
}

TEST(CellArena, ImpossibleSizesThrow)
{
    CellArena arena;
    EXPECT_THROW(arena.Allocate(static_cast<std::size_t>(-8)), std::bad_alloc);
    xls::GridAllocator<double> allocator(&arena);
    EXPECT_THROW(allocator.allocate(static_cast<std::size_t>(-1) / 4), std::bad_alloc);
}

}  // namespace
