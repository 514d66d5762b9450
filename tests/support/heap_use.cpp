#include "support/heap_use.h"

#include <atomic>
#include <cstdlib>

#include "slpd/registry/heap_block.h"
#include "support/replaced_heap.h"

namespace kelsd {
namespace {

std::atomic<std::size_t> in_use{0};

/// Stands before each block and keeps its alignment.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Front {
  std::size_t size;
};

}  // namespace

void* AllocateMemory(std::size_t size) {
  auto* const front = static_cast<Front*>(std::malloc(sizeof(Front) + size));
  if (front == nullptr) {
    return nullptr;
  }
  front->size = slp::HeapBlock(size);
  in_use += front->size;
  return front + 1;
}

void FreeMemory(void* memory) noexcept {
  Front* const front = static_cast<Front*>(memory) - 1;
  in_use -= front->size;
  std::free(front);
}

std::size_t HeapUse() {
  return in_use;
}

}  // namespace kelsd
