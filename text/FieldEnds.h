// The characters that end a field of a text.
#pragma once

#include <array>

namespace SatCommonUtils {

/// A set of separators, and the NUL that ends the text. A look-up costs the same for any number of
/// separators.
class TFieldEnds {
 public:
  explicit TFieldEnds(const char* separators) {
    Add('\0');
    for (; *separators != '\0'; ++separators) Add(*separators);
  }

  void Add(char c) { isEnd_[static_cast<unsigned char>(c)] = true; }

  bool Has(char c) const { return isEnd_[static_cast<unsigned char>(c)]; }

  /// The first of them at or behind `from`.
  const char* Find(const char* from) const {
    for (;; from += 4) {
      if (Has(from[0])) return from;
      if (Has(from[1])) return from + 1;
      if (Has(from[2])) return from + 2;
      if (Has(from[3])) return from + 3;
    }
  }

 private:
  std::array<bool, 256> isEnd_{};
};

}  // namespace SatCommonUtils
