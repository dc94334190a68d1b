#include <algorithm>

#include "Kv/Text.h"

namespace {

// The distance from an upper-case ASCII letter to its lower-case one.
constexpr int kCaseDistance = 'a' - 'A';

char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + kCaseDistance) : c;
}

char ToUpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - kCaseDistance) : c;
}

}  // namespace

std::string tolower(const std::string& text) {
  std::string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), ToLowerAscii);
  return folded;
}

std::string toupper(const std::string& text) {
  std::string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), ToUpperAscii);
  return folded;
}
