#include "support/replaced_heap.h"

#include <new>

namespace kelsd {
namespace {

void* Allocate(std::size_t size) {
  void* const memory = AllocateMemory(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void Free(void* memory) noexcept {
  if (memory != nullptr) {
    FreeMemory(memory);
  }
}

}  // namespace
}  // namespace kelsd

void* operator new(std::size_t size) {
  return kelsd::Allocate(size);
}
void* operator new[](std::size_t size) {
  return kelsd::Allocate(size);
}
void operator delete(void* memory) noexcept {
  kelsd::Free(memory);
}
void operator delete[](void* memory) noexcept {
  kelsd::Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  kelsd::Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  kelsd::Free(memory);
}
