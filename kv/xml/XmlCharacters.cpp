#include "xml/XmlCharacters.h"

#include <algorithm>
#include <array>

#include "text/Blocks.h"
#include "text/Utf8.h"

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Production NameStartChar from U+0080 on.
constexpr std::array<Range, 12> kNameStart = {{{0xC0, 0xD6},
                                               {0xD8, 0xF6},
                                               {0xF8, 0x2FF},
                                               {0x370, 0x37D},
                                               {0x37F, 0x1FFF},
                                               {0x200C, 0x200D},
                                               {0x2070, 0x218F},
                                               {0x2C00, 0x2FEF},
                                               {0x3001, 0xD7FF},
                                               {0xF900, 0xFDCF},
                                               {0xFDF0, 0xFFFD},
                                               {0x10000, 0xEFFFF}}};

// What production NameChar adds to it.
constexpr std::array<Range, 3> kNameFurther = {{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};

template <std::size_t N>
constexpr bool IsIn(const std::array<Range, N>& ranges, char32_t code) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [code](const Range& r) { return r.first <= code && code <= r.last; });
}

constexpr bool IsAsciiLetter(char32_t code) {
  return (code | 0x20U) >= 'a' && (code | 0x20U) <= 'z';
}

constexpr bool IsNameStart(char32_t code) {
  return code < 0x80 ? IsAsciiLetter(code) || code == '_' : IsIn(kNameStart, code);
}

constexpr bool IsNameCharacter(char32_t code) {
  if (code >= 0x80) return IsIn(kNameStart, code) || IsIn(kNameFurther, code);
  return IsNameStart(code) || (code >= '0' && code <= '9') || code == '-' || code == '.';
}

bool IsPlainAscii(unsigned char byte) {
  const bool isSpace = (byte == '\t') | (byte == '\n') | (byte == '\r');
  return ((byte >= 0x20) & (byte < 0x80)) | isSpace;
}

// Without branches, so that the compiler checks many bytes at once.
bool IsPlainAscii(const char* bytes, std::size_t count) {
  unsigned char odd = 0;
  for (std::size_t i = 0; i < count; ++i) {
    odd |= static_cast<unsigned char>(!IsPlainAscii(static_cast<unsigned char>(bytes[i])));
  }
  return odd == 0;
}

// Whether all are ASCII characters that may stand further in a name, and there are any.
bool IsAsciiNameTail(std::string_view text) {
  return !text.empty() && kv::AllFit(text, [](__m128i block) {
    const __m128i lower = _mm_or_si128(block, _mm_set1_epi8(0x20));
    const __m128i word = _mm_or_si128(kv::Between(lower, 'a', 'z'), kv::Between(block, '0', '9'));
    const __m128i mark = _mm_or_si128(kv::Equal(block, '_'), kv::Between(block, '-', '.'));
    return _mm_xor_si128(_mm_or_si128(word, mark), _mm_set1_epi8(-1));
  });
}

// Bytes of the character that XML allows at the front of `text`, which is not empty; 0 when there
// is none.
std::size_t AllowedLength(std::string_view text) {
  const std::size_t length = kv::Utf8CharacterLength(text);
  if (length == 0) return 0;
  return kv::IsXmlCharacter(kv::Utf8CodePoint(text, length)) ? length : 0;
}

}  // namespace

namespace kv {

bool IsXmlCharacter(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) ||
         (code >= 0x10000 && code <= 0x10FFFF);
}

std::size_t FindNonXml(std::string_view text) {
  constexpr std::size_t kBlock = 256;
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t block = std::min(kBlock, text.size() - i);
    if (IsPlainAscii(text.data() + i, block)) {
      i += block;
      continue;
    }
    const std::size_t end = i + block;
    while (i < end) {
      const std::size_t length = AllowedLength(text.substr(i));
      if (length == 0) return i;
      i += length;
    }
  }
  return std::string_view::npos;
}

bool IsXmlName(std::string_view text) {
  if (IsAsciiNameTail(text)) return IsNameStart(static_cast<unsigned char>(text[0]));
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t length = Utf8CharacterLength(text.substr(i));
    if (length == 0) return false;
    const char32_t code = Utf8CodePoint(text.substr(i), length);
    if (i == 0 ? !IsNameStart(code) : !IsNameCharacter(code)) return false;
    i += length;
  }
  return i > 0;
}

}  // namespace kv
