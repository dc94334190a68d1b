#include "support/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// Beyond this size a sanitizer's malloc ends the program instead of giving null.
constexpr std::size_t kLargest = std::size_t{1} << 39;

thread_local bool failing = false;
thread_local unsigned long successesLeft = 0;
thread_local unsigned long failuresLeft = 0;
thread_local bool failed = false;
thread_local long live = 0;

bool MayAllocate(std::size_t size) {
  if (size > kLargest) return false;
  if (!failing) return true;
  if (successesLeft > 0) {
    --successesLeft;
    return true;
  }
  if (failuresLeft == 0) return true;
  --failuresLeft;
  failed = true;
  return false;
}

void* Allocate(std::size_t size) {
  void* const memory = MayAllocate(size) ? std::malloc(size == 0 ? 1 : size) : nullptr;
  if (memory != nullptr) ++live;
  return memory;
}

void Free(void* memory) {
  if (memory != nullptr) --live;
  std::free(memory);
}

}  // namespace

namespace ravelin_test {

FailingNew::FailingNew(unsigned long successes, unsigned long failures) {
  successesLeft = successes;
  failuresLeft = failures;
  failed = false;
  failing = true;
}

FailingNew::~FailingNew() {
  failing = false;
}

bool AllocationFailed() {
  return failed;
}

long LiveAllocations() {
  return live;
}

}  // namespace ravelin_test

// Every form but the aligned ones, so that sanitizers see matching pairs.
void* operator new(std::size_t size) {
  void* memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}

void operator delete(void* memory) noexcept {
  Free(memory);
}
void operator delete[](void* memory) noexcept {
  Free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  Free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Free(memory);
}
