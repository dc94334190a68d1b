// Allocation failures on demand.
#pragma once

namespace ravelin_test {

/// While it lives, operator new on this thread throws std::bad_alloc once `successes` allocations
/// have been made. Build tests/support/FailingNew.cpp, which replaces the global operators, into
/// the test program. One at a time in a thread.
class FailingNew {
 public:
  explicit FailingNew(unsigned long successes);
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;
  ~FailingNew();
};

}  // namespace ravelin_test
