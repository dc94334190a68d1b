#include "xml/XmlSurvey.h"

#include <cstddef>

#include "text/Blocks.h"

namespace {

/// What 16 bytes and those behind each of them hold, gathered block by block without a branch: all
/// bits set in a byte at whose place something was found.
class BlockSurvey {
 public:
  explicit BlockSurvey(std::string_view mark)
      : hasMark_(mark.size() > 1),
        first_(hasMark_ ? mark[0] : '\0'),
        second_(hasMark_ ? mark[1] : '\0') {}

  void Look(__m128i block, __m128i next) {
    const __m128i space = _mm_or_si128(kv::Equal(block, '\r'), kv::Between(block, '\t', '\n'));
    // Bytes beyond ASCII are negative.
    const __m128i low = _mm_cmplt_epi8(block, _mm_set1_epi8(' '));
    Gather(_mm_andnot_si128(space, low), &odd_);
    Gather(kv::Equal(block, '&'), &reference_);
    const __m128i opens = _mm_or_si128(kv::Equal(next, '!'), kv::Equal(next, '?'));
    Gather(_mm_and_si128(kv::Equal(block, '<'), opens), &piece_);
    Gather(_mm_and_si128(kv::Equal(block, first_), kv::Equal(next, second_)), &mark_);
  }

  kv::XmlSurvey Result() const {
    return {IsAny(odd_), IsAny(reference_), IsAny(piece_), hasMark_ && IsAny(mark_)};
  }

 private:
  static void Gather(__m128i found, __m128i* all) { *all = _mm_or_si128(*all, found); }
  static bool IsAny(__m128i found) { return _mm_movemask_epi8(found) != 0; }

  bool hasMark_;
  char first_;
  char second_;
  __m128i odd_ = _mm_setzero_si128();
  __m128i reference_ = _mm_setzero_si128();
  __m128i piece_ = _mm_setzero_si128();
  __m128i mark_ = _mm_setzero_si128();
};

/// A block of one byte of the text, over and over; blanks where there is none.
__m128i ByteBlock(std::string_view text, std::size_t i) {
  return _mm_set1_epi8(i < text.size() ? text[i] : ' ');
}

}  // namespace

namespace kv {

XmlSurvey SurveyXml(std::string_view text, std::string_view mark) {
  BlockSurvey survey(mark);
  // What the first byte opens is the declaration, if anything.
  if (!text.empty() && text[0] != '<') survey.Look(ByteBlock(text, 0), ByteBlock(text, 1));
  std::size_t i = 1;
  for (; i + 16 < text.size(); i += 16) {
    survey.Look(LoadBlock(text.data() + i), LoadBlock(text.data() + i + 1));
  }
  for (; i < text.size(); ++i) survey.Look(ByteBlock(text, i), ByteBlock(text, i + 1));
  return survey.Result();
}

}  // namespace kv
