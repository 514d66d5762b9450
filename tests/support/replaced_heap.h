// The global operator new and operator delete of a test program that looks at its heap, or makes it fail. Add
// replaced_heap.cpp to the program's sources beside the file that defines these two functions. Any thread.
#pragma once

#include <cstddef>

namespace kelsd {

/// `size` bytes, aligned for whatever operator new is asked for; nullptr when there are none. May throw
/// std::bad_alloc itself.
void* AllocateMemory(std::size_t size);

/// `memory` is what AllocateMemory returned, and not nullptr.
void FreeMemory(void* memory) noexcept;

}  // namespace kelsd
