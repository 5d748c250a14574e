// Memory straight from the system, in whole blocks, for big long-lived tables (a sheet's cells).
// A block is aligned to kPageBlockSize and, where the system offers them, backed by large pages,
// so that filling it costs a few page faults instead of one per 4 KiB.
#pragma once

#include <cstddef>

namespace orderview {

constexpr std::size_t kPageBlockSize = std::size_t(2) << 20;

// `size` bytes, a multiple of kPageBlockSize; null when the system has no memory to give.
void* AllocatePageBlock(std::size_t size);
void FreePageBlock(void* block, std::size_t size);

}  // namespace orderview
