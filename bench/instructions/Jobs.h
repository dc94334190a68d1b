// Short jobs whose instructions are counted.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace RavelinBench {

struct TCountedJob {
  std::string name;
  /// Makes what the work needs, and the work.
  std::function<std::function<void()>()> prepare;
};

/// Bands, composites and mosaics.
std::vector<TCountedJob> RasterJobs();
/// Labels, coordinate systems, trees and numbers.
std::vector<TCountedJob> TextJobs();

}  // namespace RavelinBench
