// The conversion of tokens to numbers.
#pragma once

#include <string>

#include "text/FieldEnds.h"

namespace SatCommonUtils {

/// Converts the tokens of a text as the C library's scan for "%lg" does in the current locale and
/// rounding mode. Both are looked at when it is made and must stay.
class TNumberScan {
 public:
  explicit TNumberScan(const char* separators);

  /// Whether the scan of the token at `*pos` counts as successful. Blanks alone do: the scan
  /// reports the end of its input, not "no number". An empty token does not. `*pos` goes to the end
  /// of the token. Linear in its size.
  bool Convert(const char** pos) {
    const char* const begin = *pos;
    if (MayBeShortDecimal() && ConvertShortDecimal(pos)) return true;
    *pos = ends_.Find(*pos);
    if (begin == *pos) return false;
    return (isPlainDecimalTried_ && ConvertPlainDecimal(begin, *pos)) || Scan(begin, *pos);
  }

  /// The last number that was converted; 0 before the first.
  double Value() const { return value_; }

 private:
  /// The numbers of a text are alike: after one that is not short, three are not tried.
  bool MayBeShortDecimal() {
    if (untried_ == 0) return isShortDecimalTried_;
    --untried_;
    return false;
  }
  bool ConvertShortDecimal(const char** pos);
  bool ConvertPlainDecimal(const char* begin, const char* end);
  bool Scan(const char* begin, const char* end);

  TFieldEnds ends_;
  bool isPlainDecimalTried_;
  bool isShortDecimalTried_;
  int untried_ = 0;
  double value_ = 0;
  std::string token_;
};

}  // namespace SatCommonUtils
