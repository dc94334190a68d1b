// Allocation failures on demand.
#pragma once

namespace ravelin_test {

/// While it lives, operator new on this thread throws std::bad_alloc once `successes` allocations
/// have been made; with `failures`, only for that many. Build tests/support/FailingNew.cpp, which
/// replaces the global operators, into the test program. One at a time in a thread.
class FailingNew {
 public:
  explicit FailingNew(unsigned long successes, unsigned long failures = ~0ul);
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;
  ~FailingNew();
};

/// Whether an allocation failed on account of the last FailingNew of this thread.
bool AllocationFailed();

/// Allocations that this thread has made, less those that it has freed.
long LiveAllocations();

}  // namespace ravelin_test
