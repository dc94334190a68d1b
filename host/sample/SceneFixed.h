// Fixed-point numbers of the demonstration scene: 16 fraction bits in 32-bit integers.
//
// The scene holds the same bytes whatever compiler and options built the program, so no floating
// point takes part in it.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

namespace ravelin {

/// A number times 65536.
using Fixed = std::int32_t;

inline constexpr int kFixedBits = 16;
inline constexpr Fixed kOne = 1 << kFixedBits;

/// `numerator` / `denominator`, rounded towards zero.
constexpr Fixed FixedRatio(std::int64_t numerator, std::int64_t denominator) {
  return static_cast<Fixed>(numerator * kOne / denominator);
}

/// The product, rounded down.
constexpr Fixed Times(Fixed a, Fixed b) {
  return static_cast<Fixed>((std::int64_t{a} * b) >> kFixedBits);
}

/// `a` at `t` = 0, `b` at `t` = 1.
constexpr Fixed Mix(Fixed a, Fixed b, Fixed t) {
  return a + Times(b - a, t);
}

/// 0 up to `from`, 1 from `to` on, with a smooth start and end between them. `from` < `to`.
constexpr Fixed SmoothStep(Fixed from, Fixed to, Fixed value) {
  const std::int64_t span = std::int64_t{to} - from;
  const std::int64_t part = std::clamp<std::int64_t>(std::int64_t{value} - from, 0, span);
  const auto t = static_cast<Fixed>(part * kOne / span);
  return Times(Times(t, t), 3 * kOne - 2 * t);
}

/// The largest integer whose square is not above `value`.
constexpr std::uint32_t IntegerSqrt(std::uint64_t value) {
  if (value == 0) return 0;
  std::uint64_t root = std::uint64_t{1} << ((std::bit_width(value) + 1) / 2);
  for (;;) {
    const std::uint64_t next = (root + value / root) / 2;
    if (next >= root) return static_cast<std::uint32_t>(root);
    root = next;
  }
}

/// The length of the vector.
constexpr Fixed Length(Fixed x, Fixed y) {
  const std::int64_t wideX = x;
  const std::int64_t wideY = y;
  return static_cast<Fixed>(IntegerSqrt(static_cast<std::uint64_t>(wideX * wideX + wideY * wideY)));
}

}  // namespace ravelin
