// Escapes written as plainly as can be: byte by byte, into a string that grows.
#pragma once

#include <string>

namespace escapes_model {

inline std::string Encode(const std::string& text) {
  std::string encoded;
  for (const char c : text) {
    if (c == '\t') {
      encoded += "\\t";
    } else if (c == '\n') {
      encoded += "\\n";
    } else if (c == '\r') {
      encoded += "\\r";
    } else {
      encoded += c;
    }
  }
  return encoded;
}

inline std::string Decode(const std::string& text) {
  std::string decoded;
  bool isEscape = false;
  for (const char c : text) {
    if (isEscape) {
      if (c == 't') {
        decoded += '\t';
      } else if (c == 'r') {
        decoded += '\r';
      } else if (c == 'n') {
        decoded += '\n';
      } else {
        decoded += '\\';
        decoded += c;
      }
      isEscape = false;
    } else if (c == '\\') {
      isEscape = true;
    } else {
      decoded += c;
    }
  }
  return decoded;
}

/// The length that Decode measures: a backslash at the end counts, though it is not written.
inline unsigned long MeasuredDecode(const std::string& text) {
  unsigned long length = 0;
  bool isEscape = false;
  for (const char c : text) {
    if (isEscape) {
      length += c == 't' || c == 'r' || c == 'n' ? 1 : 2;
      isEscape = false;
    } else if (c == '\\') {
      isEscape = true;
    } else {
      ++length;
    }
  }
  return length + (isEscape ? 1 : 0);
}

}  // namespace escapes_model
