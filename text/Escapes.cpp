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

bool HasBackslash(std::uint64_t word) {
  return (~Differences(word, '\\') & ~kLow7) != 0;
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

/// Decodes a byte, or a pair that begins with a backslash, without a branch. Writes two bytes
/// whatever it moves on by: four bytes must be left, so that another one is written behind them.
template <bool kWrites>
void DecodeNext(const char*& src, char* to, unsigned long& written) {
  const bool isPair = src[0] == '\\';
  const char decoded = Decoded(src[1]);
  if constexpr (kWrites) {
    to[written] = isPair ? decoded : src[0];
    to[written + 1] = src[1];
  }
  src += 1 + static_cast<unsigned long>(isPair);
  written += 1 + static_cast<unsigned long>(isPair & (decoded == '\\'));
}

/// The same byte by byte up to `end`, which the source may have at any place.
template <bool kWrites>
void DecodeRest(const char* src, const char* end, char* to, unsigned long& written) {
  const auto put = [&](char c) {
    if constexpr (kWrites) to[written] = c;
    ++written;
  };
  while (src != end) {
    const char c = *src++;
    if (c != '\\') {
      put(c);
    } else if (src == end) {
      // Dropped, but counted by who measures.
      if constexpr (!kWrites) ++written;
    } else {
      put(Decoded(*src));
      if (Decoded(*src) == '\\') put(*src);
      ++src;
    }
  }
}

template <bool kWrites>
unsigned long DecodeOrMeasure(const char* src, unsigned long length, char* to) {
  constexpr unsigned long kAhead = 3;  ///< what DecodeNext wants behind the last byte of a word
  const char* const end = src + length;
  unsigned long written = 0;
  while (static_cast<unsigned long>(end - src) >= kWord + kAhead) {
    const std::uint64_t word = WordAt(src);
    if (HasBackslash(word)) {
      const char* const stop = src + kWord;
      while (src < stop) DecodeNext<kWrites>(src, to, written);
    } else {
      if constexpr (kWrites) std::memcpy(to + written, &word, kWord);
      src += kWord;
      written += kWord;
    }
  }
  DecodeRest<kWrites>(src, end, to, written);
  return written;
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
  return dst == nullptr ? DecodeOrMeasure<false>(src, srcLength, nullptr)
                        : DecodeOrMeasure<true>(src, srcLength, dst + dstOffset);
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
