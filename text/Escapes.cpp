#include <array>
#include <cstdint>
#include <cstring>

#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

constexpr unsigned long kWord = sizeof(std::uint64_t);
constexpr std::uint64_t kOnes = 0x0101010101010101;
constexpr std::uint64_t kLow7 = 0x7f7f7f7f7f7f7f7f;

std::uint64_t WordAt(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWord);
  return word;
}

/// The high bit of each byte that is not `c`; other bits are of no meaning.
std::uint64_t Differences(std::uint64_t word, char c) {
  const std::uint64_t difference = word ^ (kOnes * static_cast<unsigned char>(c));
  return ((difference & kLow7) + kLow7) | difference;
}

/// The high bit, and no other, of each byte that Encode replaces.
std::uint64_t ControlMarks(std::uint64_t word) {
  return ~(Differences(word, '\t') & Differences(word, '\n') & Differences(word, '\r')) & ~kLow7;
}

/// The letter behind the backslash for each byte that is escaped, 0 for the others.
constexpr std::array<char, 256> kLetters = [] {
  std::array<char, 256> letters{};
  letters['\t'] = 't';
  letters['\n'] = 'n';
  letters['\r'] = 'r';
  return letters;
}();

/// What a backslash and each byte begin with when they are decoded; a backslash when both stay.
constexpr std::array<char, 256> kDecoded = [] {
  std::array<char, 256> decoded{};
  for (char& c : decoded) c = '\\';
  decoded['t'] = '\t';
  decoded['n'] = '\n';
  decoded['r'] = '\r';
  return decoded;
}();

char Letter(char c) {
  return kLetters[static_cast<unsigned char>(c)];
}

char Decoded(char c) {
  return kDecoded[static_cast<unsigned char>(c)];
}

unsigned long EncodedLength(const char* src, unsigned long length) {
  unsigned long escapes = 0;
  const char* const end = src + length;
  for (; static_cast<unsigned long>(end - src) >= kWord; src += kWord) {
    escapes += ((ControlMarks(WordAt(src)) >> 7) * kOnes) >> 56;
  }
  for (; src != end; ++src) escapes += Letter(*src) != 0;
  return length + escapes;
}

/// Without a branch. Writes two bytes whatever it moves on by: another byte must follow.
char* PutEncoded(char c, char* to) {
  const char letter = Letter(c);
  to[0] = letter == 0 ? c : '\\';
  to[1] = letter;
  return to + (letter == 0 ? 1 : 2);
}

/// For the last byte: writes no more than it takes.
char* PutLastEncoded(char c, char* to) {
  const char letter = Letter(c);
  if (letter == 0) {
    *to = c;
    return to + 1;
  }
  return PutEncoded(c, to);
}

}  // namespace

unsigned long Encode(const char* src, unsigned long srcLength, char* dst, unsigned long dstOffset) {
  if (dst == nullptr) return EncodedLength(src, srcLength);
  if (srcLength == 0) return 0;
  char* const begin = dst + dstOffset;
  char* to = begin;
  const char* const last = src + srcLength - 1;
  while (static_cast<unsigned long>(last - src) >= kWord) {
    const std::uint64_t word = WordAt(src);
    if (ControlMarks(word) == 0) {
      std::memcpy(to, &word, kWord);
      to += kWord;
    } else {
      for (unsigned long i = 0; i < kWord; ++i) to = PutEncoded(src[i], to);
    }
    src += kWord;
  }
  while (src != last) to = PutEncoded(*src++, to);
  return static_cast<unsigned long>(PutLastEncoded(*last, to) - begin);
}

unsigned long Decode(const char* src, unsigned long srcLength, char* dst, unsigned long dstOffset) {
  unsigned long written = 0;
  const auto put = [&](char c) {
    if (dst != nullptr) dst[dstOffset + written] = c;
    ++written;
  };
  const char* const end = src + srcLength;
  while (src != end) {
    if (*src != '\\') {
      put(*src++);
      continue;
    }
    if (++src == end) return written + (dst == nullptr ? 1 : 0);
    put(Decoded(*src));
    if (Decoded(*src) == '\\') put(*src);
    ++src;
  }
  return written;
}

void Encode(std::string in, std::string* out) {
  out->clear();
  out->reserve(in.size() + in.size() / 5);
  out->resize(Encode(in.data(), in.size(), nullptr, 0));
  Encode(in.data(), in.size(), out->data(), 0);
}

void Decode(std::string in, std::string* out) {
  out->clear();
  out->reserve(in.size() + in.size() / 5);
  out->resize(in.size());
  out->resize(Decode(in.data(), in.size(), out->data(), 0));
}

}  // namespace SatCommonUtils
