// Makes one allocation of a test program fail. Add allocation_failure.cpp and replaced_heap.cpp to the
// program's sources: they replace the global operator new. What the scripted SLP provider allocates for
// itself doesn't count and never fails.
#pragma once

namespace kelsd {

/// While it lives, the allocation of this thread before which `successes` others have succeeded throws
/// std::bad_alloc, once.
class AllocationFailure {
 public:
  explicit AllocationFailure(int successes);
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// Whether that allocation has come and failed.
  bool Happened() const;
};

/// Runs `operation` again and again, with each of its allocations failing in turn, then once undisturbed.
/// After each disturbed run `check` gets what the operation returned.
template <typename Operation, typename Check>
void FailEachAllocation(const Operation& operation, const Check& check) {
  for (int successes = 0;; ++successes) {
    AllocationFailure failure(successes);
    const auto result = operation();
    if (!failure.Happened()) {
      return;
    }
    check(result);
  }
}

}  // namespace kelsd
