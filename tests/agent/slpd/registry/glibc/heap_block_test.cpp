// What is reckoned for a block of the heap, against what the allocator of this system takes for it.
#include "slpd/registry/heap_block.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <thread>
#include <vector>

namespace slp {
namespace {

constexpr std::size_t kEachSizeUpTo = 4096;
constexpr std::size_t kLargest = 120'000;  // Blocks from 128 kB on are mapped in pages.
constexpr std::size_t kStep = 997;

/// Asks for a block of each size and compares. Blocks that were freed in between would leave gaps, and what
/// fills one may get a little more than it asked for.
void CompareAll() {
  std::vector<void*> blocks;
  blocks.reserve(kLargest);
  for (std::size_t size = 0; size <= kLargest; size += size < kEachSizeUpTo ? 1 : kStep) {
    blocks.push_back(std::malloc(size));
    // The word that the allocator keeps before the block is no part of what can be used.
    EXPECT_EQ(HeapBlock(size), malloc_usable_size(blocks.back()) + sizeof(std::size_t)) << size;
  }
  for (void* const block : blocks) {
    std::free(block);
  }
}

TEST(HeapBlockTest, IsWhatTheAllocatorTakes) {
  // A new thread has a heap of its own, in which there are no gaps yet.
  std::thread(CompareAll).join();
  malloc_trim(0);  // The next new thread may get the same heap.
}

}  // namespace
}  // namespace slp
