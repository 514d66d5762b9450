#include "support/allocation_failure.h"

#include <cstdlib>
#include <new>

#include "support/scripted_slp/scripted_slp.h"

namespace kelsd {

namespace {

constexpr int kNever = -1;

thread_local int successes_left = kNever;
thread_local bool happened = false;

void FailIfItIsTime() {
  if (successes_left == kNever || scripted_slp::DoingOwnWork()) {
    return;
  }
  if (successes_left > 0) {
    --successes_left;
    return;
  }
  successes_left = kNever;
  happened = true;
  throw std::bad_alloc();
}

void* Allocate(std::size_t size) {
  FailIfItIsTime();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

AllocationFailure::AllocationFailure(int successes) {
  happened = false;
  successes_left = successes;
}

AllocationFailure::~AllocationFailure() {
  successes_left = kNever;
}

bool AllocationFailure::Happened() const {
  return happened;
}

}  // namespace kelsd

void* operator new(std::size_t size) {
  return kelsd::Allocate(size);
}
void* operator new[](std::size_t size) {
  return kelsd::Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
