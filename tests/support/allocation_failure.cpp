#include "support/allocation_failure.h"

#include <cstdlib>
#include <new>

#include "support/replaced_heap.h"
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

}  // namespace

void* AllocateMemory(std::size_t size) {
  FailIfItIsTime();
  return std::malloc(size);
}

void FreeMemory(void* memory) noexcept {
  std::free(memory);
}

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
