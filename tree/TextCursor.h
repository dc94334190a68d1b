// A place in a text that ends with a NUL, which nothing here passes.
#pragma once

#include <cstddef>
#include <cstring>
#include <limits>

namespace SatCommonUtils {

class TTextCursor {
 public:
  explicit TTextCursor(const char* at) : at_(at) {}

  const char* At() const { return at_; }
  char Char() const { return *at_; }
  void Skip(std::size_t count) { at_ += count; }

  /// The number of tabs from here on.
  std::size_t CountTabs() const {
    std::size_t tabs = 0;
    while (at_[tabs] == '\t') ++tabs;
    return tabs;
  }
  /// The number of bytes up to the next `c`, or to the end when there is none.
  std::size_t CountUntil(char c) const {
    const char* const found = std::strchr(at_, c);
    return found != nullptr ? static_cast<std::size_t>(found - at_) : std::strlen(at_);
  }
  /// Whether at least `count` bytes are left.
  bool HasLeft(std::size_t count) const {
    constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max();
    return count <= kMost && strnlen(at_, count) == count;
  }
  /// Behind the next `c`, or to the end when there is none.
  void SkipPast(char c) {
    at_ += CountUntil(c);
    SkipIf(c);
  }
  /// Over `c` when it is here; not at the end.
  bool SkipIf(char c) {
    if (*at_ == '\0' || *at_ != c) return false;
    ++at_;
    return true;
  }

  /// Numbers as the C library's scan takes them with %d and %llu: white space before them is
  /// skipped, a sign is taken, and what is out of range gives what that scan gives on 64-bit
  /// Linux. False, and `*value` stays, when there is none.
  bool Scan(int* value) {
    TMagnitude number;
    if (!ScanMagnitude(&number)) return false;
    constexpr auto kMost = static_cast<unsigned long>(std::numeric_limits<long>::max());
    const unsigned long limit = number.negative ? kMost + 1 : kMost;
    const unsigned long held = number.digits < limit ? number.digits : limit;
    *value = static_cast<int>(number.negative ? 0 - held : held);
    return true;
  }
  bool Scan(unsigned long* value) {
    TMagnitude number;
    if (!ScanMagnitude(&number)) return false;
    *value = number.negative && !number.saturated ? 0 - number.digits : number.digits;
    return true;
  }

 private:
  struct TMagnitude {
    unsigned long digits = 0;
    bool negative = false;
    bool saturated = false;

    void Add(unsigned long digit) {
      constexpr unsigned long kMost = std::numeric_limits<unsigned long>::max();
      saturated = saturated || digits > (kMost - digit) / 10;
      digits = saturated ? kMost : 10 * digits + digit;
    }
  };

  static bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }

  bool ScanMagnitude(TMagnitude* number) {
    while (IsSpace(*at_)) ++at_;
    number->negative = *at_ == '-';
    if (*at_ == '-' || *at_ == '+') ++at_;
    if (!IsDigit(*at_)) return false;
    for (; IsDigit(*at_); ++at_) number->Add(static_cast<unsigned long>(*at_ - '0'));
    return true;
  }

  const char* at_;
};

}  // namespace SatCommonUtils
