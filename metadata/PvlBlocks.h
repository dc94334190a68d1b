// PVL texts looked at in blocks of 16 bytes with SSE2, which every x86-64 has.
#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>

namespace SatCommonUtils {

/// Bytes that a block may reach beyond the end of a text.
inline constexpr std::size_t kPvlBlock = 16;

inline __m128i LoadPvlBlock(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

/// One bit a byte, the first byte's the lowest.
inline unsigned BitsOf(__m128i test) {
  return static_cast<unsigned>(_mm_movemask_epi8(test));
}

/// The first byte at or after `pos` for which `test` sets bits in a block; at or beyond `size` when
/// there is none. kPvlBlock bytes behind the text must be readable.
template <class Test>
std::size_t FindInBlocks(const char* text, std::size_t pos, std::size_t size, Test test) {
  for (; pos < size; pos += kPvlBlock) {
    const unsigned found = BitsOf(test(LoadPvlBlock(text + pos)));
    if (found != 0) return pos + static_cast<std::size_t>(std::countr_zero(found));
  }
  return size;
}

/// The bits of the bytes from `first` to `last`.
inline __m128i PvlBetween(__m128i block, char first, char last) {
  const __m128i offset = _mm_sub_epi8(block, _mm_set1_epi8(first));
  const __m128i width = _mm_set1_epi8(static_cast<char>(last - first));
  return _mm_cmpeq_epi8(_mm_min_epu8(offset, width), offset);
}

/// The bits of the bytes that are no ASCII letter, digit or '_'.
inline __m128i NotInName(__m128i block) {
  const __m128i lower = _mm_or_si128(block, _mm_set1_epi8(0x20));
  const __m128i word = _mm_or_si128(PvlBetween(lower, 'a', 'z'), PvlBetween(block, '0', '9'));
  const __m128i name = _mm_or_si128(word, _mm_cmpeq_epi8(block, _mm_set1_epi8('_')));
  return _mm_xor_si128(name, _mm_set1_epi8(-1));
}

/// The bits of the line feeds.
inline __m128i LineFeed(__m128i block) {
  return _mm_cmpeq_epi8(block, _mm_set1_epi8('\n'));
}

/// The bits of the quotes and semicolons.
inline __m128i QuoteOrEnd(__m128i block) {
  const __m128i quote = _mm_cmpeq_epi8(block, _mm_set1_epi8('"'));
  return _mm_or_si128(quote, _mm_cmpeq_epi8(block, _mm_set1_epi8(';')));
}

/// The bits of the bytes that mean something in a value.
inline __m128i SpecialInValue(__m128i block) {
  return _mm_or_si128(QuoteOrEnd(block), _mm_cmpeq_epi8(block, _mm_set1_epi8('\\')));
}

/// Walks over the special bytes of a text from front to back, looking at each block once.
class TPvlSpecials {
 public:
  /// As for FindInBlocks.
  TPvlSpecials(const char* text, std::size_t size) : text_(text), size_(size) {}

  /// The first special byte at or after `pos`, which must not go back; `size` when there is none.
  std::size_t Find(std::size_t pos) {
    if (pos < behind_) {
      const unsigned left = found_ >> (pos + kPvlBlock - behind_);
      if (left != 0) return pos + static_cast<std::size_t>(std::countr_zero(left));
      pos = behind_;
    }
    for (; pos < size_; pos += kPvlBlock) {
      found_ = BitsOf(SpecialInValue(LoadPvlBlock(text_ + pos)));
      behind_ = pos + kPvlBlock;
      if (found_ != 0) return pos + static_cast<std::size_t>(std::countr_zero(found_));
    }
    return size_;
  }

 private:
  const char* text_;
  std::size_t size_;
  std::size_t behind_ = 0;  ///< where the block looked at last ends
  unsigned found_ = 0;      ///< its special bytes
};

}  // namespace SatCommonUtils
