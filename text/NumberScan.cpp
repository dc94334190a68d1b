#include "text/NumberScan.h"

#include <langinfo.h>

#include <cfenv>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace SatCommonUtils {
namespace {

/// White space in every locale.
bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// std::from_chars knows one decimal sign and one rounding mode; the scan follows the locale and
/// the machine.
bool IsScannedLikeFromChars() {
  return std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0 && std::fegetround() == FE_TONEAREST;
}

/// As many digits as fit 64 bits, and the powers of ten up to there, which a double holds exactly.
constexpr long kMostDigits = 19;
constexpr double kPowersOfTen[kMostDigits + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                                  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                                  1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
/// A double holds every integer up to here.
constexpr std::uint64_t kMostInteger = std::uint64_t{1} << 53;

/// Digits, read as one number whatever points are among them. It is of no use when they are more
/// than fit.
const char* ReadDigits(const char* pos, std::uint64_t* number) {
  for (; IsDigit(*pos); ++pos) *number = 10 * *number + static_cast<std::uint64_t>(*pos - '0');
  return pos;
}

}  // namespace

TNumberScan::TNumberScan(const char* separators)
    : ends_(separators),
      isPlainDecimalTried_(IsScannedLikeFromChars()),
      isShortDecimalTried_(isPlainDecimalTried_ &&
                           std::strpbrk(separators, "-.0123456789") == nullptr) {}

/// A token that is a decimal number of few digits without an exponent, found and converted in one
/// pass. The quotient of two integers that doubles hold exactly is rounded once, hence correctly.
/// False for all others; `*pos` may have moved then, but not out of the token.
bool TNumberScan::ConvertShortDecimal(const char** pos) {
  const bool isNegative = **pos == '-';
  const char* const begin = *pos + (isNegative ? 1 : 0);
  std::uint64_t number = 0;
  *pos = ReadDigits(begin, &number);
  long digits = *pos - begin;
  long decimals = 0;
  if (**pos == '.') {
    const char* const point = *pos;
    *pos = ReadDigits(point + 1, &number);
    decimals = *pos - point - 1;
    digits += decimals;
  }
  untried_ = 3;
  if (digits == 0 || digits > kMostDigits || number > kMostInteger) return false;
  if (!ends_.Has(**pos)) return false;
  untried_ = 0;
  const double magnitude = static_cast<double>(number) / kPowersOfTen[decimals];
  value_ = isNegative ? -magnitude : magnitude;
  return true;
}

/// A decimal number, blanks before it, and nothing or a blank and anything behind it. False, and
/// nothing is changed, for all others.
bool TNumberScan::ConvertPlainDecimal(const char* begin, const char* end) {
  while (begin != end && IsBlank(*begin)) ++begin;
  const bool isNegative = begin != end && *begin == '-';
  if (isNegative || (begin != end && *begin == '+')) ++begin;
  // Not "inf", nor a second sign.
  if (begin == end || !(IsDigit(*begin) || *begin == '.')) return false;

  double magnitude = 0;
  const auto [stop, error] = std::from_chars(begin, end, magnitude);
  if (error != std::errc() || !(stop == end || IsBlank(*stop))) return false;
  value_ = isNegative ? -magnitude : magnitude;
  return true;
}

bool TNumberScan::Scan(const char* begin, const char* end) {
  token_.assign(begin, end);
  // NOLINTNEXTLINE(cert-err34-c): whatever the scan makes of the token is promised
  return std::sscanf(token_.c_str(), "%lg", &value_) != 0;
}

}  // namespace SatCommonUtils
