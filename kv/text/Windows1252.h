// The Windows-1252 code page.
#pragma once

#include <array>

namespace kv {

/// The code point of a byte; U+FFFD for the five codes that are not assigned.
inline char16_t Windows1252CodePoint(unsigned char byte) {
  constexpr char16_t kNone = 0xFFFD;
  // 0x80 to 0x9F; everywhere else a byte is its own code point.
  constexpr std::array<char16_t, 32> kHigh = {
      0x20AC, kNone,  0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, kNone,  0x017D, kNone,  kNone,  0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, kNone,  0x017E, 0x0178};
  return byte < 0x80 || byte >= 0xA0 ? byte : kHigh[byte - 0x80U];
}

}  // namespace kv
