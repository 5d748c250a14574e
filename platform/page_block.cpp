#include "platform/detail/page_block.h"

#include "platform/detail/native.h"

namespace orderview {

void* AllocatePageBlock(std::size_t size) { return native::AllocatePageBlock(size); }
void FreePageBlock(void* block, std::size_t size) { native::FreePageBlock(block, size); }

}  // namespace orderview
