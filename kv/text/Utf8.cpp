#include "text/Utf8.h"

namespace {

// What may follow a lead byte: how many continuation bytes, and the range of the first of them,
// which keeps out overlong forms, surrogates and values above U+10FFFF.
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

}  // namespace

namespace kv {

std::size_t Utf8CharacterLength(std::string_view text) {
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

char32_t Utf8CodePoint(std::string_view text, std::size_t length) {
  const unsigned char lead = ByteAt(text, 0);
  if (length == 1) return lead;
  char32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) code = (code << 6U) | (ByteAt(text, i) & 0x3FU);
  return code;
}

void AppendUtf8(std::string* text, char32_t code) {
  const auto append = [text](char32_t bits) { text->push_back(static_cast<char>(bits)); };
  const auto continuation = [&](unsigned shift) { append(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0U | (code >> 6U));
    continuation(0);
  } else if (code < 0x10000) {
    append(0xE0U | (code >> 12U));
    continuation(6);
    continuation(0);
  } else {
    append(0xF0U | (code >> 18U));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

}  // namespace kv
