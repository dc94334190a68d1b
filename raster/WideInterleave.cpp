// With SSE2, which every x86-64 has.
#include "raster/WideInterleave.h"

#include <emmintrin.h>

#include <cstring>

namespace SatCommonUtils {
namespace {

/// Pixels of a block, and channels of a group: the samples of a block and group are transposed.
constexpr std::size_t kSide = 8;

__m128i Load(const unsigned char* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

/// Eight pixels of eight channels; `stride` is the bytes of a whole pixel.
void Transpose(unsigned char* to, const unsigned char* const* from, std::size_t pixel,
               std::size_t stride) {
  __m128i pairs[kSide];
  for (std::size_t i = 0; i < kSide; i += 2) {
    const __m128i a = Load(from[i] + 2 * pixel);
    const __m128i b = Load(from[i + 1] + 2 * pixel);
    pairs[i] = _mm_unpacklo_epi16(a, b);
    pairs[i + 1] = _mm_unpackhi_epi16(a, b);
  }
  __m128i fours[kSide];
  for (std::size_t i = 0; i < kSide; i += 4) {
    fours[i] = _mm_unpacklo_epi32(pairs[i], pairs[i + 2]);
    fours[i + 1] = _mm_unpackhi_epi32(pairs[i], pairs[i + 2]);
    fours[i + 2] = _mm_unpacklo_epi32(pairs[i + 1], pairs[i + 3]);
    fours[i + 3] = _mm_unpackhi_epi32(pairs[i + 1], pairs[i + 3]);
  }
  for (std::size_t i = 0; i < kSide / 2; ++i) {
    auto* const even = reinterpret_cast<__m128i*>(to + 2 * i * stride);
    auto* const odd = reinterpret_cast<__m128i*>(to + (2 * i + 1) * stride);
    _mm_storeu_si128(even, _mm_unpacklo_epi64(fours[i], fours[i + 4]));
    _mm_storeu_si128(odd, _mm_unpackhi_epi64(fours[i], fours[i + 4]));
  }
}

/// Eight pixels of all channels. The last group ends with the last channel and overlaps the one
/// before it.
void WriteBlock(unsigned char* to, const unsigned char* const* from, std::size_t channels,
                std::size_t pixel) {
  to += 2 * channels * pixel;
  std::size_t channel = 0;
  for (; channel + kSide <= channels; channel += kSide) {
    Transpose(to + 2 * channel, from + channel, pixel, 2 * channels);
  }
  if (channel == channels) return;
  channel = channels - kSide;
  Transpose(to + 2 * channel, from + channel, pixel, 2 * channels);
}

}  // namespace

void InterleaveWide(void* to, const unsigned char* const* from, std::size_t channels,
                    std::size_t count) {
  auto* out = static_cast<unsigned char*>(to);
  std::size_t pixel = 0;
  for (; pixel + kSide <= count; pixel += kSide) WriteBlock(out, from, channels, pixel);
  if (pixel == count) return;
  // As above, where there are enough pixels for a block at all.
  if (count >= kSide) return WriteBlock(out, from, channels, count - kSide);
  for (; pixel < count; ++pixel) {
    for (std::size_t k = 0; k < channels; ++k, out += 2) std::memcpy(out, from[k] + 2 * pixel, 2);
  }
}

}  // namespace SatCommonUtils
