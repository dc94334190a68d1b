// What every fuzz target shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the program, so that the fuzzer keeps the input, when a promise is broken.
inline void Require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

/// Takes values off an input; zeros when it is used up.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool AtEnd() const { return size_ == 0; }

  template <class T>
  T Take() {
    T value{};
    const std::size_t count = sizeof value < size_ ? sizeof value : size_;
    std::memcpy(&value, data_, count);
    data_ += count;
    size_ -= count;
    return value;
  }

  /// From `low` to `high`, one byte.
  long Between(long low, long high) { return low + Take<std::uint8_t>() % (high - low + 1); }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};
