#pragma once

#include <cstddef>

namespace RavelinBench {

constexpr long kLeastFused = 16;

/// Interleaves 2 to 8 channels of 16-bit samples, the bytes of each exchanged on the way: nothing
/// is written in between. Wants AVX2 and at least kLeastFused pixels.
void InterleaveSwapped(unsigned char* to, const unsigned char* const* from, int channels,
                       std::size_t count);

}  // namespace RavelinBench
