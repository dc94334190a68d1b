// How the cost of an action grows with its size.
#pragma once

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <functional>
#include <limits>

namespace kv_test {

/// The processor time, in seconds, that this thread has taken so far.
inline double ThreadSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// From now on freed memory stays with the process. Fetching it anew from the system, page by page,
/// costs more than most actions do, and only large ones pay it.
inline void KeepFreedMemory() {
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

/// Whether the processor time of `action` at four times the size is well below nine times that at
/// `size`: it is near four times when it grows linearly, near 16 when quadratically. Both sizes
/// take turns, and the best run of each counts; caches and other programs disturb, so there are
/// more turns where two do not show it. The action at `size` should take some tenths of a
/// millisecond at least: what it does only once, and the machine's caches, hide the growth of
/// shorter ones.
inline bool IsLinear(unsigned long size, const std::function<void(unsigned long)>& action) {
  constexpr int kTurns = 20;
  constexpr double kMost = 9;
  const auto cost = [&](unsigned long count) {
    const double begin = ThreadSeconds();
    action(count);
    return ThreadSeconds() - begin;
  };
  KeepFreedMemory();
  double small = std::numeric_limits<double>::infinity();
  double large = small;
  for (int turn = 1; turn <= kTurns; ++turn) {
    small = std::min(small, cost(size));
    large = std::min(large, cost(4 * size));
    if (turn > 1 && large < kMost * small) return true;
  }
  return false;
}

}  // namespace kv_test
