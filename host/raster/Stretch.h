// How samples become the brightness of a picture.
#pragma once

#include <cstdint>
#include <vector>

namespace ravelin {

enum class StretchKind {
  kPercentiles,  ///< from the channel's 2nd to its 98th percentile
  kFixed,        ///< from `low` to `high`
  kNone,         ///< as they are, or their upper byte in a picture of 8 bits
};

struct Stretch {
  StretchKind kind = StretchKind::kPercentiles;
  std::uint16_t low = 0;
  std::uint16_t high = 0;
};

/// The brightness of every sample value: 0 for 0 and below `low`, `brightest` above `high`, in
/// proportion between them, rounded to the nearest, halves up. With `low` equal to `high` that
/// value is half bright.
std::vector<std::uint16_t> LinearStretch(std::uint16_t low, std::uint16_t high,
                                         std::uint16_t brightest);

/// The brightness of every sample value without a stretch, in a picture of 8 or 16 bits.
std::vector<std::uint16_t> NoStretch(int bits);

}  // namespace ravelin
