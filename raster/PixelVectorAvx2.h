// The vector type of the pixel kernels for AVX2: two lanes. Internal to the file that includes it,
// as PixelKernelLoops.h says.
#pragma once

#include <immintrin.h>
#include <stddef.h>

namespace {  // NOLINT(cert-dcl59-cpp): internal to the including file on purpose

struct TAvx2 {
  using Vec = __m256i;
  static constexpr size_t kSamples = 16;

  static Vec Load(const unsigned char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  }
  static void Store(unsigned char* to, Vec v) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), v);
  }
  /// Lane i of the 2 N that are stored is lane i / N of vector i % N.
  template <int N, int I = 0>
  static void StoreLanes(unsigned char* to, const Vec* v) {
    if constexpr (I < N) {
      constexpr int kFirst = 2 * I;
      constexpr int kSecond = 2 * I + 1;
      constexpr int kLanes = kFirst / N | (2 + kSecond / N) << 4;
      Store(to + 32 * I, _mm256_permute2x128_si256(v[kFirst % N], v[kSecond % N], kLanes));
      StoreLanes<N, I + 1>(to, v);
    }
  }
  template <int Width>
  static Vec UnpackLow(Vec a, Vec b) {
    if constexpr (Width == 2) return _mm256_unpacklo_epi16(a, b);
    if constexpr (Width == 4) return _mm256_unpacklo_epi32(a, b);
    if constexpr (Width == 8) return _mm256_unpacklo_epi64(a, b);
  }
  template <int Width>
  static Vec UnpackHigh(Vec a, Vec b) {
    if constexpr (Width == 2) return _mm256_unpackhi_epi16(a, b);
    if constexpr (Width == 4) return _mm256_unpackhi_epi32(a, b);
    if constexpr (Width == 8) return _mm256_unpackhi_epi64(a, b);
  }
  static Vec Shuffle(Vec v, const unsigned char* table) {
    const __m128i lane = _mm_load_si128(reinterpret_cast<const __m128i*>(table));
    return _mm256_shuffle_epi8(v, _mm256_broadcastsi128_si256(lane));
  }
  template <int Mask>
  static Vec Blend(Vec a, Vec b) {
    return _mm256_blend_epi16(a, b, Mask);
  }
};

}  // namespace
