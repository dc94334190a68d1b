// The C library's scan of one number in a text of any length.
#pragma once

#include <array>
#include <cctype>
#include <cstdio>
#include <cstring>

namespace SatCommonUtils {

/// What sscanf returns and stores for `format`, the conversion of one number with "%n" behind it.
/// sscanf itself looks for the end of the text before it begins; here the cost is that of the
/// number and the white space before it, but for numbers of hundreds of bytes.
template <class T>
int ScanNumber(const char* text, const char* format, T* value) {
  while (std::isspace(static_cast<unsigned char>(*text)) != 0) ++text;
  if (*text == '\0') return EOF;
  // What is no number is known as such after a few bytes, however it goes on.
  std::array<char, 256> start;
  const std::size_t length = strnlen(text, start.size() - 1);
  std::memcpy(start.data(), text, length);
  start[length] = '\0';
  int used = 0;
  const int result = std::sscanf(start.data(), format, value, &used);
  const bool mayGoOn = result > 0 && static_cast<std::size_t>(used) == length;
  return mayGoOn && text[length] != '\0' ? std::sscanf(text, format, value, &used) : result;
}

}  // namespace SatCommonUtils
