// Random numbers of a place: the same seed and place give the same number everywhere.
#pragma once

#include <cstdint>

#include "host/sample/SceneFixed.h"

namespace ravelin {

/// 32 well-mixed bits.
std::uint32_t SceneHash(std::int32_t x, std::int32_t y, std::uint32_t seed);

/// A number of 0 ... 65535 from the same bits.
Fixed SceneRandom(std::int32_t x, std::int32_t y, std::uint32_t seed);

/// Gradient noise summed over octaves, each of half the wavelength and amplitude of the one before.
class SceneNoise {
 public:
  /// The wavelength of the first octave is in pixels.
  SceneNoise(std::uint32_t seed, int wavelength, int octaves);

  /// About -1 ... 1, 0 on average. `x` and `y` in pixels.
  Fixed At(Fixed x, Fixed y) const;
  /// 1 along sharp crests, 0 in round hollows.
  Fixed RidgesAt(Fixed x, Fixed y) const;

 private:
  Fixed OctaveAt(Fixed x, Fixed y, int octave) const;

  std::uint32_t seed_;
  Fixed frequency_;
  int octaves_;
};

}  // namespace ravelin
