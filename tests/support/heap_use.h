// What a test program has of the heap. Add heap_use.cpp and replaced_heap.cpp to the program's sources: they
// replace the global operator new. Any thread.
#pragma once

#include <cstddef>

namespace kelsd {

/// Bytes of the blocks that are there now, each with what the allocator adds.
std::size_t HeapUse();

}  // namespace kelsd
