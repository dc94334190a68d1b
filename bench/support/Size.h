// How large the jobs are.
#pragma once

#include <cstdlib>

namespace RavelinBench {

/// Whether RAVELIN_BENCH_QUICK is set: a run that shows that everything works, not how fast.
inline bool IsQuick() {
  return std::getenv("RAVELIN_BENCH_QUICK") != nullptr;
}

/// A number of things to work on: `full`, a sixteenth of it in a quick run.
inline int Sized(int full) {
  return IsQuick() ? full / 16 : full;
}

/// How many times as large the second size is on which growth is measured.
constexpr int kGrowth = 4;

}  // namespace RavelinBench
