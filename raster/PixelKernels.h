// The inner loops over pixels: byte exchange and interleaving of 16-bit samples.
//
// Each kernel is written plainly and for SSE4.1 and AVX2; Kernels() is the best set that the
// machine has, chosen once. Buffers need no alignment. Source and destination must not overlap
// unless a kernel says so. Costs are linear.
#pragma once

#include <cstddef>
#include <cstdint>

namespace SatCommonUtils {

/// The most channels that `interleave` takes.
inline constexpr int kMaxKernelChannels = 8;

struct TPixelKernels {
  /// Copies `count` 16-bit samples and exchanges the two bytes of each. `to` may be `from`.
  void (*copySwapped)(void* to, const void* from, std::size_t count);
  /// Writes `count` pixels of `channels` (2 to 8) samples: pixel p, channel k from from[k] + 2 p,
  /// at to + 2 (p * channels + k). Writes exactly count * channels samples.
  void (*interleave)(void* to, const unsigned char* const* from, int channels, std::size_t count);
  const char* name;  ///< "plain", "sse4.1", "avx2"
};

/// The best set for this machine.
const TPixelKernels& Kernels();

const TPixelKernels& PlainKernels();
/// Null when the machine does not have the instructions.
const TPixelKernels* Sse41Kernels();
const TPixelKernels* Avx2Kernels();

}  // namespace SatCommonUtils
