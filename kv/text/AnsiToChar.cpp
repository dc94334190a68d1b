#include <array>
#include <cstddef>
#include <string_view>

#include "Kv/Text.h"

namespace {

constexpr char16_t kReplacement = 0xFFFD;

// Windows-1252 from 0x80 to 0x9F; from 0xA0 on a byte is its own code point.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC,       kReplacement, 0x201A, 0x0192, 0x201E, 0x2026,       0x2020, 0x2021,
    0x02C6,       0x2030,       0x0160, 0x2039, 0x0152, kReplacement, 0x017D, kReplacement,
    kReplacement, 0x2018,       0x2019, 0x201C, 0x201D, 0x2022,       0x2013, 0x2014,
    0x02DC,       0x2122,       0x0161, 0x203A, 0x0153, kReplacement, 0x017E, 0x0178};

// What may follow a lead byte: how many continuation bytes, and the range of the first of them
// (RFC 3629, section 4), which keeps out overlong forms, surrogates and values above U+10FFFF.
struct Sequence {
  std::size_t continuations;
  unsigned char firstLow;
  unsigned char firstHigh;
};

constexpr Sequence kInvalid = {0, 1, 0};

Sequence SequenceOf(unsigned char lead) {
  if (lead < 0xC2) return kInvalid;
  if (lead < 0xE0) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead < 0xF0) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead < 0xF4) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return kInvalid;
}

unsigned char ByteAt(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

// Bytes of the well-formed character at the front of `text`, which is not empty; 0 when there is
// none.
std::size_t CharacterLength(std::string_view text) {
  const unsigned char lead = ByteAt(text, 0);
  if (lead < 0x80) return 1;
  const Sequence sequence = SequenceOf(lead);
  if (text.size() <= sequence.continuations) return 0;
  const unsigned char first = ByteAt(text, 1);
  if (first < sequence.firstLow || first > sequence.firstHigh) return 0;
  for (std::size_t i = 2; i <= sequence.continuations; ++i) {
    if ((ByteAt(text, i) & 0xC0U) != 0x80U) return 0;
  }
  return 1 + sequence.continuations;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

char16_t CodePointOf(unsigned char byte) {
  return byte < 0x80 || byte >= 0xA0 ? byte : kWindows1252[byte - 0x80U];
}

void AppendUtf8(std::string& text, char16_t c) {
  const auto append = [&text](unsigned bits) { text.push_back(static_cast<char>(bits)); };
  if (c < 0x80) {
    append(c);
  } else if (c < 0x800) {
    append(0xC0U | (c >> 6U));
    append(0x80U | (c & 0x3FU));
  } else {
    append(0xE0U | (c >> 12U));
    append(0x80U | ((c >> 6U) & 0x3FU));
    append(0x80U | (c & 0x3FU));
  }
}

}  // namespace

std::string KvAnsiToChar(const std::string& text, TKvCharEncoding encoding) {
  if (encoding != kvEncodingUtf8 || IsUtf8(text)) return text;
  std::string converted;
  converted.reserve(text.size());
  for (const char c : text) AppendUtf8(converted, CodePointOf(static_cast<unsigned char>(c)));
  return converted;
}
