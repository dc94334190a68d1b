// The sun of the demonstration scene.
#pragma once

#include "host/sample/SceneFixed.h"

namespace ravelin {

/// Degrees from the north, eastward, and above the horizon.
inline constexpr int kSunAzimuth = 45;
inline constexpr int kSunElevation = 42;

/// The unit vector to the sun: east, south (negative: the sun is in the north), up.
inline constexpr Fixed kSunEast = FixedRatio(525483, 1000000);
inline constexpr Fixed kSunSouth = -kSunEast;
inline constexpr Fixed kSunUp = FixedRatio(669131, 1000000);

/// The direct sunlight on a slope relative to that on level ground; 0 on the side away from the
/// sun. The slope rises by `east` and `south` (rise over run) in those directions.
constexpr Fixed SunlightOn(Fixed east, Fixed south) {
  const Fixed towardsSun = kSunUp - Times(east, kSunEast) - Times(south, kSunSouth);
  if (towardsSun <= 0) return 0;
  const Fixed normal = Length(Length(east, south), kOne);
  return static_cast<Fixed>(std::int64_t{towardsSun} * kOne / normal * kOne / kSunUp);
}

}  // namespace ravelin
