// What is reckoned for memory of the heap, so that limits count what is really taken. Pure functions; any
// thread.
#pragma once

#include <algorithm>
#include <cstddef>

namespace slp {

/// Bytes that a block of `size` bytes takes: a word is the allocator's own, blocks end at 16 bytes, and none
/// is smaller than 32.
constexpr std::size_t HeapBlock(std::size_t size) {
  constexpr std::size_t kOwn = sizeof(void*);
  constexpr std::size_t kStep = 16;
  return std::max<std::size_t>((size + kOwn + kStep - 1) / kStep * kStep, 2 * kStep);
}

/// Bytes that a map's node takes whose key and value have `size` bytes: beside them it has three links and a
/// colour.
constexpr std::size_t MapNode(std::size_t size) {
  return HeapBlock(4 * sizeof(void*) + size);
}

}  // namespace slp
