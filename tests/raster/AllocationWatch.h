// Allocations of the test program, watched: the program replaces operator new and new[], so what
// the libraries allocate comes through here too.
//
// Every array is filled with kFreshByte when it is made and has a guard behind its end that is
// checked when it is freed. Nothing above 1 GiB is ever given.
#pragma once

#include <cstddef>
#include <vector>

namespace raster_test {

constexpr unsigned char kFreshByte = 0xCD;

/// Arrays made and not freed yet.
long LiveArrays();
/// Freed arrays behind whose end somebody had written.
long DamagedArrays();

/// While it lives, arrays of more than `bytes` cannot be allocated.
class ArrayLimit {
 public:
  explicit ArrayLimit(std::size_t bytes);
  ArrayLimit(const ArrayLimit&) = delete;
  ArrayLimit& operator=(const ArrayLimit&) = delete;
  ~ArrayLimit();
};

/// Records the sizes of the arrays asked for while it lives, at most 64, and how many there were at
/// once.
class ArrayLog {
 public:
  ArrayLog();
  ArrayLog(const ArrayLog&) = delete;
  ArrayLog& operator=(const ArrayLog&) = delete;
  ~ArrayLog();
  std::vector<std::size_t> Sizes() const;
  /// The most that LiveArrays() has been meanwhile.
  long MostAlive() const;
};

/// While it lives, the allocation number `n`, counted from 0, and every later one fails; plain
/// allocations and arrays are counted together.
class AllocationFailure {
 public:
  explicit AllocationFailure(long n);
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
  ~AllocationFailure();
  /// Whether an allocation has failed.
  bool Happened() const;
};

}  // namespace raster_test
