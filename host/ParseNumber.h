// Whole numbers in text.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace ravelin {

/// The decimal number that the whole of `text` is, a minus sign allowed where T is signed; none
/// when it is anything else or out of T's range.
template <class T>
std::optional<T> ParseNumber(std::string_view text) {
  T value{};
  // The caller's text outlives this call, which cppcheck does not follow through the view.
  // cppcheck-suppress invalidLifetime
  const char* end = text.data() + text.size();
  // cppcheck-suppress invalidLifetime
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || text.empty()) return std::nullopt;
  return value;
}

}  // namespace ravelin
