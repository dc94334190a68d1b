// The vector type of the pixel kernels for SSE4.1: one lane. Internal to the file that includes it,
// as PixelKernelLoops.h says.
#pragma once

#include <immintrin.h>
#include <stddef.h>

namespace {  // NOLINT(cert-dcl59-cpp): internal to the including file on purpose

struct TSse41 {
  using Vec = __m128i;
  static constexpr size_t kSamples = 8;

  static Vec Load(const unsigned char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  }
  static void Store(unsigned char* to, Vec v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), v);
  }
  template <int N, int I = 0>
  static void StoreLanes(unsigned char* to, const Vec* v) {
    if constexpr (I < N) {
      Store(to + 16 * I, v[I]);
      StoreLanes<N, I + 1>(to, v);
    }
  }
  template <int Width>
  static Vec UnpackLow(Vec a, Vec b) {
    if constexpr (Width == 2) return _mm_unpacklo_epi16(a, b);
    if constexpr (Width == 4) return _mm_unpacklo_epi32(a, b);
    if constexpr (Width == 8) return _mm_unpacklo_epi64(a, b);
  }
  template <int Width>
  static Vec UnpackHigh(Vec a, Vec b) {
    if constexpr (Width == 2) return _mm_unpackhi_epi16(a, b);
    if constexpr (Width == 4) return _mm_unpackhi_epi32(a, b);
    if constexpr (Width == 8) return _mm_unpackhi_epi64(a, b);
  }
  static Vec Shuffle(Vec v, const unsigned char* table) {
    return _mm_shuffle_epi8(v, _mm_load_si128(reinterpret_cast<const __m128i*>(table)));
  }
  template <int Mask>
  static Vec Blend(Vec a, Vec b) {
    return _mm_blend_epi16(a, b, Mask);
  }
};

}  // namespace
