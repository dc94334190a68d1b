#include "raster/AllocationWatch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kGreatest = std::size_t{1} << 30;
constexpr std::size_t kHeader = 16;
constexpr std::size_t kTail = 16;
constexpr unsigned char kTailByte = 0xA5;

std::size_t arrayLimit = kGreatest;
long liveArrays = 0;
long mostLiveArrays = 0;
long damagedArrays = 0;
bool logging = false;
std::array<std::size_t, 64> loggedSizes;
std::size_t loggedCount = 0;
long allocationsLeft = -1;
bool failureHappened = false;

bool MustFail(std::size_t size, std::size_t limit) {
  if (allocationsLeft == 0) failureHappened = true;
  if (allocationsLeft > 0) --allocationsLeft;
  return failureHappened || size > limit;
}

void* AllocateArray(std::size_t size) {
  if (logging && loggedCount < loggedSizes.size()) loggedSizes[loggedCount++] = size;
  if (MustFail(size, arrayLimit)) return nullptr;
  auto* bytes = static_cast<unsigned char*>(std::malloc(kHeader + size + kTail));
  if (bytes == nullptr) return nullptr;
  std::memcpy(bytes, &size, sizeof size);
  std::memset(bytes + kHeader, raster_test::kFreshByte, size);
  std::memset(bytes + kHeader + size, kTailByte, kTail);
  mostLiveArrays = std::max(mostLiveArrays, ++liveArrays);
  return bytes + kHeader;
}

void FreeArray(void* array) {
  if (array == nullptr) return;
  auto* bytes = static_cast<unsigned char*>(array) - kHeader;
  std::size_t size = 0;
  std::memcpy(&size, bytes, sizeof size);
  const unsigned char* tail = bytes + kHeader + size;
  if (!std::all_of(tail, tail + kTail, [](unsigned char b) { return b == kTailByte; })) {
    ++damagedArrays;
  }
  --liveArrays;
  std::free(bytes);
}

void* AllocatePlain(std::size_t size) {
  return MustFail(size, kGreatest) ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
}

void* OrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return OrThrow(AllocatePlain(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocatePlain(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

void* operator new[](std::size_t size) {
  return OrThrow(AllocateArray(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateArray(size);
}
void operator delete[](void* memory) noexcept {
  FreeArray(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  FreeArray(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  FreeArray(memory);
}

namespace raster_test {

long LiveArrays() {
  return liveArrays;
}
long DamagedArrays() {
  return damagedArrays;
}

ArrayLimit::ArrayLimit(std::size_t bytes) {
  arrayLimit = bytes;
}
ArrayLimit::~ArrayLimit() {
  arrayLimit = kGreatest;
}

ArrayLog::ArrayLog() {
  loggedCount = 0;
  mostLiveArrays = liveArrays;
  logging = true;
}
ArrayLog::~ArrayLog() {
  logging = false;
}
std::vector<std::size_t> ArrayLog::Sizes() const {
  return std::vector<std::size_t>(loggedSizes.begin(),
                                  loggedSizes.begin() + static_cast<std::ptrdiff_t>(loggedCount));
}
long ArrayLog::MostAlive() const {
  return mostLiveArrays;
}

AllocationFailure::AllocationFailure(long n) {
  failureHappened = false;
  allocationsLeft = n;
}
AllocationFailure::~AllocationFailure() {
  allocationsLeft = -1;
  failureHappened = false;
}
bool AllocationFailure::Happened() const {
  return failureHappened;
}

}  // namespace raster_test
