#include "xini/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstddef>

namespace {

template <class T>
bool Parse(std::string_view text, T* value) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  const char* end = text.data() + text.size();
  T parsed = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, parsed);
  if (error != std::errc() || stop != end) return false;
  *value = parsed;
  return true;
}

}  // namespace

namespace kv {

NumberText::NumberText(int value) {
  const auto [end, error] = std::to_chars(text_.data(), text_.data() + text_.size(), value);
  size_ = static_cast<std::size_t>(end - text_.data());
}

NumberText::NumberText(double value) {
  constexpr int kDigits = 17;
  // The sign of a NaN means nothing.
  const double number = std::isnan(value) ? std::fabs(value) : value;
  const auto [end, error] = std::to_chars(text_.data(), text_.data() + text_.size(), number,
                                          std::chars_format::general, kDigits);
  size_ = static_cast<std::size_t>(end - text_.data());
}

bool ParseNumber(const char* text, int* value) {
  constexpr int kSafe = 9;  // any number of so many digits is an int
  int number = 0;
  int i = 0;
  for (; i < kSafe && text[i] >= '0' && text[i] <= '9'; ++i) number = 10 * number + (text[i] - '0');
  if (i == 0 || text[i] != '\0') return Parse(text, value);
  *value = number;
  return true;
}

bool ParseNumber(std::string_view text, int* value) {
  return Parse(text, value);
}

bool ParseNumber(std::string_view text, double* value) {
  return Parse(text, value);
}

}  // namespace kv
