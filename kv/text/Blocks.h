// Texts looked at and copied in blocks of 16 bytes with SSE2, which every x86-64 has.
#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kv {

inline __m128i LoadBlock(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

/// A block of the bytes of `text`, which has 1 to 16 of them: each is there, some more than once.
inline __m128i BlockOf(std::string_view text) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  if (text.size() == 16) return LoadBlock(begin);
  if (text.size() >= 8) {
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(begin)),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(end - 8)));
  }
  if (text.size() >= 4) {
    std::uint32_t ends[2];
    std::memcpy(&ends[0], begin, 4);
    std::memcpy(&ends[1], end - 4, 4);
    return _mm_set_epi32(static_cast<int>(ends[0]), static_cast<int>(ends[1]),
                         static_cast<int>(ends[0]), static_cast<int>(ends[1]));
  }
  const char middle = begin[text.size() / 2];
  return _mm_unpacklo_epi8(_mm_set1_epi8(*begin),
                           _mm_unpacklo_epi8(_mm_set1_epi8(middle), _mm_set1_epi8(end[-1])));
}

/// Whether `test`, which gives a block with the top bit set where a byte does not fit, finds no
/// such byte in the text.
template <class Test>
bool AllFit(std::string_view text, Test test) {
  if (text.empty()) return true;
  __m128i odd = _mm_setzero_si128();
  while (text.size() > 16) {
    odd = _mm_or_si128(odd, test(LoadBlock(text.data())));
    text.remove_prefix(16);
  }
  odd = _mm_or_si128(odd, test(BlockOf(text)));
  return _mm_movemask_epi8(odd) == 0;
}

/// All bits set in the bytes from `first` to `last`.
inline __m128i Between(__m128i block, char first, char last) {
  const __m128i offset = _mm_sub_epi8(block, _mm_set1_epi8(first));
  const __m128i width = _mm_set1_epi8(static_cast<char>(last - first));
  return _mm_cmpeq_epi8(_mm_min_epu8(offset, width), offset);
}

/// All bits set in the bytes that are `c`.
inline __m128i Equal(__m128i block, char c) {
  return _mm_cmpeq_epi8(block, _mm_set1_epi8(c));
}

/// Copies `text` to where it does not overlap; short ones without a call. Returns the place behind.
inline char* CopyTo(char* to, std::string_view text) {
  const std::size_t size = text.size();
  const char* const from = text.data();
  if (size > 32) {
    std::memcpy(to, from, size);
  } else if (size >= 16) {
    std::memcpy(to, from, 16);
    std::memcpy(to + size - 16, from + size - 16, 16);
  } else if (size >= 8) {
    std::memcpy(to, from, 8);
    std::memcpy(to + size - 8, from + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(to, from, 4);
    std::memcpy(to + size - 4, from + size - 4, 4);
  } else {
    for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
  }
  return to + size;
}

}  // namespace kv
