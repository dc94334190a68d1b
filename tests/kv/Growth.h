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

/// How many times the processor time of `action` at `size` it takes at four times the size: near 4
/// when it is linear, near 16 when it is quadratic. Both sizes take turns, and the best run of each
/// counts. The action at `size` should take some tenths of a millisecond at least: what it does
/// only once, and the machine's caches, hide the growth of shorter ones.
inline double GrowthFromOneToFour(unsigned long size,
                                  const std::function<void(unsigned long)>& action) {
  const auto cost = [&](unsigned long count) {
    const double begin = ThreadSeconds();
    action(count);
    return ThreadSeconds() - begin;
  };
  KeepFreedMemory();
  double small = std::numeric_limits<double>::infinity();
  double large = small;
  for (int i = 0; i < 5; ++i) {
    small = std::min(small, cost(size));
    large = std::min(large, cost(4 * size));
  }
  return large / small;
}

/// Whether the cost grows well below quadratically. Caches and other programs disturb, so the
/// growth may be measured several times.
inline bool IsLinear(unsigned long size, const std::function<void(unsigned long)>& action) {
  constexpr double kMost = 9;
  for (int i = 0; i < 4; ++i) {
    if (GrowthFromOneToFour(size, action) < kMost) return true;
  }
  return false;
}

}  // namespace kv_test
