// The splitters byte by byte, as their rules are put: for comparison, not for speed.
#pragma once

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace split_model {

/// What a splitter found, and the number that it returned.
template <class T>
struct Result {
  unsigned int count = 0;
  std::vector<T> found;

  bool operator==(const Result& other) const {
    return count == other.count && found.size() == other.found.size() &&
           (found.empty() || SameBytes(found, other.found));
  }

 private:
  static bool SameBytes(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    return a == b;
  }
  /// As numbers NaN would differ from itself, and 0 not from -0.
  static bool SameBytes(const std::vector<double>& a, const std::vector<double>& b) {
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
  }
};

inline bool Separates(char c, const std::string& separators) {
  return separators.find(c) != std::string::npos;
}

/// `maxCount` as the array form has it.
inline Result<std::string> Split(const std::string& text, const std::string& separators,
                                 unsigned int maxCount, bool keepEmpty) {
  Result<std::string> result;
  std::string field;
  for (std::size_t pos = 0;; ++pos) {
    const bool isEnd = pos == text.size();
    if (!isEnd && !Separates(text[pos], separators) && field.size() < 4095) {
      field += text[pos];
      continue;
    }
    if (keepEmpty || !field.empty()) {
      result.found.push_back(field);
      ++result.count;
    }
    if (result.count == maxCount || isEnd) return result;
    field.clear();
  }
}

inline Result<std::string> SplitQuot(const std::string& text, const std::string& separators,
                                     unsigned int maxCount, bool keepEmpty, bool isLimited) {
  Result<std::string> result;
  std::string field;
  bool isQuoted = false;
  for (std::size_t pos = 0;; ++pos) {
    const bool isEnd = pos == text.size();
    if (isEnd || (!isQuoted && Separates(text[pos], separators))) {
      if (keepEmpty || !field.empty()) {
        result.found.push_back(field);
        ++result.count;
      }
      if ((isLimited && result.count == maxCount) || isEnd) return result;
      field.clear();
    } else if (isQuoted && text.compare(pos, 2, "\"\"") == 0) {
      field += "\"\"";
      ++pos;
    } else {
      if (text[pos] == '"') isQuoted = !isQuoted;
      field += text[pos];
    }
  }
}

inline Result<double> SplitNumbers(const std::string& text, const std::string& separators,
                                   unsigned int maxCount, bool isLimited) {
  Result<double> result;
  std::string token;
  double value = 0;
  for (std::size_t pos = 0;; ++pos) {
    const bool isEnd = pos == text.size();
    if (!isEnd && !Separates(text[pos], separators)) {
      token += text[pos];
      continue;
    }
    if (!token.empty() && std::sscanf(token.c_str(), "%lg", &value) != 0) {
      result.found.push_back(value);
      ++result.count;
    }
    if ((isLimited && result.count == maxCount) || isEnd) return result;
    token.clear();
  }
}

}  // namespace split_model
