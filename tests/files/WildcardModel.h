// The rules of masks written down one after the other, without regard to speed.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace files_test {

inline std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

inline std::vector<std::string> BreakAtDots(const std::string& name) {
  std::vector<std::string> pieces(1);
  for (const char c : name) {
    if (c == '.') {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

inline bool PiecesMatch(std::string name, std::string mask) {
  const std::size_t star = mask.find('*');
  if (star != std::string::npos) {
    mask.resize(star);
    name.resize(std::min(name.size(), star));
  }
  if (name.size() != mask.size()) return false;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (mask[i] != '?' && mask[i] != name[i]) return false;
  }
  return true;
}

inline bool EndMatches(const std::string& name, const std::string& mask) {
  // Of "#" alone, the length that a name must exceed wraps around.
  if (name.size() <= mask.size() - 2) return false;
  const std::size_t length = mask.size() - 1;
  return name.substr(name.size() - length) == mask.substr(1);
}

/// Exact comparison: the caller lower-cases.
inline bool Check(const std::string& name, const std::string& mask) {
  if (mask.empty()) return false;
  if (mask[0] == '#') return EndMatches(name, mask);
  const std::vector<std::string> names = BreakAtDots(name), masks = BreakAtDots(mask);
  return names.size() == masks.size() &&
         std::equal(names.begin(), names.end(), masks.begin(), PiecesMatch);
}

inline bool Matches(const std::string& name, const std::string& mask) {
  return Check(Lower(name), Lower(mask));
}

}  // namespace files_test
