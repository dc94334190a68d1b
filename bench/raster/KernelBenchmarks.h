#pragma once

#include <string>
#include <vector>

namespace RavelinBench {

/// Registers `swap/<set>` and `interleave<channels>/<set>`: the kernels in cache, against the plain
/// typed loop (`typed`). Returns the names before the slash.
std::vector<std::string> RegisterKernelBenchmarks();

}  // namespace RavelinBench
