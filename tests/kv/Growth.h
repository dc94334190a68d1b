// How the cost of an action grows with its size.
#pragma once

#include <time.h>

#include <algorithm>
#include <functional>

namespace kv_test {

/// How many times the processor time of `action` at `size` it takes at sixteen times the size, the
/// best of some runs each: near 16 when it is linear, near 256 when it is quadratic.
inline double GrowthFromOneToSixteen(unsigned long size,
                                     const std::function<void(unsigned long)>& action) {
  const auto now = [] {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const auto best = [&](unsigned long count) {
    double least = 1e9;
    for (int i = 0; i < 4; ++i) {
      const double begin = now();
      action(count);
      least = std::min(least, now() - begin);
    }
    return least;
  };
  const double small = best(size);
  return best(16 * size) / small;
}

/// Whether the cost grows well below quadratically. Caches and other programs disturb, so the
/// growth may be measured several times.
inline bool IsLinear(unsigned long size, const std::function<void(unsigned long)>& action) {
  constexpr double kMost = 110;
  for (int i = 0; i < 4; ++i) {
    if (GrowthFromOneToSixteen(size, action) < kMost) return true;
  }
  return false;
}

}  // namespace kv_test
