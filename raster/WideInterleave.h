// Interleaving of more channels than the pixel kernels take.
#pragma once

#include <cstddef>

namespace SatCommonUtils {

/// The fewest channels that InterleaveWide takes.
inline constexpr std::size_t kLeastWideChannels = 8;

/// Writes `count` pixels of `channels` 16-bit samples, as TPixelKernels::interleave does, for 8
/// channels or more. Buffers need no alignment and must not overlap. The cost is linear.
void InterleaveWide(void* to, const unsigned char* const* from, std::size_t channels,
                    std::size_t count);

}  // namespace SatCommonUtils
